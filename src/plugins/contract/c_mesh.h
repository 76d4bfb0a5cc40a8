#pragma once

#include "data/sdk/tag.h"
#include "plugins/contract/c_extendable.h"

#include <array>
#include <cstdint>
#include <vector>

namespace MVR {

/// A mesh that belongs to no host, by the conventions of snapshots.h. A copy is deep. Anyone may
/// make and use one at any time; one object belongs to one thread at a time. The adaptors that fill
/// and read it agree how the flat lists group into polygons; the core only passes them on.
class CMesh final : public CExtendable {
public:
    CMesh() = default;
    /// Reads an element "CMesh" in either form that write() makes. The mesh is empty if the element
    /// has another name, or if one of its lists is missing or doesn't have its stated size. Indices
    /// are not checked against the lists that they point into.
    explicit CMesh(const Tag& tag);

    /// Returns the mesh as an element "CMesh": one text of base64, which keeps every bit, or, if
    /// `asText`, an element for each entry, which keeps six digits and needs many times the memory.
    Tag write(bool asText) const;

    std::vector<std::array<double, 3>> vertices;           ///< positions, in scene units
    std::vector<std::array<double, 3>> textureCoordinates; ///< u, v, w
    std::vector<std::int32_t> faces;                       ///< indices into vertices
    std::vector<std::int32_t> textureFaces;                ///< indices into textureCoordinates
};

} // namespace MVR
