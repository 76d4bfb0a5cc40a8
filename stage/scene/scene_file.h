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
/// Its frames per second, and how far from 0 its times may be, in seconds.
constexpr double kLeastRate = 0.1;
constexpr double kHighestRate = 1e5;
constexpr double kLongestTime = 2e6;

/// What a scene's file holds: the nodes with their curves, the time, and the core's tools.
struct SceneData {
    struct Node {
        NodeRecord record;
        std::int32_t parent = -1; ///< index of the node that it hangs below; -1 for a root
    };

    double time = 0.0;  ///< seconds, like the range
    double start = 0.0; ///< of the range
    double end = 0.0;
    double rate = 0.0; ///< frames per second
    std::vector<Node> nodes;
    MVR::Tag configuration; ///< for CoreInterface::loadConfiguration()
};

/// The name of each tool that a node may belong to.
using ToolNames = std::map<const MVR::CInterface*, std::string>;

/// What the scene holds now. Nodes of tools that aren't among `tools` become plain objects.
SceneData takeScene(const Scene& scene, const Timeline& timeline, const ToolNames& tools,
                    MVR::Tag configuration);

/// Puts nodes and time into a scene that is empty. Nothing of it can be undone.
void bringScene(const SceneData& data, Scene& scene, Timeline& timeline);

/// Writes a scene's file, the text of a tree. False, with the reason in `error` and the old file
/// whole, if it can't be written, or couldn't be read again.
[[nodiscard]] bool writeSceneFile(const std::string& path, const SceneData& data,
                                  std::string& error);

/// Reads a scene's file. False, with file, place and reason in `error`, if it can't be read or
/// holds anything that a scene can't; `out` is then as it was.
[[nodiscard]] bool readSceneFile(const std::string& path, SceneData& out, std::string& error);

} // namespace Stage
