#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace MVR {

// A record of a block's symbol table.
struct HuffmanSymbol {
    std::uint8_t symbol;
    std::uint32_t weight; // Occurrences in the input.
};

struct HuffmanNode {
    std::int32_t left; // Reached by bit 0; -1 in a leaf.
    std::int32_t right;
    std::int32_t parent;  // -1 in the root.
    std::uint64_t weight; // In a merged node, the sum of its children.
    std::int32_t symbol;  // -1 in a merged node.
};

// The code tree of a symbol table. Any table of 1 to 256 records makes a tree: weights needn't be
// in order, and symbols may repeat. No code is longer than 255 bits.
class HuffmanTree {
public:
    explicit HuffmanTree(const std::vector<HuffmanSymbol>& table);

    std::int32_t root() const { return root_; }
    const HuffmanNode& node(std::int32_t index) const { return nodes_[index]; }
    bool isLeaf(std::int32_t index) const { return nodes_[index].left < 0; }

private:
    std::int32_t root_;
    std::vector<HuffmanNode> nodes_; // The leaves in the order of the table, then the merged nodes.
};

} // namespace MVR
