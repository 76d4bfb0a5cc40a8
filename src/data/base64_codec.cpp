#include "data/base64_codec.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace MVR {
namespace {

constexpr std::string_view kAlphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char kPadding = '=';

struct Pair {
    char first;
    char second;
};

// Two characters for each 12 bits.
constexpr std::array<Pair, 4096> makePairs() {
    std::array<Pair, 4096> pairs{};
    for (std::size_t bits = 0; bits < pairs.size(); ++bits)
        pairs[bits] = {kAlphabet[bits >> 6], kAlphabet[bits & 63]};
    return pairs;
}

constexpr std::array<Pair, 4096> kPairs = makePairs();

constexpr std::uint32_t kNoCharacter = 1u << 24; // Above the 24 bits of a group.

// The bits that a character stands for, in their position in the 24 bits of a group.
using Values = std::array<std::uint32_t, 256>;

constexpr std::array<Values, 4> makeValues() {
    std::array<Values, 4> values{};
    for (std::size_t place = 0; place < 4; ++place) {
        for (std::uint32_t& value : values[place])
            value = kNoCharacter;
        for (std::uint32_t bits = 0; bits < 64; ++bits)
            values[place][static_cast<unsigned char>(kAlphabet[bits])] = bits << (18 - 6 * place);
    }
    return values;
}

constexpr std::array<Values, 4> kValues = makeValues();

std::uint32_t valueOf(char c, std::size_t place) {
    return kValues[place][static_cast<unsigned char>(c)];
}

void encodeGroup(const std::uint8_t* from, char* to) {
    const std::uint32_t bits = static_cast<std::uint32_t>(from[0] << 16 | from[1] << 8 | from[2]);
    std::memcpy(to, &kPairs[bits >> 12], 2);
    std::memcpy(to + 2, &kPairs[bits & 4095], 2);
}

void store(std::uint32_t group, std::uint8_t* out, std::size_t bytes) {
    for (std::size_t i = 0; i < bytes; ++i)
        out[i] = static_cast<std::uint8_t>(group >> (16 - 8 * i));
}

// Decodes a group with padding. Returns the number of its bytes, or 0 if it isn't valid. If only
// the third character is "=", the fourth is ignored.
std::size_t decodePadded(const char* from, std::uint8_t* to) {
    std::uint32_t group = valueOf(from[0], 0) | valueOf(from[1], 1);
    std::size_t bytes = 2;
    if (from[2] != kPadding)
        group |= valueOf(from[2], 2) | (from[3] == kPadding ? 0 : kNoCharacter);
    else if (from[3] == kPadding)
        bytes = 1;
    if (group >= kNoCharacter)
        return 0;
    store(group, to, bytes);
    return bytes;
}

} // namespace

void Base64Writer::append(const void* data, std::size_t size) {
    const auto* from = static_cast<const std::uint8_t*>(data);
    while (size > 0 && restSize_ > 0 && restSize_ < 3) {
        rest_[restSize_++] = *from++;
        --size;
    }
    const std::size_t groups = size / 3;
    std::size_t at = text_.size();
    text_.resize(at + (restSize_ == 3 ? 4 : 0) + 4 * groups);
    if (restSize_ == 3) {
        encodeGroup(rest_, &text_[at]);
        at += 4;
        restSize_ = 0;
    }
    char* to = text_.data() + at;
    for (std::size_t i = 0; i < groups; ++i, from += 3, to += 4)
        encodeGroup(from, to);
    if (size % 3 > 0) {
        restSize_ = size % 3;
        std::memcpy(rest_, from, restSize_);
    }
}

std::string Base64Writer::finish() {
    if (restSize_ > 0) {
        std::fill(rest_ + restSize_, rest_ + 3, std::uint8_t(0));
        char group[4];
        encodeGroup(rest_, group);
        std::fill(group + restSize_ + 1, group + 4, kPadding);
        text_.append(group, 4);
        restSize_ = 0;
    }
    return std::move(text_);
}

bool decodeBase64(std::string_view text, std::uint8_t* out, std::size_t& size) {
    if (text.size() % 4 != 0)
        return false;
    const char* from = text.data();
    std::uint8_t* to = out;
    for (const char* const end = from + text.size(); from != end; from += 4) {
        const std::uint32_t group =
            valueOf(from[0], 0) | valueOf(from[1], 1) | valueOf(from[2], 2) | valueOf(from[3], 3);
        std::size_t bytes = 3;
        if (group < kNoCharacter)
            store(group, to, 3);
        else if ((bytes = decodePadded(from, to)) == 0)
            return false;
        to += bytes;
    }
    size = static_cast<std::size_t>(to - out);
    return true;
}

} // namespace MVR
