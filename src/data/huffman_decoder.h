#pragma once

#include "data/huffman_tree.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace MVR {

// Reads the payload of a block by a table of the next bits, which gives up to three bytes at once.
class HuffmanDecoder {
public:
    // `outputSize` is what the decoder is expected to give; a large table pays for large output.
    HuffmanDecoder(const HuffmanTree& tree, std::size_t outputSize);

    // No code has fewer bits. 0 if there is one symbol only.
    std::uint32_t shortestCode() const { return shortest_; }
    // Decodes at most `outSize` bytes and gives their number: fewer if the payload ends.
    std::size_t decode(const std::uint8_t* payload, std::size_t payloadSize, std::uint8_t* out,
                       std::size_t outSize) const;

private:
    // Bits 0 to 5: the bits that the entry takes. 6 to 7: the number of its bytes, 0 for a code
    // longer than the table's bits. 8 to 31: the bytes.
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
