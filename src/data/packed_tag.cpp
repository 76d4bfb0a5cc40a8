#include "data/packed_tag.h"

#include "data/base64_buffer.h"

#include <string>
#include <utility>

namespace MVR {
namespace {

constexpr std::string_view kMark = "compressed";
constexpr std::string_view kMarked = "1";

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
    if (tree.parse(block.bytes().decompress().view()) != 0)
        return false;
    element = std::move(tree);
    return true;
}

} // namespace MVR
