#pragma once

#include "plugins/c_extendable.h"

#include <array>
#include <cstdint>
#include <vector>

namespace MVR {

/// A mesh that belongs to no host. A copy is deep. How the flat lists group into polygons is
/// agreed between the adaptors that fill and read it; the core only carries them.
class CMesh : public CExtendable {
public:
    std::vector<std::array<double, 3>> vertices;           ///< positions, in scene units
    std::vector<std::array<double, 3>> textureCoordinates; ///< u, v, w
    std::vector<std::int32_t> faces;                       ///< indices into vertices
    std::vector<std::int32_t> textureFaces;                ///< indices into textureCoordinates
};

} // namespace MVR
