#pragma once

#include "data/sdk/byte_buffer.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace MVR {

/// A sequence of bytes that has a text form: the plain base64 of RFC 4648, padded with "=", in one
/// unbroken line. For use at any time; one object belongs to one thread at a time.
class Base64Buffer {
public:
    /// Copies the bytes; a null pointer makes `size` zero bytes.
    Base64Buffer(const void* data, std::size_t size) : bytes_(data, size) {}
    /// Decodes a text. The buffer is empty if the length is no multiple of 4, or if the text holds
    /// a character outside of base64, blanks and line ends included. "=" as the third or fourth
    /// character of a group ends the group early, wherever the group is.
    explicit Base64Buffer(std::string_view text);

    /// Returns the bytes as text; "" if there are none.
    std::string toText() const;

    std::size_t size() const { return bytes_.size(); }
    /// Valid as long as the buffer; may be null if it is empty.
    const std::uint8_t* data() const { return bytes_.data(); }
    const ByteBuffer& bytes() const { return bytes_; }
    /// Copies all bytes to `dest`, which has room for `capacity`. Returns false, with nothing
    /// copied, if that is less than `size()`.
    [[nodiscard]] bool copyTo(void* dest, std::size_t capacity) const;

private:
    ByteBuffer bytes_;
};

} // namespace MVR
