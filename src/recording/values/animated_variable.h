// A value over time: a sorted list of keys, read at any time. The recorder keeps one for each
// input property of a tool.
#pragma once

#include "recording/values/key_sequence.h"

#include <cstddef>
#include <cstdint>

namespace MVR::Util {

/// A key-framed variable; only `AVar<double>` exists.
template <class T>
class AVar;

/// A key-framed number. The derived class defines the values between two keys. Times are seconds of
/// scene time. A variable belongs to one thread: reading moves a cursor that makes reading forwards
/// cheap, however many keys there are. The order of the virtual operations is frozen.
///
/// The binary block, all numbers little-endian: four 32-bit numbers (16, the size of this header;
/// the bytes after it; `kBlockVersion`; the key count), then a time and a value, both 64-bit
/// floats, for each key.
template <>
class AVar<double> {
public:
    using Key = KeySequence::Key;

    static constexpr std::uint32_t kBlockVersion = 100;
    static constexpr std::size_t kHeaderSize = 16;
    static constexpr std::size_t kKeySize = 16;

    /// Returns the key at `time`, which is between those of `a` and `b`.
    [[nodiscard]] virtual Key interpolate(const Key& a, const Key& b, double time) const = 0;
    /// Returns the size of the binary block in bytes.
    [[nodiscard]] virtual std::size_t getDataSize() const;
    /// Writes the block into `size` bytes. If there is room for less than the whole block, writes a
    /// header with key count 0; for less than a header, nothing.
    virtual void writeData(void* buffer, std::size_t size) const;
    /// Replaces the keys by those of a block of `size` bytes. A block of another version, a short
    /// one, and one whose times don't ascend are refused as a whole: returns false, logs it and
    /// keeps the keys. A block whose header contradicts its key count results in that many keys of
    /// time -1 and value 0.
    [[nodiscard]] virtual bool readData(const void* buffer, std::size_t size);

    /// Sets the key at `time`, or inserts one. After the last key, where a take adds, the cost
    /// doesn't depend on their number. A time that isn't a number is ignored.
    void setKey(double time, double value);
    /// Returns the default value if there are no keys, the first value before the first key, the
    /// last value after the last key, otherwise the value of the key or the interpolation of its
    /// neighbours.
    [[nodiscard]] double getValue(double time) const;
    /// Returns the index of the key nearest to `time`, the later of two at the same distance, or -1
    /// if there are no keys.
    [[nodiscard]] std::int32_t findNearest(double time) const;
    /// Removes the keys at `time` and later.
    void eraseFrom(double time);

    /// Sorted by ascending time, no time twice.
    [[nodiscard]] const KeySequence& getKeys() const { return keys_; }

protected:
    explicit AVar(double defaultValue) : defaultValue_(defaultValue) {}
    ~AVar() = default;
    AVar(const AVar&) = default;
    AVar(AVar&&) = default;
    AVar& operator=(const AVar&) = default;
    AVar& operator=(AVar&&) = default;

private:
    [[nodiscard]] std::size_t lowerBound(double time) const;

    KeySequence keys_;
    double defaultValue_;
    mutable std::size_t cursor_ = 0; // a guess at the next lowerBound; any value is right
};

/// A variable with straight lines between its keys; only `AVar_Linear<double>` exists.
template <class T>
class AVar_Linear;

template <>
class AVar_Linear<double> final : public AVar<double> {
public:
    explicit AVar_Linear(double defaultValue = 0.0) : AVar(defaultValue) {}
    [[nodiscard]] Key interpolate(const Key& a, const Key& b, double time) const override;
};

} // namespace MVR::Util
