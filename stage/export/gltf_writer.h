#pragma once

#include <string>
#include <vector>

namespace Stage {

class StageNode;

/// The nodes as a glTF 2.0 file with its data inside: hierarchy, transforms, cameras, the triangles
/// of meshes without texture coordinates, and one animation of position and rotation. The format
/// can't animate a lens: a camera has the field of view that it has at `start`.
///
/// A node that is hidden keeps its place and shows no mesh. A triangle whose corner names no vertex
/// is left out.
///
/// A node whose parent isn't among `nodes` becomes a root. Rotations are brought to length 1 and
/// to the sign that lies next to the key before, as the format's linear samplers need. Times are
/// seconds; the format has none below 0, so that `start` becomes 0 if it is negative. A number that
/// is not finite, which the format can't hold, gives way to the one before it.
std::string toGltf(const std::vector<const StageNode*>& nodes, double start);

} // namespace Stage
