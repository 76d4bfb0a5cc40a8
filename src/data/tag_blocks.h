#pragma once

#include "data/tag.h"

#include <algorithm>
#include <new>

namespace MVR {

// How a Tag keeps its attributes and children. Both stand in blocks, a small head with the items
// behind it, so that a node costs few allocations.

struct Tag::Attribute {
    std::string key;
    std::string value;
};

// One block, replaced by a larger one as it grows.
struct Tag::AttributeBlock {
    std::uint32_t count;
    std::uint32_t capacity;

    Attribute* begin() { return reinterpret_cast<Attribute*>(this + 1); }
    Attribute* end() { return begin() + count; }

    static AttributeBlock* create(std::uint32_t capacity);
};

// Children never move to another block when one is added: references to them stay valid. The blocks
// of a Tag form a ring: the Tag holds the last, whose `next` is the first. No block is empty.
struct Tag::ChildBlock {
    ChildBlock* next;
    std::uint32_t count;
    std::uint32_t capacity;

    Tag* begin() { return reinterpret_cast<Tag*>(this + 1); }
    Tag* end() { return begin() + count; }

    // Makes a block the last of the ring of which `last` is the last so far, or null.
    static ChildBlock* create(std::uint32_t capacity, ChildBlock* last);
};

// A first child often stays the only one, a text; then the room doubles.
inline Tag& Tag::appendSlot() {
    if (!lastBlock_ || lastBlock_->count == lastBlock_->capacity)
        lastBlock_ = ChildBlock::create(std::max(1u, childCount_), lastBlock_);
    Tag* slot = new (lastBlock_->end()) Tag;
    ++lastBlock_->count;
    ++childCount_;
    return *slot;
}

} // namespace MVR
