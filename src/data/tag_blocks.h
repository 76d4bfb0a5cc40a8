#pragma once

#include "data/sdk/tag.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstring>
#include <new>
#include <utility>

namespace MVR {

// How a Tag keeps its attributes and children. Both are in blocks, a small head followed by the
// items. The blocks of a tree that is read from text are in pages, which saves most of the time of
// allocating and freeing them one by one. A page is freed with its last block, whichever tree that
// belongs to by then. Blocks of two trees may share a page, even if each tree is used by a thread
// of its own.

// The head of a page. Blocks follow it.
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

// Frees blocks whose items are destroyed. Counts what it frees of one page itself, since the count
// in the page is slow to change.
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

// Allocates blocks. Lives as long as a text is read.
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
    // With a null `pool` the block has memory of its own.
    static Place allocate(std::size_t size, TagPool* pool);

private:
    void openPage();
    void closePage() noexcept;

    std::byte* page_ = nullptr;
    std::uint32_t free_ = 0; // The end of what is still free.
    std::uint32_t pageSize_ = 0;
    std::uint32_t blocks_ = 0;
};

struct Tag::Attribute {
    std::string value;
    std::uint32_t keyStart; // In the keys of its block.
    std::uint32_t keySize;
};

// Sorted by key. The keys, which never change, follow the items, so that an item is small. A block
// is as large as what it holds: a new key moves everything into a larger one.
struct alignas(std::string) Tag::AttributeBlock : TagBlock {
    std::uint32_t count = 0;
    std::uint32_t capacity;
    std::uint32_t keyBytes = 0; // Of the items so far.

    Attribute* begin() { return reinterpret_cast<Attribute*>(this + 1); }
    Attribute* end() { return begin() + count; }
    std::string_view key(const Attribute& attribute) {
        return {keys() + attribute.keyStart, attribute.keySize};
    }

    // Adds an item after the others. There must be room for it and its key.
    Attribute& add(std::string_view key, std::string_view value) {
        std::memcpy(keys() + keyBytes, key.data(), key.size());
        auto* added = new (end())
            Attribute{std::string(value), keyBytes, static_cast<std::uint32_t>(key.size())};
        keyBytes += added->keySize;
        ++count;
        return *added;
    }

    // `room` is the size of all keys, in bytes.
    static AttributeBlock* create(std::uint32_t capacity, std::size_t room,
                                  TagPool* pool = nullptr);

private:
    AttributeBlock(std::uint32_t pageOffset, std::uint32_t items)
        : TagBlock(pageOffset), capacity(items) {}

    char* keys() { return reinterpret_cast<char*>(begin() + capacity); }
};

// Children never move to another block when one is added, so references to them stay valid. The
// blocks of a Tag form a ring: the Tag holds the last, whose `next` is the first. No block is
// empty.
struct Tag::ChildBlock : TagBlock {
    std::uint32_t count = 0;
    std::uint32_t capacity;
    ChildBlock* next;

    Tag* begin() { return reinterpret_cast<Tag*>(this + 1); }
    Tag* end() { return begin() + count; }

    // Creates a block as the last of a ring. `last` is the present last, or null if there is none.
    static ChildBlock* create(std::uint32_t capacity, ChildBlock* last, TagPool* pool = nullptr);

private:
    ChildBlock(std::uint32_t pageOffset, std::uint32_t room)
        : TagBlock(pageOffset), capacity(room), next(this) {}
};

// The first block has room for one child, often a text that stays alone; each further block doubles
// the room.
inline Tag& Tag::append(Tag&& node, TagPool* pool) {
    if (!lastBlock_ || lastBlock_->count == lastBlock_->capacity)
        lastBlock_ = ChildBlock::create(std::max(1u, childCount_), lastBlock_, pool);
    Tag* slot = new (lastBlock_->end()) Tag(std::move(node));
    ++lastBlock_->count;
    ++childCount_;
    return *slot;
}

} // namespace MVR
