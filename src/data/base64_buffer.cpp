#include "data/sdk/base64_buffer.h"

#include "data/base64_codec.h"

#include <algorithm>

namespace MVR {

Base64Buffer::Base64Buffer(std::string_view text) {
    ByteBuffer decoded = ByteBuffer::uninitialised(text.size() / 4 * 3);
    std::size_t size = 0;
    if (!decodeBase64(text, decoded.data(), size))
        return;
    decoded.resize(size);
    bytes_ = std::move(decoded);
}

std::string Base64Buffer::toText() const {
    Base64Writer writer(size());
    writer.append(data(), size());
    return writer.finish();
}

bool Base64Buffer::copyTo(void* dest, std::size_t capacity) const {
    if (capacity < size())
        return false;
    std::copy_n(data(), size(), static_cast<std::uint8_t*>(dest));
    return true;
}

} // namespace MVR
