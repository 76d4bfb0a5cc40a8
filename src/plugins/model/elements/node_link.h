// Elements that name a scene node of this tool or of another.
#pragma once

#include "plugins/model/elements/element.h"

#include <string>

namespace MVR {

class Log;

/// The name of the other tool; absent or "" for a node of the same tool.
constexpr const char* kOtherTool = "external";

/// Returns the tool whose node `link` names; null, with a line in the log, if there is none of that
/// name.
InstanceReference* findLinkedTool(const ToolLoading& tool, const Tag& link);
/// Returns a node of `owner`; null, with a line in the log, if it has none of that name. `element`
/// is the element that asks for it, `entry` the log's open entry.
SceneNode* findLinkedNode(const ToolLoading& tool, InstanceReference& owner,
                          const std::string& name, const std::string& element, Log& entry);
/// Makes `node` a child of `parent`. Returns false, and changes nothing, if that would close a
/// circle.
[[nodiscard]] bool hangBelow(SceneNode& node, SceneNode& parent);

} // namespace MVR
