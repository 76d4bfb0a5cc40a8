#pragma once

#include "data/tag.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <new>
#include <utility>

namespace MVR {

// How a Tag keeps its attributes and children. Both stand in blocks, a small head with the items
// behind it. A tree that is read from text has its blocks in pages, which saves most of the time
// that allocating and freeing them one by one takes. A page goes with its last block, whichever
// tree that belongs to by then; blocks of two trees, each used by a thread of its own, may share
// one.

// The head of a page. Blocks lie behind it.
struct TagPage {
    std::atomic<std::uint32_t> blocks;
};

// The memory of one block.
class TagBlock {
public:
    explicit TagBlock(std::uint32_t pageOffset) : pageOffset_(pageOffset) {}

    static constexpr std::uint32_t kNoPage = 0;

private:
    friend class TagRelease;
    std::uint32_t pageOffset_; // Bytes from the start of its page, or `kNoPage`.
};

// Frees blocks whose items are destroyed. Counts what it frees of one page, since the count in the
// page is slow to change.
class TagRelease {
public:
    TagRelease() = default;
    TagRelease(const TagRelease&) = delete;
    TagRelease& operator=(const TagRelease&) = delete;
    ~TagRelease() { flush(); }

    void add(TagBlock* block) noexcept {
        if (block->pageOffset_ == TagBlock::kNoPage) {
            ::operator delete(block);
            return;
        }
        std::byte* page = reinterpret_cast<std::byte*>(block) - block->pageOffset_;
        if (page != page_)
            flush();
        page_ = page;
        ++blocks_;
    }

private:
    void flush() noexcept;

    std::byte* page_ = nullptr;
    std::uint32_t blocks_ = 0;
};

// Gives memory for blocks. Lives as long as a text is read.
class TagPool {
public:
    TagPool() = default;
    TagPool(const TagPool&) = delete;
    TagPool& operator=(const TagPool&) = delete;
    ~TagPool() { closePage(); }

    struct Place {
        void* memory;
        std::uint32_t pageOffset;
    };
    // `pool` may be null: the block then stands alone.
    static Place allocate(std::size_t size, TagPool* pool);

private:
    void openPage();
    void closePage() noexcept;

    std::byte* page_ = nullptr;
    std::uint32_t free_ = 0; // Where what is still free ends.
    std::uint32_t pageSize_ = 0;
    std::uint32_t blocks_ = 0;
};

struct Tag::Attribute {
    std::string key;
    std::string value;
};

// One block, replaced by a larger one as it grows.
struct alignas(std::string) Tag::AttributeBlock : TagBlock {
    std::uint32_t count = 0;
    std::uint32_t capacity;

    Attribute* begin() { return reinterpret_cast<Attribute*>(this + 1); }
    Attribute* end() { return begin() + count; }

    static AttributeBlock* create(std::uint32_t capacity, TagPool* pool = nullptr);

private:
    AttributeBlock(std::uint32_t pageOffset, std::uint32_t room)
        : TagBlock(pageOffset), capacity(room) {}
};

// Children never move to another block when one is added: references to them stay valid. The blocks
// of a Tag form a ring: the Tag holds the last, whose `next` is the first. No block is empty.
struct Tag::ChildBlock : TagBlock {
    std::uint32_t count = 0;
    std::uint32_t capacity;
    ChildBlock* next;

    Tag* begin() { return reinterpret_cast<Tag*>(this + 1); }
    Tag* end() { return begin() + count; }

    // Makes a block the last of the ring of which `last` is the last so far, or null.
    static ChildBlock* create(std::uint32_t capacity, ChildBlock* last, TagPool* pool = nullptr);

private:
    ChildBlock(std::uint32_t pageOffset, std::uint32_t room)
        : TagBlock(pageOffset), capacity(room), next(this) {}
};

// Room is taken for one child, which often stays the only one, a text; then it doubles.
inline Tag& Tag::append(Tag&& node, TagPool* pool) {
    if (!lastBlock_ || lastBlock_->count == lastBlock_->capacity)
        lastBlock_ = ChildBlock::create(std::max(1u, childCount_), lastBlock_, pool);
    Tag* slot = new (lastBlock_->end()) Tag(std::move(node));
    ++lastBlock_->count;
    ++childCount_;
    return *slot;
}

} // namespace MVR
