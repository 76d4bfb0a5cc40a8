#include "data/sdk/data_chunk.h"

#include "data/data_chunk_view.h"

#include <algorithm>
#include <new>

namespace MVR::Util {
namespace {

// Never destroyed: it outlives everything that may still read it while a library unloads.
DataChunk& sharedEmpty() {
    alignas(DataChunk) static unsigned char storage[sizeof(DataChunk)];
    static DataChunk* const empty = new (storage) DataChunk;
    return *empty = DataChunk();
}

} // namespace

DataChunk::DataChunk(std::string name, const void* data, std::size_t size)
    : data_(data, size), name_(std::move(name)) {}

DataChunk::DataChunk(const void* serialized, std::size_t size) {
    static_cast<void>(parse(serialized, size));
}

DataChunk::DataChunk(const DataChunkView& view) : data_(view.data, view.size), name_(view.name) {
    children_.reserve(view.children.size());
    for (const DataChunkView& child : view.children)
        children_.push_back(DataChunk(child));
}

const void* DataChunk::parse(const void* serialized, std::size_t size) {
    const auto* at = static_cast<const std::uint8_t*>(serialized);
    DataChunkView view;
    const void* behind = view.parse(at, at ? at + size : nullptr);
    if (view.data) // Else the head is damaged.
        *this = DataChunk(view);
    return behind;
}

DataChunk& DataChunk::addChild(const DataChunk& child) {
    children_.push_back(DataChunk(child)); // `child` may be below this chunk.
    return *this;
}

std::size_t DataChunk::indexOf(std::string_view name) const {
    const auto found = std::find_if(children_.begin(), children_.end(),
                                    [&](const DataChunk& c) { return c.name_ == name; });
    return static_cast<std::size_t>(found - children_.begin());
}

bool DataChunk::hasChild(std::string_view name) const {
    return indexOf(name) < children_.size();
}

DataChunk& DataChunk::child(std::string_view name) {
    const std::size_t index = indexOf(name);
    return index < children_.size() ? children_[index] : sharedEmpty();
}

const DataChunk& DataChunk::child(std::string_view name) const {
    const std::size_t index = indexOf(name);
    return index < children_.size() ? children_[index] : sharedEmpty();
}

// Returns 0 if the flat form can't hold it.
std::size_t DataChunk::flatSize(std::size_t depth) const {
    if (depth > kMaxDepth || name_.size() > kMaxName || data_.size() > kMaxFlatSize)
        return 0;
    std::size_t total = kChunkHeadSize + name_.size() + data_.size();
    for (const DataChunk& child : children_) {
        const std::size_t size = child.flatSize(depth + 1);
        total += size;
        if (size == 0 || total > kMaxFlatSize)
            return 0;
    }
    return total <= kMaxFlatSize ? total : 0;
}

std::uint8_t* DataChunk::write(std::uint8_t* to) const {
    storeChunkHead(to, data_.size(), children_.size(), name_.size());
    to = std::copy(name_.begin(), name_.end(), to + kChunkHeadSize);
    to = std::copy_n(data_.data(), data_.size(), to);
    for (const DataChunk& child : children_)
        to = child.write(to);
    return to;
}

const void* DataChunk::serialize(std::int32_t& size) {
    const std::size_t total = flatSize(1);
    serialized_ = ByteBuffer::uninitialised(total);
    size = static_cast<std::int32_t>(total);
    if (total == 0)
        return nullptr;
    write(serialized_.data());
    return serialized_.data();
}

} // namespace MVR::Util
