#include "data/sdk/packed_tag.h"

#include "data/little_endian.h"
#include "data/sdk/base64_buffer.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

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

/// Returns true if elements `name` nested in `tree` are packed again. They are never written so,
/// and each such level would make a small file several times larger.
bool holdsPacked(const Tag& tree, std::string_view name) {
    std::vector<const Tag*> waiting{&tree};
    while (!waiting.empty()) {
        const Tag& tag = *waiting.back();
        waiting.pop_back();
        for (std::int32_t i = 0; i < tag.childCount(); ++i) {
            const Tag& child = tag.child(i);
            if (!child.hasName(name))
                continue;
            if (isPacked(child))
                return true;
            waiting.push_back(&child);
        }
    }
    return false;
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
    if (!isPacked(element))
        return true;
    const Base64Buffer block(element.value());
    Tag tree;
    if (isRepetition(block.bytes()) || tree.parse(block.bytes().decompress().view()) != 0 ||
        holdsPacked(tree, element.name()))
        return false;
    element = std::move(tree);
    return true;
}

} // namespace MVR
