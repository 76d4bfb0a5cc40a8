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
    /// A copy of the bytes; a null pointer gives `size` zero bytes.
    ByteBuffer(const void* data, std::size_t size);
    ByteBuffer(const ByteBuffer& other) : ByteBuffer(other.data(), other.size_) {}
    ByteBuffer(ByteBuffer&& other) noexcept
        : bytes_(std::move(other.bytes_)), size_(std::exchange(other.size_, 0)) {}
    ByteBuffer& operator=(ByteBuffer other) noexcept {
        bytes_.swap(other.bytes_);
        std::swap(size_, other.size_);
        return *this;
    }

    /// Room for bytes that are all about to be written.
    static ByteBuffer uninitialised(std::size_t size);

    const std::uint8_t* data() const { return bytes_.get(); }
    std::uint8_t* data() { return bytes_.get(); }
    /// The bytes to be read as text.
    std::string_view view() const { return {reinterpret_cast<const char*>(bytes_.get()), size_}; }
    std::size_t size() const { return size_; }
    /// Bytes that are added are zero.
    void resize(std::size_t size);
    bool operator==(const ByteBuffer& other) const;

    /// The bytes as a compressed block. What a block can't tell the size of (4 GB and more) comes
    /// back as a copy, which `decompress` passes on.
    ByteBuffer compress() const;
    /// The same of bytes that stand elsewhere, such as a tree's text.
    static ByteBuffer compressed(std::string_view bytes);
    /// The decoded bytes if this is a block, else a copy. A block that is cut short or asks for
    /// more than it can hold gives what could be decoded, with a line in the log. A block of one
    /// symbol has no payload to bound it: it gives at most 64 MiB.
    ByteBuffer decompress() const;

    /// Reads a whole file of up to 2 GiB; on failure false, with the buffer as it was.
    [[nodiscard]] bool readFile(const std::string& path);
    /// Replaces a whole file; on failure false, with the old file whole.
    [[nodiscard]] bool writeFile(const std::string& path) const;

private:
    std::unique_ptr<std::uint8_t[]> bytes_;
    std::size_t size_ = 0;
};

} // namespace MVR
