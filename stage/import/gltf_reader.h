#pragma once

#include "stage/import/imported_node.h"

#include <string>
#include <vector>

namespace Stage {

/// Reads a glTF 2.0 file, as text or in its binary form: the nodes of its scene with hierarchy,
/// transforms at rest and the triangles of their meshes, with the first texture coordinates.
/// Materials, skins and animations are left out. Buffers that it names must lie in `folder` or
/// below. False, with the reason in `error`, if there is something wrong with it.
[[nodiscard]] bool readGltf(const std::string& bytes, const std::string& folder,
                            std::vector<ImportedNode>& out, std::string& error);

} // namespace Stage
