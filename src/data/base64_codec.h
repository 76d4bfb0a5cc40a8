#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace MVR {

// The text form of large payloads, read and written without a copy of the bytes in between.

constexpr std::size_t base64TextSize(std::size_t bytes) {
    return (bytes + 2) / 3 * 4;
}

// Writes the text of bytes that come piece by piece.
class Base64Writer {
public:
    // Reserves memory for the text of that many bytes.
    explicit Base64Writer(std::size_t expectedBytes) {
        text_.reserve(base64TextSize(expectedBytes));
    }

    void append(const void* data, std::size_t size);
    // Writes the rest with its padding and moves the text out.
    std::string finish();

private:
    std::string text_;
    std::uint8_t rest_[3] = {}; // The bytes of a group that isn't full yet.
    std::size_t restSize_ = 0;
};

// Writes at most three bytes for each four characters to `out`, and their number to `size`. Returns
// false if the text isn't valid; the content of `out` is then of no use.
[[nodiscard]] bool decodeBase64(std::string_view text, std::uint8_t* out, std::size_t& size);

} // namespace MVR
