// Numbers that may lie beyond what an integer holds.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace MVR::Util {

/// Returns `value` without its fraction, the nearest limit if it is beyond, or 0 if it is no
/// number.
[[nodiscard]] inline std::int32_t toInteger(double value) {
    using Limits = std::numeric_limits<std::int32_t>;
    if (std::isnan(value))
        return 0;
    return static_cast<std::int32_t>(
        std::clamp(value, static_cast<double>(Limits::min()), static_cast<double>(Limits::max())));
}

} // namespace MVR::Util
