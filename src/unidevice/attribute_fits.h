#pragma once

#include "data/sdk/tag.h"

#include <cstdint>
#include <string>

namespace UniDevice {

/// Returns true if `tag` leaves the attribute open (absent or empty), or if it equals `expected`,
/// read as a number. Text that is no number reads as 0.
inline bool attributeFits(const MVR::Tag& tag, const std::string& key, std::int32_t expected) {
    const std::string text = tag.attribute(key);
    if (text.empty())
        return true;
    std::int32_t number = 0;
    MVR::Tag::textNode(text).as(number);
    return number == expected;
}

} // namespace UniDevice
