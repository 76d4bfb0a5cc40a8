// Copies of tools within the scene.
#pragma once

namespace MVR {

class InstanceReference;

/// Copies `source`, a tool below the root, and those below it; see InstanceReference::clone().
InstanceReference* cloneTool(InstanceReference& source);

} // namespace MVR
