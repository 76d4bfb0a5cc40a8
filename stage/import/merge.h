#pragma once

#include <string>
#include <vector>

namespace Stage {

class Scene;
class StageNode;

/// Merges a glTF 2.0 file (".gltf", ".glb") or an OBJ file (".obj") into the scene, as one undo
/// step: its nodes with their names, hierarchy, transforms and meshes. Returns the new nodes, each
/// behind its parent, or none, with file and reason in `error`, if the file can't be read or is
/// empty.
std::vector<StageNode*> mergeInto(Scene& scene, const std::string& path, std::string& error);

} // namespace Stage
