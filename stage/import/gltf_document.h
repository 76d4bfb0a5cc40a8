#pragma once

#include <string>

namespace tinygltf {
class Model;
}

namespace Stage {

/// Parses a glTF file, as text or in its binary form, and takes its buffers into memory. Only what
/// nodes and meshes need is looked at, and no file outside of `folder` is opened. Indices in the
/// model are as the file has them: test each. False, with the reason in `error`, on a fault.
[[nodiscard]] bool parseGltf(const std::string& bytes, const std::string& folder,
                             tinygltf::Model& out, std::string& error);

} // namespace Stage
