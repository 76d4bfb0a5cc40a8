// Tools from a tag tree.
#pragma once

#include "core/util/sdk/dynamic_object.h"
#include "plugins/instance_reference.h"
#include "plugins/model/model_place.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace MVR {

class CoreServices;
class Tag;

/// A tool of the data, made or not.
struct PlannedTool {
    InstanceReference::Watch reference; ///< null if it couldn't be made, and once it is gone
    ModelPlace place;
};

/// Makes the tool that `data`, an element "MVR_Plugin", describes, and those below it, and runs the
/// first calls of the tools' lives. `path` is the folder that the data came from. Unpacks packed
/// elements within `data`. The result is outside the tree and still under creation:
/// InstanceReference::applyAttributes() with the same data comes next.
///
/// Returns null, with a code in `error`, if `data` is something else or the tool's kind is unknown;
/// null with 0 if the tool itself refused. A tool further down that fails is left out, with a
/// warning in `error`. Each tool of the data enters `planned`. `textLeft` is the most text that
/// packed tools within packed ones may still have in this creation, and is lowered by theirs. The
/// data may be nested to any depth.
[[nodiscard]] Util::Owned<InstanceReference>
instantiate(CoreServices& services, Tag& data, std::int32_t& error, const std::string& path,
            std::vector<PlannedTool>& planned, std::size_t& textLeft);

} // namespace MVR
