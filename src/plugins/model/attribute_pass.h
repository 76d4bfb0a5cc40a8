#pragma once

#include <cstdint>

namespace MVR {

class InstanceReference;
class Tag;

/// Implements InstanceReference::applyAttributes(): applies those parts of `data` that `stages`,
/// bits of SaveMask, name to the tool `start` and to those below it. A loop with a stack of its
/// own: a tree may be deeper than the machine's stack.
[[nodiscard]] std::int32_t runAttributePass(InstanceReference& start, const Tag& data,
                                            std::uint32_t stages);

} // namespace MVR
