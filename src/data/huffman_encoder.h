#pragma once

#include "data/huffman_tree.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace MVR {

// Writes the payload of a block: the code of each byte, its first bit lowest. Limit: the input has
// less than 2^32 bytes, so no code is longer than 45 bits.
class HuffmanEncoder {
public:
    HuffmanEncoder(const std::uint8_t* data, std::size_t size);

    // In ascending order of weight; empty for an empty input.
    const std::vector<HuffmanSymbol>& table() const { return table_; }
    std::size_t payloadSize() const;
    // `out` has room for the payload and for `kSlack` more bytes, which are overwritten.
    void write(std::uint8_t* out) const;

    static constexpr std::size_t kSlack = 8;

private:
    struct Code {
        std::uint64_t bits;
        std::uint32_t length; // 0 for a byte that doesn't occur, and for a lone one.
    };

    void countBytes();
    void assignCodes();

    const std::uint8_t* data_;
    std::size_t size_;
    std::uint32_t longest_ = 0;
    std::array<std::uint32_t, 256> counts_{};
    std::array<Code, 256> codes_{};
    std::vector<HuffmanSymbol> table_;
};

} // namespace MVR
