// One creation: from a tag tree to tools in the tree.
#pragma once

#include "data/sdk/tag.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace MVR {

class CoreServices;
class InstanceReference;
class RecentList;

struct Created {
    InstanceReference* first = nullptr; ///< null if no tool was made
    std::size_t missing = 0;            ///< tools of the data, at any depth, that weren't made
};

/// The order in which the outermost tools of the data come behind those that are there.
enum class InsertOrder {
    LastFirst, ///< what the user creates
    AsInData,  ///< what a host stored: it has the same order after it was loaded
};

/// Creates the tools that `data` describes below `parent`; see InstanceManager::create(). The data
/// becomes recent, unless `recent` is null.
Created createTools(CoreServices& services, Tag data, InstanceReference* parent, RecentList* recent,
                    InsertOrder order = InsertOrder::LastFirst);

/// Reads a model's file and creates its tools; see InstanceManager::createFromFile().
[[nodiscard]] std::int32_t createFromModel(CoreServices& services, const std::string& path,
                                           InstanceReference* parent, RecentList& recent);

} // namespace MVR
