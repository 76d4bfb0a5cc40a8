#include "data/huffman_decoder.h"

#include "data/little_endian.h"

#include <algorithm>

namespace MVR {
namespace {

// The large table still fits into a first-level cache.
constexpr std::uint32_t kLargeTableBits = 12;
constexpr std::uint32_t kSmallTableBits = 8;
constexpr std::size_t kLargeOutput = 16384;

constexpr std::uint32_t kMaxBytes = 3; // In one entry.
constexpr std::uint32_t kLookups = 4;  // Between two refills, which leave 49 bits or more.
static_assert(kLookups * kLargeTableBits <= 49);

std::uint32_t makeEntry(std::uint32_t content, std::uint32_t bytes, std::uint32_t bits) {
    return content << 8 | bytes << 6 | bits;
}

std::uint32_t contentOf(std::uint32_t entry) {
    return entry >> 8;
}

std::uint32_t bytesOf(std::uint32_t entry) {
    return entry >> 6 & 3;
}

std::uint32_t bitsOf(std::uint32_t entry) {
    return entry & 63;
}

} // namespace

HuffmanDecoder::HuffmanDecoder(const HuffmanTree& tree, std::size_t outputSize)
    : tree_(tree), tableBits_(outputSize < kLargeOutput ? kSmallTableBits : kLargeTableBits),
      table_(std::size_t(1) << tableBits_) {
    if (tree_.isLeaf(tree_.root()))
        return;
    fillTable();
    joinEntries();
}

// One byte an entry.
void HuffmanDecoder::fillTable() {
    struct Place {
        std::int32_t node;
        std::uint32_t code;
        std::uint32_t depth;
    };
    shortest_ = tableBits_;
    std::vector<Place> pending{{tree_.root(), 0, 0}};
    while (!pending.empty()) {
        const Place at = pending.back();
        pending.pop_back();
        const HuffmanNode& node = tree_.node(at.node);
        if (tree_.isLeaf(at.node)) {
            shortest_ = std::min(shortest_, at.depth);
            const Entry entry = makeEntry(static_cast<std::uint8_t>(node.symbol), 1, at.depth);
            for (std::size_t i = at.code; i < table_.size(); i += std::size_t(1) << at.depth)
                table_[i] = entry;
        } else if (at.depth == tableBits_) {
            table_[at.code] = makeEntry(0, 0, 0);
        } else {
            pending.push_back({node.left, at.code, at.depth + 1});
            pending.push_back({node.right, at.code | 1u << at.depth, at.depth + 1});
        }
    }
}

// Adds the bytes whose codes lie entirely in the rest of an entry's bits. From the highest entry
// down, since the rest of an entry indexes a lower one.
void HuffmanDecoder::joinEntries() {
    for (std::size_t i = table_.size(); i-- > 0;) {
        Entry joined = table_[i];
        while (bytesOf(joined) > 0 && bytesOf(joined) < kMaxBytes) {
            const Entry next = table_[i >> bitsOf(joined)];
            const std::uint32_t bits = bitsOf(joined) + bitsOf(next);
            if (bytesOf(next) == 0 || bits > tableBits_)
                break;
            const std::uint32_t bytes = bytesOf(joined);
            const std::uint32_t content = contentOf(joined) | (contentOf(next) & 0xFF) << 8 * bytes;
            joined = makeEntry(content, bytes + 1, bits);
        }
        table_[i] = joined;
    }
}

// Bit by bit: for codes longer than the table's, and near the ends, where a whole word doesn't fit.
bool HuffmanDecoder::decodeOne(const std::uint8_t* payload, std::uint64_t& bit,
                               std::uint64_t bitCount, std::uint8_t& out) const {
    std::int32_t at = tree_.root();
    while (!tree_.isLeaf(at)) {
        if (bit == bitCount)
            return false;
        const HuffmanNode& node = tree_.node(at);
        at = payload[bit / 8] >> bit % 8 & 1 ? node.right : node.left;
        ++bit;
    }
    out = static_cast<std::uint8_t>(tree_.node(at).symbol);
    return true;
}

// Decodes from `bit` on with the table while eight bytes can be read at once and the output of a
// round fits, or up to a code that is longer than the table's.
std::uint8_t* HuffmanDecoder::decodeRun(const std::uint8_t* payload, std::size_t payloadSize,
                                        std::uint64_t& bit, std::uint8_t* to,
                                        const std::uint8_t* end) const {
    // Each entry stores four bytes, whatever it holds.
    constexpr std::ptrdiff_t kRoom = kLookups * kMaxBytes + sizeof(Entry);
    const Entry* const table = table_.data();
    const std::uint64_t mask = table_.size() - 1;
    if (bit / 8 + 8 > payloadSize || end - to < kRoom)
        return to;
    const std::uint8_t* from = payload + bit / 8;
    const std::uint8_t* const last = payload + payloadSize - 8;
    // The bits that were read and not yet used, and their number. Above them may lie the next bits
    // of the payload, which are read again later.
    std::uint64_t bits = loadLittle64(from) >> bit % 8;
    std::uint32_t count = 56 - bit % 8;
    from += 7;
    Entry entry = makeEntry(0, 1, 0);
    while (true) {
        for (std::uint32_t i = 0; i < kLookups; ++i) {
            entry = table[bits & mask];
            if (bytesOf(entry) == 0)
                break;
            storeLittle32(to, contentOf(entry));
            to += bytesOf(entry);
            count -= bitsOf(entry);
            bits >>= bitsOf(entry);
        }
        if (bytesOf(entry) == 0 || from > last || end - to < kRoom)
            break;
        bits |= loadLittle64(from) << count;
        from += (63 - count) / 8;
        count |= 56;
    }
    bit = std::uint64_t(from - payload) * 8 - count;
    return to;
}

std::size_t HuffmanDecoder::decode(const std::uint8_t* payload, std::size_t payloadSize,
                                   std::uint8_t* out, std::size_t outSize) const {
    const std::uint64_t bitCount = std::uint64_t(payloadSize) * 8;
    std::uint64_t bit = 0;
    std::uint8_t* to = out;
    std::uint8_t* const end = out + outSize;
    while (to != end) {
        to = decodeRun(payload, payloadSize, bit, to, end);
        if (!decodeOne(payload, bit, bitCount, *to))
            break;
        ++to;
    }
    return to - out;
}

} // namespace MVR
