// Where the input of a take comes from.
#pragma once

#include <cstdint>

namespace MVR {

enum class TakeSource : std::uint8_t {
    Live,   ///< the devices; the tools store what they read
    Stored, ///< what an earlier take stored: a resimulation
};

} // namespace MVR
