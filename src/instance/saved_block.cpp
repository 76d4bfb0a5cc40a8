#include "instance/saved_block.h"

#include <cstddef>

namespace MVR {

void SavedBlock::set(const void* bytes, std::int32_t size) {
    if (bytes != nullptr && size > 0)
        bytes_.assign(static_cast<const char*>(bytes), static_cast<std::size_t>(size));
    else
        bytes_.clear();
}

std::int32_t SavedBlock::get(const void** address) const {
    if (address != nullptr)
        *address = bytes_.empty() ? nullptr : bytes_.data();
    return static_cast<std::int32_t>(bytes_.size());
}

} // namespace MVR
