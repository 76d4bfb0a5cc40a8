// What a scene's file holds of one node: a new element is one row of the table in the .cpp.
#pragma once

#include "data/sdk/tag.h"
#include "stage/scene/stage_node.h"

#include <string>

namespace Stage {

inline constexpr const char* kNodeWord = "node";

/// Returns the element of a node below the node `parent`; "" for a root.
MVR::Tag writeNode(const NodeRecord& record, const std::string& parent);

/// Reads such an element. Returns false, with the reason in `reason`, if it holds anything that a
/// node can't; `record` then has at least its name.
[[nodiscard]] bool readNode(const MVR::Tag& tag, NodeRecord& record, std::string& parent,
                            std::string& reason);

} // namespace Stage
