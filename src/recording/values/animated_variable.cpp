#include "recording/values/animated_variable.h"

#include "core/base/sdk/log.h"
#include "data/little_endian.h"

#include <cmath>
#include <limits>
#include <utility>

namespace MVR::Util {

namespace {

using Bytes = std::uint8_t;

/// The four numbers at the head of a block.
struct Header {
    std::uint32_t headerSize;
    std::uint32_t bytesBehind;
    std::uint32_t version;
    std::uint32_t keyCount;
};

Header loadHeader(const Bytes* at) {
    return {loadLittle32(at), loadLittle32(at + 4), loadLittle32(at + 8), loadLittle32(at + 12)};
}

void storeHeader(Bytes* at, const Header& header) {
    storeLittle32(at, header.headerSize);
    storeLittle32(at + 4, header.bytesBehind);
    storeLittle32(at + 8, header.version);
    storeLittle32(at + 12, header.keyCount);
}

bool refuse(const char* reason) {
    Log(Log::Warning).write("Recorded values are refused", reason, Log::OwnLevel);
    return false;
}

} // namespace

AVar<double>::Key AVar_Linear<double>::interpolate(const Key& a, const Key& b, double time) const {
    return {time, (b.value - a.value) * (time - a.time) / (b.time - a.time) + a.value};
}

std::size_t AVar<double>::lowerBound(double time) const {
    // A resimulation asks for the same key again, or for the next.
    const std::size_t count = keys_.size();
    if (cursor_ <= count && (cursor_ == 0 || keys_[cursor_ - 1].time < time))
        for (std::size_t guess = cursor_; guess <= count && guess < cursor_ + 2; ++guess)
            if (guess == count || !(keys_[guess].time < time))
                return cursor_ = guess;
    std::size_t low = 0;
    std::size_t high = count;
    while (low < high) {
        const std::size_t middle = (low + high) / 2;
        if (keys_[middle].time < time)
            low = middle + 1;
        else
            high = middle;
    }
    return cursor_ = low;
}

std::int32_t AVar<double>::findNearest(double time) const {
    if (keys_.empty())
        return -1;
    std::size_t index = lowerBound(time);
    if (index == keys_.size())
        --index;
    else if (index > 0 && keys_[index].time != time &&
             time - keys_[index - 1].time < keys_[index].time - time)
        --index;
    return static_cast<std::int32_t>(index);
}

double AVar<double>::getValue(double time) const {
    if (keys_.empty())
        return defaultValue_;
    const std::size_t index = lowerBound(time);
    if (index == keys_.size())
        return keys_.back().value;
    if (index == 0 || keys_[index].time == time)
        return keys_[index].value;
    return interpolate(keys_[index - 1], keys_[index], time).value;
}

void AVar<double>::setKey(double time, double value) {
    if (std::isnan(time))
        return;
    if (keys_.empty() || keys_.back().time < time) {
        keys_.append({time, value});
        return;
    }
    const std::size_t index = lowerBound(time);
    if (keys_[index].time == time)
        keys_[index].value = value;
    else
        keys_.insert(index, {time, value});
}

void AVar<double>::eraseFrom(double time) {
    if (!std::isnan(time))
        keys_.truncate(lowerBound(time));
}

std::size_t AVar<double>::getDataSize() const {
    return kHeaderSize + keys_.size() * kKeySize;
}

void AVar<double>::writeData(void* buffer, std::size_t size) const {
    if (size < kHeaderSize)
        return;
    Bytes* at = static_cast<Bytes*>(buffer);
    const std::size_t behind = keys_.size() * kKeySize;
    const auto sizeField = static_cast<std::uint32_t>(behind);
    if (size < getDataSize() || behind > std::numeric_limits<std::uint32_t>::max()) {
        storeHeader(at, {kHeaderSize, sizeField, kBlockVersion, 0});
        return;
    }
    storeHeader(at,
                {kHeaderSize, sizeField, kBlockVersion, static_cast<std::uint32_t>(keys_.size())});
    at += kHeaderSize;
    for (std::size_t i = 0; i < keys_.size(); ++i) {
        storeLittleDouble(at, keys_[i].time);
        storeLittleDouble(at + 8, keys_[i].value);
        at += kKeySize;
    }
}

bool AVar<double>::readData(const void* buffer, std::size_t size) {
    if (size < kHeaderSize)
        return refuse("the header is cut off");
    const Bytes* at = static_cast<const Bytes*>(buffer);
    const Header header = loadHeader(at);
    if (header.headerSize != kHeaderSize || header.version != kBlockVersion)
        return refuse("not a block of this version");
    at += kHeaderSize;
    if (header.keyCount > (size - kHeaderSize) / kKeySize)
        return refuse("the keys are cut off");

    const bool isConsistent = header.bytesBehind == header.keyCount * std::uint64_t(kKeySize);
    KeySequence keys;
    for (std::uint32_t i = 0; i < header.keyCount; ++i) {
        Key key{-1.0, 0.0};
        if (isConsistent) {
            key = {loadLittleDouble(at), loadLittleDouble(at + 8)};
            at += kKeySize;
            if (std::isnan(key.time) || (i > 0 && !(keys.back().time < key.time)))
                return refuse("the times don't ascend");
        }
        keys.append(key);
    }
    keys_ = std::move(keys);
    return true;
}

} // namespace MVR::Util
