#pragma once

#include "stage/import/imported_node.h"

#include <string>
#include <vector>

namespace Stage {

/// Reads a glTF 2.0 file, as text or in its binary form: the nodes of its scene with hierarchy,
/// transforms at rest and the triangles of their meshes, with the first texture coordinates.
/// Ignores materials, skins and animations. The buffers that it names must be in `folder` or below.
/// Returns false, with the reason in `error`, on a fault.
[[nodiscard]] bool readGltf(const std::string& bytes, const std::string& folder,
                            std::vector<ImportedNode>& out, std::string& error);

} // namespace Stage
