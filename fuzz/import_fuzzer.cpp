// Merges a glTF or OBJ file, from which only whole nodes with whole meshes may come.

#include "input_file.h"
#include "require.h"
#include "stage/import/gltf_reader.h"
#include "stage/import/obj_reader.h"

#include <algorithm>
#include <cmath>

namespace {

bool areIndices(const std::vector<std::int32_t>& corners, std::size_t entries) {
    return std::all_of(
        corners.begin(), corners.end(),
        [entries](std::int32_t corner) {
            return corner >= 0 && static_cast<std::size_t>(corner) < entries;
        });
}

bool areFinite(const std::vector<std::array<double, 3>>& entries) {
    return std::all_of(
        entries.begin(), entries.end(),
        [](const std::array<double, 3>& entry) {
            return std::isfinite(entry[0]) && std::isfinite(entry[1]) && std::isfinite(entry[2]);
        });
}

void check(const MVR::CMesh& mesh) {
    require(!mesh.vertices.empty() && areFinite(mesh.vertices));
    require(areFinite(mesh.textureCoordinates));
    require(mesh.faces.size() % 3 == 0 && areIndices(mesh.faces, mesh.vertices.size()));
    require(mesh.textureFaces.empty() || mesh.textureFaces.size() == mesh.faces.size());
    require(areIndices(mesh.textureFaces, mesh.textureCoordinates.size()));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const bool isGltf = bytes.rfind("glTF", 0) == 0 || (!bytes.empty() && bytes[0] == '{');
    std::vector<Stage::ImportedNode> nodes;
    std::string error;
    const bool isRead = isGltf ? Stage::readGltf(bytes, inputFolder(), nodes, error)
                               : Stage::readObj(bytes, "object", nodes, error);
    if (!isRead) {
        require(!error.empty());
        return 0;
    }
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        require(nodes[i].parent < static_cast<std::int32_t>(i) && !nodes[i].record.name.empty());
        require(Stage::isFinite(nodes[i].record.rest));
        if (nodes[i].record.mesh)
            check(*nodes[i].record.mesh);
    }
    return 0;
}
