#pragma once

namespace MVR {

class InstanceReference;

/// Shows or hides the scene nodes of a tool and of those below it.
void setOwnNodesVisible(InstanceReference& top, bool visible);
/// The same for the host's objects below those nodes.
void setHostNodesVisible(InstanceReference& top, bool visible);

} // namespace MVR
