/// \file
/// What a scene's file holds of one node: a new element is one row of the table in the .cpp.
#pragma once

#include "data/sdk/tag.h"
#include "stage/scene/stage_node.h"

#include <string>

namespace Stage {

inline constexpr const char* kNodeWord = "node";

/// The element of a node that hangs below the node `parent`; "" for a root.
MVR::Tag writeNode(const NodeRecord& record, const std::string& parent);

/// Reads such an element. False, with the reason in `reason`, if it holds anything that a node
/// can't; `record` then has its name at least.
[[nodiscard]] bool readNode(const MVR::Tag& tag, NodeRecord& record, std::string& parent,
                            std::string& reason);

} // namespace Stage
