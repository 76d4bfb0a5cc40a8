#pragma once

#include <string>
#include <vector>

namespace Stage {

class StageNode;

/// The plain objects that a glTF file shows as cameras, so that other programs look through them.
struct ShownAsCameras {
    bool isEachMoving = false;      ///< each that has keys and no mesh
    std::vector<std::string> names; ///< these objects of the scene as well
};

/// Returns the nodes as a glTF 2.0 file with its data inside: hierarchy, transforms, cameras, the
/// triangles of meshes without texture coordinates, and one animation of position and rotation. The
/// format can't animate a lens: a camera has the field of view that it has at `start`.
///
/// A hidden node keeps its position in the hierarchy and shows no mesh. A triangle whose corner
/// names no vertex is left out.
///
/// A node whose parent isn't among `nodes` becomes a root. Rotations get length 1 and the sign
/// closest to the previous key, as the format's linear samplers need. Times are seconds; the format
/// has none below 0, so `start` becomes 0 if it is negative. The previous number replaces one that
/// isn't finite, which the format can't hold.
std::string toGltf(const std::vector<const StageNode*>& nodes, double start,
                   const ShownAsCameras& cameras = {});

} // namespace Stage
