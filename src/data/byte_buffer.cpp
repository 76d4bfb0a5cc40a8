#include "data/sdk/byte_buffer.h"

#include "core/base/sdk/log.h"
#include "data/huffman_decoder.h"
#include "data/huffman_encoder.h"
#include "data/little_endian.h"
#include "platform/sdk/files.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace MVR {
namespace {

// A block: magic, version, symbol count, uncompressed size, the symbol table, the payload.
constexpr std::uint32_t kMagic = 0x005331CA;
constexpr std::uint32_t kVersion = 100;
constexpr std::size_t kHeaderSize = 16;
constexpr std::size_t kRecordSize = 5;
constexpr std::uint32_t kMaxSymbols = 256;

// A block of one symbol has no payload that bounds its output.
constexpr std::size_t kMaxRepeated = std::size_t(64) << 20;

bool isBlock(const std::uint8_t* data, std::size_t size) {
    return size >= kHeaderSize && loadLittle32(data) == kMagic &&
           loadLittle32(data + 4) == kVersion && loadLittle32(data + 8) <= kMaxSymbols;
}

} // namespace

ByteBuffer ByteBuffer::uninitialised(std::size_t size) {
    ByteBuffer buffer;
    buffer.bytes_.reset(new std::uint8_t[size]);
    buffer.size_ = size;
    return buffer;
}

ByteBuffer::ByteBuffer(const void* data, std::size_t size) : ByteBuffer(uninitialised(size)) {
    if (data)
        std::memcpy(bytes_.get(), data, size);
    else
        std::memset(bytes_.get(), 0, size);
}

void ByteBuffer::resize(std::size_t size) {
    if (size > size_) {
        ByteBuffer larger = uninitialised(size);
        std::copy_n(data(), size_, larger.data());
        std::memset(larger.data() + size_, 0, size - size_);
        *this = std::move(larger);
    }
    size_ = size;
}

bool ByteBuffer::operator==(const ByteBuffer& other) const {
    return std::equal(data(), data() + size_, other.data(), other.data() + other.size_);
}

ByteBuffer ByteBuffer::compress() const {
    return compressed(view());
}

ByteBuffer ByteBuffer::compressed(std::string_view bytes) {
    if (bytes.size() > std::numeric_limits<std::uint32_t>::max())
        return ByteBuffer(bytes.data(), bytes.size());
    const HuffmanEncoder encoder(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    const std::size_t payloadAt = kHeaderSize + kRecordSize * encoder.table().size();
    const std::size_t blockSize = payloadAt + encoder.payloadSize();
    ByteBuffer block = uninitialised(blockSize + HuffmanEncoder::kSlack);
    std::uint8_t* at = block.data();
    storeLittle32(at, kMagic);
    storeLittle32(at + 4, kVersion);
    storeLittle32(at + 8, static_cast<std::uint32_t>(encoder.table().size()));
    storeLittle32(at + 12, static_cast<std::uint32_t>(bytes.size()));
    at += kHeaderSize;
    for (const HuffmanSymbol& record : encoder.table()) {
        *at = record.symbol;
        storeLittle32(at + 1, record.weight);
        at += kRecordSize;
    }
    encoder.write(at);
    block.size_ = blockSize;
    return block;
}

ByteBuffer ByteBuffer::decompress() const {
    if (!isBlock(data(), size()))
        return *this;
    ByteBuffer result;
    const std::size_t symbolCount = loadLittle32(data() + 8);
    const std::size_t wanted = loadLittle32(data() + 12);
    const std::size_t payloadAt = kHeaderSize + kRecordSize * symbolCount;
    if (symbolCount > 0 && payloadAt <= size()) {
        std::vector<HuffmanSymbol> table(symbolCount);
        const std::uint8_t* at = data() + kHeaderSize;
        for (HuffmanSymbol& record : table) {
            record = {*at, loadLittle32(at + 1)};
            at += kRecordSize;
        }
        if (symbolCount == 1) {
            result = uninitialised(std::min(wanted, kMaxRepeated));
            std::memset(result.data(), table[0].symbol, result.size());
        } else {
            const HuffmanTree tree(table);
            const HuffmanDecoder decoder(tree, wanted);
            const std::size_t payloadSize = size() - payloadAt;
            result = uninitialised(std::min(wanted, payloadSize * 8 / decoder.shortestCode()));
            result.size_ = decoder.decode(at, payloadSize, result.data(), result.size_);
        }
    }
    if (result.size() < wanted)
        Log(Log::Error).write("Compressed data is incomplete");
    return result;
}

std::size_t ByteBuffer::mostDecompressed() const {
    if (!isBlock(data(), size()))
        return size();
    const std::size_t wanted = loadLittle32(data() + 12);
    const bool isRepeated = loadLittle32(data() + 8) == 1;
    return std::min(wanted, isRepeated ? kMaxRepeated : size() * 8);
}

bool ByteBuffer::readFile(const std::string& path) {
    std::string text;
    if (!Platform::readFile(path, text))
        return false;
    *this = ByteBuffer(text.data(), text.size());
    return true;
}

bool ByteBuffer::writeFile(const std::string& path) const {
    return Platform::writeFileAtomic(path, view());
}

} // namespace MVR
