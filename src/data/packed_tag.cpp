#include "data/packed_tag.h"

#include "data/base64_buffer.h"
#include "data/little_endian.h"

#include <string>
#include <utility>

namespace MVR {
namespace {

constexpr std::string_view kMark = "compressed";
constexpr std::string_view kMarked = "1";

/// A block of a single symbol, which no tree's text is. It is the one kind that can be far larger
/// unpacked than packed.
bool isRepetition(const ByteBuffer& block) {
    constexpr std::size_t kSymbolCountAt = 8;
    return block.size() >= kSymbolCountAt + 4 && loadLittle32(block.data() + kSymbolCountAt) == 1;
}

} // namespace

Tag packTag(const Tag& tree, std::string_view name) {
    const std::string text = tree.toText("", "", "");
    // The zero byte behind the text is a part of the form.
    const ByteBuffer block = ByteBuffer::compressed({text.c_str(), text.size() + 1});
    Tag packed = Tag::element(name, Base64Buffer(block.data(), block.size()).toText());
    packed.attributeRef(kMark) = kMarked;
    return packed;
}

bool unpackTag(Tag& element) {
    if (element.attribute(kMark) != kMarked)
        return true;
    const Base64Buffer block(element.value());
    Tag tree;
    if (isRepetition(block.bytes()) || tree.parse(block.bytes().decompress().view()) != 0)
        return false;
    element = std::move(tree);
    return true;
}

} // namespace MVR
