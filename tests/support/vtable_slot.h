#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>

namespace MVR::Testing {

/// The place of a virtual operation in its class's table, from 0. Members to pointers of virtual
/// operations hold it, as this compiler's binary interface tells: the offset in bytes plus one.
template <class Operation>
std::ptrdiff_t slotOf(Operation operation) {
    std::ptrdiff_t word = 0;
    static_assert(sizeof(operation) >= sizeof(word));
    std::memcpy(&word, &operation, sizeof(word));
    return (word - 1) / static_cast<std::ptrdiff_t>(sizeof(void*));
}

/// The operations of `what` stand in its table one after the other from the slot `first` on.
template <class... Operations>
void expectSlots(const char* what, std::ptrdiff_t first, Operations... operations) {
    for (const std::ptrdiff_t slot : {slotOf(operations)...})
        EXPECT_EQ(slot, first++) << what;
}

} // namespace MVR::Testing
