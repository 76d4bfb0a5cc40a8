// Any bytes as a chunk, as base64 text and as a packed tree. What was read is written and read
// again alike; what is refused changes nothing.

#include "core/base/sdk/log.h"
#include "data/sdk/base64_buffer.h"
#include "data/sdk/data_chunk.h"
#include "data/sdk/packed_tag.h"
#include "require.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

namespace {

using MVR::Base64Buffer;
using MVR::Tag;
using MVR::Util::DataChunk;

void readChunk(const std::uint8_t* data, std::size_t size) {
    DataChunk chunk("before", "", 0);
    const auto* behind = static_cast<const std::uint8_t*>(chunk.parse(data, size));
    if (size < 12)
        require(!behind && chunk.name() == "before");
    std::int32_t flatSize = 0;
    const void* flat = chunk.serialize(flatSize);
    require(flat && static_cast<std::size_t>(flatSize) <= size + 18);
    if (behind)
        require(behind - data == flatSize && std::memcmp(flat, data, flatSize) == 0);
    require(DataChunk().parse(flat, flatSize) != nullptr);
    // All but the last byte, in a block of its own.
    const std::unique_ptr<std::uint8_t[]> cut(new std::uint8_t[flatSize - 1]);
    std::memcpy(cut.get(), flat, flatSize - 1);
    require(!DataChunk().parse(cut.get(), flatSize - 1));
    const std::string name(chunk.child("a").name());
    require(name == "a" || !chunk.hasChild("a"));
}

void readBase64(std::string_view text) {
    const Base64Buffer bytes(text);
    require(bytes.size() <= text.size() / 4 * 3);
    const std::string written = bytes.toText();
    require(written.size() == (bytes.size() + 2) / 3 * 4);
    require(Base64Buffer(written).bytes() == bytes.bytes());
    const Base64Buffer all(text.data(), text.size());
    require(Base64Buffer(all.toText()).bytes().view() == text);
}

void readPacked(const std::uint8_t* data, std::size_t size) {
    Tag packed = Tag::element("a", Base64Buffer(data, size).toText());
    packed.attributeRef("compressed") = "1";
    const Tag before = packed;
    if (!MVR::unpackTag(packed)) {
        require(packed == before || packed.kind() == Tag::Element);
        return;
    }
    Tag again = MVR::packTag(packed, "b");
    const std::string text = packed.toText("", "", "");
    // A tree may hold what its text can't express; then the result is another tree, or none.
    if (MVR::unpackTag(again))
        require(Tag(text) == again);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    MVR::Log::setThreshold(MVR::Log::Critical); // else the log of refusals fills the memory
    readChunk(data, size);
    readBase64({reinterpret_cast<const char*>(data), size});
    readPacked(data, size);
    return 0;
}
