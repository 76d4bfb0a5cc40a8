#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

namespace MVR::Testing {

/// Returns the index of a virtual operation in the table of its class, from 0. A pointer to a
/// virtual member holds it in this compiler's binary interface: the offset in bytes plus one.
template <class Operation>
std::ptrdiff_t slotOf(Operation operation) {
    std::ptrdiff_t word = 0;
    static_assert(sizeof(operation) >= sizeof(word));
    std::memcpy(&word, &operation, sizeof(word));
    return (word - 1) / static_cast<std::ptrdiff_t>(sizeof(void*));
}

/// Expects the operations of `what` one after another in its table, from the slot `first` on.
template <class... Operations>
void expectSlots(const char* what, std::ptrdiff_t first, Operations... operations) {
    for (const std::ptrdiff_t slot : {slotOf(operations)...})
        EXPECT_EQ(slot, first++) << what;
}

} // namespace MVR::Testing
