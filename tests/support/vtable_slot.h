#pragma once

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

} // namespace MVR::Testing
