#pragma once

#include "data/sdk/tag.h"
#include "stage/scene/stage_node.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace MVR {
class CInterface;
}

namespace Stage {

class Scene;
class Timeline;

/// The most bytes of a scene's file, and the most nodes in it.
constexpr std::uint64_t kMostSceneBytes = std::uint64_t(1) << 30;
constexpr std::size_t kMostSceneNodes = 1'000'000;
/// The limits of its frames per second, and how far from 0 its times may be, in seconds.
constexpr double kLeastRate = 0.1;
constexpr double kHighestRate = 1e5;
constexpr double kLongestTime = 2e6;

/// The content of a scene's file: the nodes with their curves, the time, and the core's tools.
struct SceneData {
    struct Node {
        NodeRecord record;
        std::int32_t parent = -1; ///< index of its parent; -1 for a root
    };

    double time = 0.0;  ///< seconds, like the range
    double start = 0.0; ///< of the range
    double end = 0.0;
    double rate = 0.0; ///< frames per second
    std::vector<Node> nodes;
    MVR::Tag configuration; ///< for CoreInterface::loadConfiguration()
};

/// The name of each tool to which a node may belong.
using ToolNames = std::map<const MVR::CInterface*, std::string>;

/// Returns the present content of the scene. Nodes of tools that aren't among `tools` become plain
/// objects.
SceneData takeScene(const Scene& scene, const Timeline& timeline, const ToolNames& tools,
                    MVR::Tag configuration);

/// Puts nodes and time into an empty scene. None of it can be undone.
void bringScene(const SceneData& data, Scene& scene, Timeline& timeline);

/// Writes a scene's file, the text of a tree. Returns false, with the reason in `error` and the old
/// file intact, if it can't be written, or couldn't be read again.
[[nodiscard]] bool writeSceneFile(const std::string& path, const SceneData& data,
                                  std::string& error);

/// Reads a scene's file. Returns false, with file, position and reason in `error`, if it can't be
/// read or holds anything that a scene can't; `out` then stays as it was.
[[nodiscard]] bool readSceneFile(const std::string& path, SceneData& out, std::string& error);

} // namespace Stage
