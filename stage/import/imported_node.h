#pragma once

#include "stage/scene/stage_node.h"

#include <cstddef>
#include <cstdint>

namespace Stage {

/// A node of a merged file.
struct ImportedNode {
    NodeRecord record;
    std::int32_t parent = -1; ///< index of the parent, which is lower; -1 for a root
};

/// The most bytes of a file, and of one that it names.
constexpr std::uint64_t kMostImportBytes = std::uint64_t(256) << 20;
/// The most nodes of a file.
constexpr std::size_t kMostImportNodes = 100'000;
/// The most vertices, texture coordinates and corners of all meshes together.
constexpr std::size_t kMostMeshEntries = std::size_t(64) << 20;

} // namespace Stage
