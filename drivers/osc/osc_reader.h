#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

/// The packets of Open Sound Control 1.0, read without trust in a single byte.

/// The longest address; a packet with a longer one is refused.
constexpr std::size_t kMaxOscAddressBytes = 255;
/// The most arguments of a message that are read; further ones are dropped.
constexpr std::int32_t kMaxOscArguments = 64;
/// The most bundles inside one another.
constexpr int kMaxOscBundleDepth = 8;

/// One numeric argument of a message.
struct OscValue {
    std::string_view address; ///< lies in the packet's bytes
    std::int32_t index;       ///< the argument's number in its message, from 0
    double value;             ///< finite
};

/// Returns true for an address that names one thing: it starts with "/" and holds printable ASCII
/// without blanks and without the characters of address patterns.
bool isOscAddress(std::string_view address);

/// Reads a message, or a bundle with all that is in it, and appends the numeric arguments in their
/// order. Values that aren't finite and arguments of other types are left out. Returns false, with
/// `out` unchanged, if any part of the packet is broken.
[[nodiscard]] bool readOscPacket(const char* bytes, std::size_t size, std::vector<OscValue>& out);
