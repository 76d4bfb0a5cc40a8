// Reads any bytes; what was read can be written and read again. Where the format promises it, the
// tree comes back equal.

#include "data/sdk/tag.h"
#include "require.h"

#include <cstdint>
#include <string>
#include <string_view>

using MVR::Tag;

namespace {

bool isBlank(const std::string& text) {
    return text.find_first_not_of(" \t\n\v\f\r") == std::string::npos;
}

// Names that are written as references don't fit their close tag; ">" in a value ends the tag.
bool returns(const Tag& tag) {
    if (tag.kind() == Tag::Text)
        return !isBlank(tag.name());
    if (tag.kind() != Tag::Element || tag.name().empty())
        return false;
    for (char c : tag.name())
        if (c <= ' ' || c > '~' || std::string_view("&</>!?").find(c) != std::string_view::npos)
            return false;
    const std::string own = tag.toText("", "", "");
    const std::size_t end = own.find('>');
    if (tag.childCount() == 0 ? end != own.size() - 1 : Tag(own).childCount() == 0)
        return false;
    const bool text = tag.child(0).kind() == Tag::Text;
    if (text && tag.childCount() != 1)
        return false;
    for (std::int32_t i = 0; i < tag.childCount(); ++i)
        if ((!text && tag.child(i).kind() == Tag::Text) || !returns(tag.child(i)))
            return false;
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    Tag tag;
    const std::int32_t code = tag.parse(text);
    require(code >= 0 && code <= 6 && code != 1);
    require(Tag(text) == tag);
    Tag copy = tag;
    require(copy == tag);
    const std::string written = tag.toText("", "", "");
    require(copy.toText("", "", "") == written);
    Tag again;
    const std::int32_t readAgain = again.parse(written);
    // The input bounds the nesting here: each level writes everything below.
    if (size < 4096 && tag.kind() == Tag::Element && returns(tag))
        require(readAgain == 0 && again == tag);
    again.addChild(std::move(copy));
    if (again.childCount() > 0)
        again.removeChild(again.child(again.childCount() / 2));
    for (std::int32_t i = 0; i < tag.childCount(); ++i) {
        double number = 0;
        tag.child(i).as(number);
        tag.child(i).attributeRef("key") = tag.child(i).value();
    }
    return 0;
}
