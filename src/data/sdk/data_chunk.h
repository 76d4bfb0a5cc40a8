#pragma once

#include "data/sdk/byte_buffer.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace MVR::Util {

struct DataChunkView;

/// A named node with a payload of bytes and ordered children, which has a flat form for files. A
/// copy is deep. For use at any time; one object belongs to one thread at a time.
///
/// The flat form, integers little-endian: size of the payload, number of children, length of the
/// name (4 bytes each), the name, the payload, the children one after another.
class DataChunk {
public:
    DataChunk() = default;
    /// Copies `size` bytes; null data makes as many zero bytes.
    DataChunk(std::string name, const void* data, std::size_t size);
    /// Reads the flat form from at most `size` bytes, as `parse` does, and drops its result.
    DataChunk(const void* serialized, std::size_t size);
    DataChunk(const DataChunk&) = default;
    DataChunk(DataChunk&&) noexcept = default;
    DataChunk& operator=(const DataChunk&) = default;
    DataChunk& operator=(DataChunk&&) noexcept = default;
    virtual ~DataChunk() = default;

    /// Replaces what the chunk holds by what the flat form holds. Returns a pointer past the form,
    /// or null if it is damaged: if a count is negative or more than the bytes that are there, a
    /// name is longer than `kMaxName`, or the levels are more than `kMaxDepth`. A damaged head
    /// leaves the chunk unchanged; damage further on leaves it with the children that were read
    /// before.
    [[nodiscard]] const void* parse(const void* serialized, std::size_t size);

    void setName(std::string name) { name_ = std::move(name); }
    /// Replaces the payload by a copy of `size` bytes; null data makes as many zero bytes.
    void setData(const void* data, std::size_t size) { data_ = ByteBuffer(data, size); }
    /// Appends a copy. Returns this chunk, so that calls can be chained.
    DataChunk& addChild(const DataChunk& child);

    bool hasChild(std::string_view name) const;
    /// Returns the first direct child of that name. If there is none, returns a shared chunk that
    /// each such call empties, so nothing that is written into it lasts.
    DataChunk& child(std::string_view name);
    const DataChunk& child(std::string_view name) const;

    /// Returns the flat form, valid until the next call on this chunk, and sets `size` to its
    /// bytes. Returns null and 0 for what the form can't hold: a name longer than `kMaxName`, more
    /// levels than `kMaxDepth`, or 2 GiB and more.
    const void* serialize(std::int32_t& size);

    const std::uint8_t* data() const { return data_.data(); }
    std::size_t size() const { return data_.size(); }
    const std::string& name() const { return name_; }

    /// The longest name, in bytes.
    static constexpr std::size_t kMaxName = 256;
    /// The most levels of chunks that are read, the outermost included.
    static constexpr std::size_t kMaxDepth = 64;

private:
    explicit DataChunk(const DataChunkView& view);
    // Returns the number of children if there is none of that name.
    std::size_t indexOf(std::string_view name) const;
    std::size_t flatSize(std::size_t depth) const;
    std::uint8_t* write(std::uint8_t* to) const;

    ByteBuffer serialized_;
    std::vector<DataChunk> children_;
    ByteBuffer data_;
    std::string name_;
};

} // namespace MVR::Util
