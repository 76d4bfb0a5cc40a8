#include "data/tag_blocks.h"

#include <utility>

namespace MVR {
namespace {

constexpr std::uint32_t kFirstPage = 512;
// Large, so that there are few pages to free, yet below the size that heaps get from the system one
// by one.
constexpr std::uint32_t kLargestPage = 120 * 1024;
constexpr std::size_t kLargestPooled = 4096; // Larger blocks would waste the rest of a page.
constexpr std::uint32_t kHeadSize = alignof(std::max_align_t);
static_assert(sizeof(TagPage) <= kHeadSize);

// Stands for the blocks that may still come into an open page.
constexpr std::uint32_t kOpen = 1u << 31;

void releasePage(void* page, std::uint32_t blocks) noexcept {
    if (static_cast<TagPage*>(page)->blocks.fetch_sub(blocks, std::memory_order_acq_rel) == blocks)
        ::operator delete(page);
}

} // namespace

void TagRelease::flush() noexcept {
    if (blocks_ > 0)
        releasePage(page_, std::exchange(blocks_, 0u));
}

TagPool::Place TagPool::allocate(std::size_t size, TagPool* pool) {
    if (!pool || size > kLargestPooled)
        return {::operator new(size), TagBlock::kNoPage};
    size = (size + alignof(std::string) - 1) / alignof(std::string) * alignof(std::string);
    while (pool->free_ < kHeadSize + size)
        pool->openPage();
    // From the end down: trees are freed in the opposite order, and so upwards in memory.
    pool->free_ -= static_cast<std::uint32_t>(size);
    const Place place{pool->page_ + pool->free_, pool->free_};
    ++pool->blocks_;
    return place;
}

void TagPool::openPage() {
    closePage();
    pageSize_ = pageSize_ == 0 ? kFirstPage : std::min(pageSize_ * 2, kLargestPage);
    page_ = static_cast<std::byte*>(::operator new(pageSize_));
    new (page_) TagPage{kOpen};
    free_ = pageSize_;
}

void TagPool::closePage() noexcept {
    free_ = 0; // in case no other page can be allocated
    if (page_)
        releasePage(std::exchange(page_, nullptr), kOpen - std::exchange(blocks_, 0u));
}

Tag::AttributeBlock* Tag::AttributeBlock::create(std::uint32_t capacity, std::size_t room,
                                                 TagPool* pool) {
    static_assert(sizeof(AttributeBlock) % alignof(Attribute) == 0);
    const std::size_t items = capacity * sizeof(Attribute);
    const TagPool::Place place = TagPool::allocate(sizeof(AttributeBlock) + items + room, pool);
    return new (place.memory) AttributeBlock(place.pageOffset, capacity);
}

Tag::ChildBlock* Tag::ChildBlock::create(std::uint32_t capacity, ChildBlock* last, TagPool* pool) {
    static_assert(sizeof(ChildBlock) % alignof(Tag) == 0);
    const TagPool::Place place =
        TagPool::allocate(sizeof(ChildBlock) + capacity * sizeof(Tag), pool);
    auto* block = new (place.memory) ChildBlock(place.pageOffset, capacity);
    if (last)
        block->next = std::exchange(last->next, block);
    return block;
}

} // namespace MVR
