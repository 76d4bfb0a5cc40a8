// The keys of an animated variable, in memory that is never moved.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace MVR::Util {

/// A sequence of keys that grows at its end for hours, together with hundreds of others. It grows
/// in small chunks that are never moved: no frame has to copy what earlier ones recorded, or to
/// touch a page of new memory for each sequence.
class KeySequence {
public:
    struct Key {
        double time;
        double value;
    };

    KeySequence() = default;
    KeySequence(const KeySequence& other);
    KeySequence(KeySequence&& other) noexcept;
    KeySequence& operator=(KeySequence other) noexcept;
    ~KeySequence() = default;

    [[nodiscard]] bool empty() const { return size_ == 0; }
    [[nodiscard]] std::size_t size() const { return size_; }
    /// `index` is below size().
    [[nodiscard]] Key& operator[](std::size_t index) { return at(index); }
    [[nodiscard]] const Key& operator[](std::size_t index) const { return at(index); }
    [[nodiscard]] const Key& back() const { return at(size_ - 1); }

    void append(const Key& key);
    /// Inserts `key` before the one at `index`, which is at most size().
    void insert(std::size_t index, const Key& key);
    /// Drops all keys from `newSize` on, which is at most size().
    void truncate(std::size_t newSize);

private:
    // Both are about 512 bytes.
    static constexpr std::size_t kKeysOfChunk = 32;
    static constexpr std::size_t kChunksOfRow = 64;
    static constexpr std::size_t kKeysOfRow = kKeysOfChunk * kChunksOfRow;

    struct Chunk {
        Key keys[kKeysOfChunk];
    };
    struct Row {
        std::unique_ptr<Chunk> chunks[kChunksOfRow];
    };

    [[nodiscard]] std::unique_ptr<Chunk>& chunkOf(std::size_t index) const {
        return rows_[index / kKeysOfRow]->chunks[index / kKeysOfChunk % kChunksOfRow];
    }
    [[nodiscard]] Key& at(std::size_t index) const {
        return chunkOf(index)->keys[index % kKeysOfChunk];
    }

    std::vector<std::unique_ptr<Row>> rows_; // all but the last are full of chunks
    std::size_t size_ = 0;
};

} // namespace MVR::Util
