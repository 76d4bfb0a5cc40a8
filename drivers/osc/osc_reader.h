#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

/// The packets of Open Sound Control 1.0, read without trust in a single byte.

/// The longest address that is taken; a longer one is refused with its packet.
constexpr std::size_t kMaxOscAddressBytes = 255;
/// Arguments of one message that are looked at; those behind are dropped.
constexpr std::int32_t kMaxOscArguments = 64;
/// Bundles that may stand one inside the other.
constexpr int kMaxOscBundleDepth = 8;

/// One numeric argument of a message.
struct OscValue {
    std::string_view address; ///< lies in the packet's bytes
    std::int32_t index;       ///< the argument's number in its message, from 0
    double value;             ///< finite
};

/// True for an address that names one thing: it starts with "/" and holds printable ASCII without
/// blanks and without the characters of address patterns.
bool isOscAddress(std::string_view address);

/// Reads a message, or a bundle with all that is in it, and appends the numeric arguments in their
/// order. Values that are no finite numbers, and arguments of other types, are left out.
/// False, with `out` as it was, if any part of the packet is broken.
[[nodiscard]] bool readOscPacket(const char* bytes, std::size_t size, std::vector<OscValue>& out);
