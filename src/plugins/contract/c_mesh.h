#pragma once

#include "data/sdk/tag.h"
#include "plugins/contract/c_extendable.h"

#include <array>
#include <cstdint>
#include <vector>

namespace MVR {

/// A mesh that belongs to no host, by the conventions of snapshots.h. A copy is deep. Anyone may
/// make and use one at any time; one object belongs to one thread at a time. How the flat lists
/// group into polygons is agreed between the adaptors that fill and read it; the core only carries
/// them.
class CMesh final : public CExtendable {
public:
    CMesh() = default;
    /// Reads an element "CMesh" in either form that `write` gives. The mesh is empty if the element
    /// has another name, or if one of its lists is missing or not of the size that is told for it.
    /// Indices are not compared with the lists that they point into.
    explicit CMesh(const Tag& tag);

    /// The mesh as an element "CMesh": one text of base64, which keeps every bit, or, `asText`, an
    /// element for each entry, which keeps six digits and takes many times the memory.
    Tag write(bool asText) const;

    std::vector<std::array<double, 3>> vertices;           ///< positions, in scene units
    std::vector<std::array<double, 3>> textureCoordinates; ///< u, v, w
    std::vector<std::int32_t> faces;                       ///< indices into vertices
    std::vector<std::int32_t> textureFaces;                ///< indices into textureCoordinates
};

} // namespace MVR
