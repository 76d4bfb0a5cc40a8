#pragma once

#include <string>

namespace tinygltf {
class Model;
}

namespace Stage {

/// Parses a glTF file, as text or in its binary form, and loads its buffers. Reads only what nodes
/// and meshes need, and opens no file outside `folder`. Indices in the model are those of the file:
/// test each. Returns false, with the reason in `error`, on a fault.
[[nodiscard]] bool parseGltf(const std::string& bytes, const std::string& folder,
                             tinygltf::Model& out, std::string& error);

} // namespace Stage
