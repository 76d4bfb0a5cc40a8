#include "data/huffman_encoder.h"

#include "data/little_endian.h"

#include <algorithm>

namespace MVR {
namespace {

// Bits that wait to be written: fewer than 8 after each `flush`.
struct BitWriter {
    std::uint8_t* out;
    std::uint64_t bits = 0;
    std::uint32_t count = 0;

    void put(std::uint64_t code, std::uint32_t length) {
        bits |= code << count;
        count += length;
    }
    void flush() {
        storeLittle64(out, bits);
        out += count / 8;
        bits >>= count & ~7u;
        count %= 8;
    }
};

// Four codes of this length fit into the 64 bits beside what waits.
constexpr std::uint32_t kLongestOfFour = 14;

} // namespace

HuffmanEncoder::HuffmanEncoder(const std::uint8_t* data, std::size_t size)
    : data_(data), size_(size) {
    countBytes();
    for (int byte = 255; byte >= 0; --byte)
        if (counts_[byte] > 0)
            table_.push_back({static_cast<std::uint8_t>(byte), counts_[byte]});
    std::stable_sort(
        table_.begin(), table_.end(),
        [](const HuffmanSymbol& a, const HuffmanSymbol& b) { return a.weight < b.weight; });
    if (table_.size() > 1)
        assignCodes();
}

// Four counters for each byte value: with one, a run of a byte would wait for its counter each
// time.
void HuffmanEncoder::countBytes() {
    std::array<std::array<std::uint32_t, 256>, 4> counts{};
    std::size_t i = 0;
    for (; i + 4 <= size_; i += 4)
        for (std::size_t lane = 0; lane < 4; ++lane)
            ++counts[lane][data_[i + lane]];
    for (; i < size_; ++i)
        ++counts[0][data_[i]];
    for (std::size_t byte = 0; byte < 256; ++byte)
        counts_[byte] = counts[0][byte] + counts[1][byte] + counts[2][byte] + counts[3][byte];
}

void HuffmanEncoder::assignCodes() {
    const HuffmanTree tree(table_);
    for (std::size_t leaf = 0; leaf < table_.size(); ++leaf) {
        Code code{0, 0};
        auto at = static_cast<std::int32_t>(leaf);
        for (std::int32_t parent; (parent = tree.node(at).parent) >= 0; at = parent) {
            code.bits = code.bits << 1 | (tree.node(parent).right == at);
            ++code.length;
        }
        codes_[table_[leaf].symbol] = code;
        longest_ = std::max(longest_, code.length);
    }
}

std::size_t HuffmanEncoder::payloadSize() const {
    std::uint64_t bits = 0;
    for (const HuffmanSymbol& record : table_)
        bits += std::uint64_t(record.weight) * codes_[record.symbol].length;
    return (bits + 7) / 8;
}

void HuffmanEncoder::write(std::uint8_t* out) const {
    BitWriter writer{out};
    std::size_t i = 0;
    if (longest_ <= kLongestOfFour) {
        for (; i + 4 <= size_; i += 4) {
            for (std::size_t lane = 0; lane < 4; ++lane) {
                const Code& code = codes_[data_[i + lane]];
                writer.put(code.bits, code.length);
            }
            writer.flush();
        }
    }
    for (; i < size_; ++i) {
        const Code& code = codes_[data_[i]];
        writer.put(code.bits, code.length);
        writer.flush();
    }
    writer.flush();
    if (writer.count > 0)
        storeLittle64(writer.out, writer.bits);
}

} // namespace MVR
