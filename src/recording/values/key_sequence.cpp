#include "recording/values/key_sequence.h"

#include <utility>

namespace MVR::Util {

KeySequence::KeySequence(const KeySequence& other) {
    rows_.reserve(other.rows_.size());
    for (std::size_t i = 0; i < other.size_; i += kKeysOfChunk) {
        if (i % kKeysOfRow == 0)
            rows_.push_back(std::make_unique<Row>());
        chunkOf(i) = std::make_unique<Chunk>(*other.chunkOf(i));
    }
    size_ = other.size_;
}

KeySequence::KeySequence(KeySequence&& other) noexcept
    : rows_(std::exchange(other.rows_, {})), size_(std::exchange(other.size_, 0)) {}

KeySequence& KeySequence::operator=(KeySequence other) noexcept {
    std::swap(rows_, other.rows_);
    std::swap(size_, other.size_);
    return *this;
}

void KeySequence::append(const Key& key) {
    if (size_ % kKeysOfChunk == 0) {
        if (size_ % kKeysOfRow == 0)
            rows_.push_back(std::make_unique<Row>());
        chunkOf(size_).reset(new Chunk);
    }
    at(size_++) = key;
}

void KeySequence::insert(std::size_t index, const Key& key) {
    append(key);
    for (std::size_t i = size_ - 1; i > index; --i)
        at(i) = at(i - 1);
    at(index) = key;
}

void KeySequence::truncate(std::size_t newSize) {
    rows_.resize((newSize + kKeysOfRow - 1) / kKeysOfRow);
    for (std::size_t i = (newSize + kKeysOfChunk - 1) / kKeysOfChunk; i % kChunksOfRow != 0; ++i)
        rows_.back()->chunks[i % kChunksOfRow].reset();
    size_ = newSize;
}

} // namespace MVR::Util
