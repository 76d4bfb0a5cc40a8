#pragma once

#include "data/sdk/tag.h"

#include <cstddef>
#include <map>

namespace MVR {

/// Elements of known words that nothing here can apply. Each is written in the place of what would
/// stand there instead, until something newer does.
struct KeptValues {
    Tag savedBlock;                      // empty if there is none
    std::map<std::size_t, Tag> recorded; // by place among the blocks
};

} // namespace MVR
