// The check that fuzzers use.
#pragma once

#include <cstdlib>

/// Ends the process, which is how a fuzzer reports a fault.
inline void require(bool holds) {
    if (!holds)
        std::abort();
}
