#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace MVR {

// The text form of bytes without a copy of them in between, for payloads that are large.

constexpr std::size_t base64TextSize(std::size_t bytes) {
    return (bytes + 2) / 3 * 4;
}

// Writes the text of bytes that come piece by piece.
class Base64Writer {
public:
    // Takes the room for the text of that many bytes at once.
    explicit Base64Writer(std::size_t expectedBytes) {
        text_.reserve(base64TextSize(expectedBytes));
    }

    void append(const void* data, std::size_t size);
    // Writes what is left with its padding, and gives the text away.
    std::string finish();

private:
    std::string text_;
    std::uint8_t rest_[3] = {}; // Fewer than a group of three, from the pieces so far.
    std::size_t restSize_ = 0;
};

// Writes at most three bytes for each four characters to `out`, and their number to `size`. False
// if the text isn't sound; `out` is then of no use.
[[nodiscard]] bool decodeBase64(std::string_view text, std::uint8_t* out, std::size_t& size);

} // namespace MVR
