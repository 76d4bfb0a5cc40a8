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
    /// A copy of the bytes; a null pointer gives `size` zero bytes.
    Base64Buffer(const void* data, std::size_t size) : bytes_(data, size) {}
    /// Decodes a text. Empty if its length is no multiple of 4, or if it holds a character that is
    /// none of base64's (blanks and line ends are none). "=" in the fourth place of a group, or in
    /// the third, ends the group early, wherever it stands.
    explicit Base64Buffer(std::string_view text);

    /// The bytes as text; "" for none.
    std::string toText() const;

    std::size_t size() const { return bytes_.size(); }
    /// Valid as long as the buffer; may be null if it is empty.
    const std::uint8_t* data() const { return bytes_.data(); }
    const ByteBuffer& bytes() const { return bytes_; }
    /// Copies all bytes to `dest`, which has room for `capacity`. False, with nothing copied, if
    /// that is less than `size()`.
    [[nodiscard]] bool copyTo(void* dest, std::size_t capacity) const;

private:
    ByteBuffer bytes_;
};

} // namespace MVR
