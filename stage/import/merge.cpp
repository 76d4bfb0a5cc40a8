#include "stage/import/merge.h"

#include "platform/sdk/files.h"
#include "stage/import/gltf_reader.h"
#include "stage/import/obj_reader.h"
#include "stage/scene/scene.h"
#include "stage/scene/undo_list.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <utility>

namespace Stage {

namespace {

std::string lowerEnding(const std::filesystem::path& path) {
    std::string ending = path.extension().string();
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return ending;
}

bool read(const std::string& path, std::vector<ImportedNode>& nodes, std::string& error) {
    const std::filesystem::path file = MVR::Platform::foldPath(path);
    const std::string ending = lowerEnding(file);
    if (ending != ".gltf" && ending != ".glb" && ending != ".obj") {
        error = "only .gltf, .glb and .obj can be merged";
        return false;
    }
    std::string bytes;
    if (!MVR::Platform::readFile(path, bytes, kMostImportBytes)) {
        error = MVR::Platform::lastFileError();
        return false;
    }
    if (ending == ".obj")
        return readObj(bytes, file.stem().string(), nodes, error);
    return readGltf(bytes, file.parent_path().string(), nodes, error);
}

} // namespace

std::vector<StageNode*> mergeInto(Scene& scene, const std::string& path, std::string& error) {
    std::vector<ImportedNode> imported;
    if (!read(path, imported, error) || imported.empty()) {
        error = path + ": " + (error.empty() ? "it holds no nodes" : error);
        return {};
    }
    std::vector<StageNode*> nodes;
    scene.getUndo().begin("Merge " + std::filesystem::path(path).filename().string());
    for (ImportedNode& node : imported) {
        node.record.sceneName = node.record.name;
        nodes.push_back(&scene.restore(std::move(node.record)));
        if (node.parent >= 0)
            scene.hang(*nodes.back(), nodes[static_cast<std::size_t>(node.parent)]);
    }
    scene.getUndo().end();
    return nodes;
}

} // namespace Stage
