#pragma once

#include "data/huffman_tree.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace MVR {

// Decodes the payload of a block with a table, indexed by the next bits, that yields up to three
// bytes at once.
class HuffmanDecoder {
public:
    // `outputSize` is the expected size of the output; a large table pays off for large output.
    HuffmanDecoder(const HuffmanTree& tree, std::size_t outputSize);

    // The bits of the shortest code, or 0 if there is only one symbol.
    std::uint32_t shortestCode() const { return shortest_; }
    // Decodes at most `outSize` bytes and returns their number, which is less if the payload ends.
    std::size_t decode(const std::uint8_t* payload, std::size_t payloadSize, std::uint8_t* out,
                       std::size_t outSize) const;

private:
    // Bits 0 to 5: the number of bits that the entry consumes. 6 to 7: the number of its bytes, 0
    // for a code longer than the table's bits. 8 to 31: the bytes.
    using Entry = std::uint32_t;

    void fillTable();
    void joinEntries();
    std::uint8_t* decodeRun(const std::uint8_t* payload, std::size_t payloadSize,
                            std::uint64_t& bit, std::uint8_t* to, const std::uint8_t* end) const;
    bool decodeOne(const std::uint8_t* payload, std::uint64_t& bit, std::uint64_t bitCount,
                   std::uint8_t& out) const;

    const HuffmanTree& tree_;
    std::uint32_t tableBits_;
    std::uint32_t shortest_ = 0;
    std::vector<Entry> table_;
};

} // namespace MVR
