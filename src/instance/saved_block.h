// The bytes that a tool wants saved with it.
#pragma once

#include <cstdint>
#include <string>

namespace MVR {

/// An opaque block of bytes; a copy of what the tool passed.
class SavedBlock {
public:
    /// Clears the block if `bytes` is null or `size` isn't above 0.
    void set(const void* bytes, std::int32_t size);
    /// Returns the size; `address`, unless it is null, receives that of the bytes, or null if there
    /// are none. Valid until the block changes.
    std::int32_t get(const void** address) const;
    void clear() { bytes_.clear(); }

private:
    std::string bytes_;
};

} // namespace MVR
