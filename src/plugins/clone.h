/// \file
/// Copies of tools within the scene.
#pragma once

namespace MVR {

class InstanceReference;

/// Copies `source`, a tool below the root, and those below it, as InstanceReference::clone() tells.
InstanceReference* cloneTool(InstanceReference& source);

} // namespace MVR
