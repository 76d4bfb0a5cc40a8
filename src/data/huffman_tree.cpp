#include "data/huffman_tree.h"

namespace MVR {

HuffmanTree::HuffmanTree(const std::vector<HuffmanSymbol>& table) {
    const std::size_t total = 2 * table.size() - 1;
    nodes_.reserve(total);
    std::vector<std::int32_t> order; // Node indices by ascending weight.
    order.reserve(total);
    for (const HuffmanSymbol& record : table) {
        order.push_back(static_cast<std::int32_t>(nodes_.size()));
        nodes_.push_back({-1, -1, -1, record.weight, record.symbol});
    }
    for (std::size_t i = 0; i + 1 < order.size(); i += 2) {
        const std::int32_t left = order[i];
        const std::int32_t right = order[i + 1];
        const std::uint64_t weight = nodes_[left].weight + nodes_[right].weight;
        // After all nodes of equal weight: reader and writer of the format depend on it.
        std::size_t place = i + 2;
        while (place < order.size() && weight >= nodes_[order[place]].weight)
            ++place;
        const auto merged = static_cast<std::int32_t>(nodes_.size());
        nodes_.push_back({left, right, -1, weight, -1});
        nodes_[left].parent = merged;
        nodes_[right].parent = merged;
        order.insert(order.begin() + place, merged);
    }
    root_ = order.back();
}

} // namespace MVR
