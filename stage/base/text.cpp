#include "stage/base/text.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace Stage {

namespace {

/// Returns the number of bytes of the UTF-8 character at the front, or 0 if there is none.
std::size_t characterLength(std::string_view text) {
    const auto byteAt = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char first = byteAt(0);
    if (first < 0x80)
        return 1;
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || text.size() < length)
        return 0;
    std::uint32_t code = first & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteAt(i) & 0xC0) != 0x80)
            return 0;
        code = (code << 6) | (byteAt(i) & 0x3FU);
    }
    const bool isOverlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
    const bool isSurrogate = code >= 0xD800 && code < 0xE000;
    return isOverlong || isSurrogate || code > 0x10FFFF ? 0 : length;
}

template <typename Number>
bool readNumber(std::string_view text, Number& out) {
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    Number number = 0;
    const auto [end, fault] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (fault != std::errc() || end != text.data() + text.size())
        return false;
    out = number;
    return true;
}

} // namespace

std::string toUtf8(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::size_t length = characterLength(text);
        result += length == 0 ? std::string_view("?") : text.substr(0, length);
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return result;
}

std::string toText(double value) {
    char buffer[32];
    const auto [end, fault] = std::to_chars(buffer, buffer + sizeof buffer, value);
    return fault == std::errc() ? std::string(buffer, end) : std::string();
}

bool toNumber(std::string_view text, double& out) {
    double number = 0.0;
    if (!readNumber(text, number) || !std::isfinite(number))
        return false;
    out = number;
    return true;
}

bool toNumber(std::string_view text, int& out) {
    return readNumber(text, out);
}

std::string quoted(const std::string& text) {
    std::string result = "\"";
    for (const char c : text) {
        result += c == '\n' || c == '\r' ? ' ' : c;
        if (c == '"')
            result += c;
    }
    return result + '"';
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

} // namespace Stage
