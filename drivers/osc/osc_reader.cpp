#include "osc_reader.h"

#include <lo/lo.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <type_traits>

namespace {

constexpr std::string_view kBundleMark("#bundle\0", 8);
constexpr std::size_t kBundleHeaderBytes = 16; // the mark and a time tag
// The types that the library reads; it reports each other one on the standard error stream.
constexpr std::string_view kKnownTypes = "ifsbhtdScmTFNI";

struct FreeMessage {
    void operator()(lo_message message) const { lo_message_free(message); }
};
using Message = std::unique_ptr<std::remove_pointer_t<lo_message>, FreeMessage>;

// Returns the bytes of a string with its end and its padding to a multiple of 4, or 0 if it doesn't
// end within `size`.
std::size_t paddedLength(const char* text, std::size_t size) {
    const void* end = std::memchr(text, '\0', size);
    if (!end)
        return 0;
    const std::size_t padded =
        (static_cast<std::size_t>(static_cast<const char*>(end) - text) + 4) & ~std::size_t(3);
    return padded <= size ? padded : 0;
}

template <class T>
double load(const lo_arg* argument) {
    T number; // arguments are aligned to 4 only
    std::memcpy(&number, argument, sizeof number);
    return static_cast<double>(number);
}

// Returns the argument as a number, or NaN if it is none.
double numberOf(char type, const lo_arg* argument) {
    switch (type) {
    case LO_INT32:
        return load<std::int32_t>(argument);
    case LO_FLOAT:
        return load<float>(argument);
    case LO_INT64:
        return load<std::int64_t>(argument);
    case LO_DOUBLE:
        return load<double>(argument);
    case LO_TRUE:
        return 1.0;
    case LO_FALSE:
        return 0.0;
    default: // of the many types these are the numeric ones
        return std::nan("");
    }
}

bool readMessage(const char* bytes, std::size_t size, std::vector<OscValue>& out) {
    const std::size_t addressBytes = paddedLength(bytes, size);
    if (addressBytes == 0)
        return false;
    const std::string_view address(bytes);
    const char* types = bytes + addressBytes;
    if (!isOscAddress(address) || paddedLength(types, size - addressBytes) == 0 || *types != ',' ||
        std::string_view(types + 1).find_first_not_of(kKnownTypes) != std::string_view::npos)
        return false;
    // The library wants the bytes without const, but copies them.
    const Message message(lo_message_deserialise(const_cast<char*>(bytes), size, nullptr));
    if (!message)
        return false;
    const std::int32_t count = std::min(lo_message_get_argc(message.get()), kMaxOscArguments);
    lo_arg** arguments = lo_message_get_argv(message.get());
    for (std::int32_t i = 0; i < count; ++i) {
        const double value = numberOf(types[1 + i], arguments[i]);
        if (std::isfinite(value))
            out.push_back({address, i, value});
    }
    return true;
}

std::size_t readSize(const char* bytes) {
    std::size_t size = 0;
    for (int i = 0; i < 4; ++i)
        size = size << 8 | static_cast<unsigned char>(bytes[i]);
    return size;
}

bool readElement(const char* bytes, std::size_t size, int depth, std::vector<OscValue>& out) {
    if (std::string_view(bytes, size).substr(0, kBundleMark.size()) != kBundleMark)
        return readMessage(bytes, size, out);
    if (depth == kMaxOscBundleDepth || size < kBundleHeaderBytes)
        return false;
    std::size_t at = kBundleHeaderBytes;
    while (at < size) {
        if (size - at < 4)
            return false;
        const std::size_t elementSize = readSize(bytes + at);
        at += 4;
        if (elementSize == 0 || elementSize % 4 != 0 || elementSize > size - at ||
            !readElement(bytes + at, elementSize, depth + 1, out))
            return false;
        at += elementSize;
    }
    return true;
}

} // namespace

bool isOscAddress(std::string_view address) {
    constexpr std::string_view kPatternCharacters = "#*,?[]{}";
    return address.size() > 1 && address.size() <= kMaxOscAddressBytes && address[0] == '/' &&
           std::all_of(address.begin(), address.end(), [&](char c) {
               return c > ' ' && c < 0x7f && kPatternCharacters.find(c) == std::string_view::npos;
           });
}

bool readOscPacket(const char* bytes, std::size_t size, std::vector<OscValue>& out) {
    const std::size_t before = out.size();
    if (readElement(bytes, size, 0, out))
        return true;
    out.resize(before);
    return false;
}
