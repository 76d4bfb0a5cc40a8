// What a fuzzer holds its subject to.
#pragma once

#include <cstdlib>

/// Ends the process, which is how a fuzzer tells of a fault.
inline void require(bool holds) {
    if (!holds)
        std::abort();
}
