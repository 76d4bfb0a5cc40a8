#pragma once

#include <cstdint>
#include <cstring>

namespace MVR {

// Numbers in the byte order of the stored formats, at any address. Compilers turn each into one
// move.

inline std::uint32_t loadLittle32(const std::uint8_t* at) {
    return at[0] | at[1] << 8 | at[2] << 16 | static_cast<std::uint32_t>(at[3]) << 24;
}

inline std::uint64_t loadLittle64(const std::uint8_t* at) {
    return loadLittle32(at) | static_cast<std::uint64_t>(loadLittle32(at + 4)) << 32;
}

inline void storeLittle32(std::uint8_t* at, std::uint32_t value) {
    for (int i = 0; i < 4; ++i)
        at[i] = static_cast<std::uint8_t>(value >> 8 * i);
}

inline void storeLittle64(std::uint8_t* at, std::uint64_t value) {
    for (int i = 0; i < 8; ++i)
        at[i] = static_cast<std::uint8_t>(value >> 8 * i);
}

inline double loadLittleDouble(const std::uint8_t* at) {
    const std::uint64_t bits = loadLittle64(at);
    double value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

inline void storeLittleDouble(std::uint8_t* at, double value) {
    std::uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    storeLittle64(at, bits);
}

} // namespace MVR
