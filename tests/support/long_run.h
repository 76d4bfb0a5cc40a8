// What takes minutes under sanitizers runs at full length only in `./dev long`.
#pragma once

#include <cstdlib>

namespace MVR::Testing {

inline bool isLongRun() {
    return std::getenv("MIRVANE_LONG_TESTS") != nullptr;
}

} // namespace MVR::Testing
