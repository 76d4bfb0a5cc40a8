#pragma once

#include <cstdint>

namespace MVR {

class InstanceReference;
class Tag;

/// Writes what `mask`, bits of SaveMask, names of the tool `top` and of those below it into `out`.
/// A loop with a stack of its own: a tree may be deeper than the machine's stack.
void saveTree(InstanceReference& top, Tag& out, std::uint32_t mask);

} // namespace MVR
