#include "data/sdk/packed_tag.h"

#include "data/little_endian.h"
#include "data/sdk/base64_buffer.h"

#include <cstdint>
#include <limits>
#include <string>
#include <utility>

namespace MVR {
namespace {

constexpr std::string_view kMark = "compressed";
constexpr std::string_view kMarked = "1";

/// Returns true for a block of a single symbol. No tree's text is one, and only such a block can be
/// far larger unpacked than packed.
bool isRepetition(const ByteBuffer& block) {
    constexpr std::size_t kSymbolCountAt = 8;
    return block.size() >= kSymbolCountAt + 4 && loadLittle32(block.data() + kSymbolCountAt) == 1;
}

} // namespace

Tag packTag(const Tag& tree, std::string_view name) {
    const std::string text = tree.toText("", "", "");
    // The zero byte after the text is a part of the form.
    const ByteBuffer block = ByteBuffer::compressed({text.c_str(), text.size() + 1});
    Tag packed = Tag::element(name, Base64Buffer(block.data(), block.size()).toText());
    packed.attributeRef(kMark) = kMarked;
    return packed;
}

bool isPacked(const Tag& element) {
    return element.attribute(kMark) == kMarked;
}

bool unpackTag(Tag& element) {
    std::size_t all = std::numeric_limits<std::size_t>::max();
    return unpackTag(element, all);
}

bool unpackTag(Tag& element, std::size_t& bytesLeft) {
    if (!isPacked(element))
        return true;
    const Base64Buffer block(element.value());
    if (isRepetition(block.bytes()) || block.bytes().mostDecompressed() > bytesLeft)
        return false;
    const ByteBuffer text = block.bytes().decompress();
    bytesLeft -= text.size();
    Tag tree;
    const bool isWhole = tree.parse(text.view()) == 0;
    if (isWhole || tree.kind() == Tag::Element)
        element = std::move(tree);
    return isWhole;
}

} // namespace MVR
