#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace MVR {

/// A growable sequence of bytes, copied deeply: the carrier of binary payloads. `decompress` also
/// reads the files that hold models: compressed text of a tree, or the plain text. For use at any
/// time; one object belongs to one thread at a time.
class ByteBuffer {
public:
    ByteBuffer() = default;
    /// Copies the bytes; a null pointer makes `size` zero bytes.
    ByteBuffer(const void* data, std::size_t size);
    ByteBuffer(const ByteBuffer& other) : ByteBuffer(other.data(), other.size_) {}
    ByteBuffer(ByteBuffer&& other) noexcept
        : bytes_(std::move(other.bytes_)), size_(std::exchange(other.size_, 0)) {}
    ByteBuffer& operator=(ByteBuffer other) noexcept {
        bytes_.swap(other.bytes_);
        std::swap(size_, other.size_);
        return *this;
    }

    /// Returns a buffer whose bytes have no value yet; the caller writes all of them.
    static ByteBuffer uninitialised(std::size_t size);

    const std::uint8_t* data() const { return bytes_.get(); }
    std::uint8_t* data() { return bytes_.get(); }
    /// The bytes as text.
    std::string_view view() const { return {reinterpret_cast<const char*>(bytes_.get()), size_}; }
    std::size_t size() const { return size_; }
    /// Added bytes are zero.
    void resize(std::size_t size);
    bool operator==(const ByteBuffer& other) const;

    /// Returns the bytes as a compressed block. 4 GB and more, whose size a block can't hold, come
    /// back as a copy, which `decompress` returns unchanged.
    ByteBuffer compress() const;
    /// The same for bytes outside of a buffer, such as a tree's text.
    static ByteBuffer compressed(std::string_view bytes);
    /// Returns the decoded bytes if this is a block, else a copy. Of a block that is cut short or
    /// asks for more than it can hold, returns what could be decoded and logs a line. A block of
    /// one symbol has no payload to bound it and yields at most 64 MiB.
    ByteBuffer decompress() const;
    /// Returns the most bytes that `decompress` may return: those that a whole block has.
    std::size_t mostDecompressed() const;

    /// Reads a whole file of up to 2 GiB. Returns false, with the buffer unchanged, on failure.
    [[nodiscard]] bool readFile(const std::string& path);
    /// Replaces a whole file. Returns false, with the old file intact, on failure.
    [[nodiscard]] bool writeFile(const std::string& path) const;

private:
    std::unique_ptr<std::uint8_t[]> bytes_;
    std::size_t size_ = 0;
};

} // namespace MVR
