#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// Search in text, in steps of as many bytes as the processor compares at once. Most of what is
/// searched in structured text is less than a step away, where a call of `memchr` costs more than
/// its work. Nothing is read past `end`.
namespace MVR::Platform {

constexpr std::ptrdiff_t kScanStep = 16;

/// Space, and tab to carriage return.
constexpr bool isSpace(char c) {
    return c == ' ' || static_cast<unsigned char>(c - '\t') < 5;
}

/// A bit for each byte of a step; the first byte's is the lowest.
using ScanHits = std::uint32_t;

#if defined(__SSE2__)

struct ScanBytes {
    explicit ScanBytes(const char* at)
        : bytes(_mm_loadu_si128(reinterpret_cast<const __m128i*>(at))) {}

    ScanHits equal(char wanted) const { return hits(_mm_cmpeq_epi8(bytes, _mm_set1_epi8(wanted))); }
    ScanHits spaces() const {
        const __m128i fromTab = _mm_sub_epi8(bytes, _mm_set1_epi8('\t'));
        return equal(' ') | hits(_mm_cmpeq_epi8(_mm_min_epu8(fromTab, _mm_set1_epi8(4)), fromTab));
    }

private:
    static ScanHits hits(__m128i compared) {
        return static_cast<ScanHits>(_mm_movemask_epi8(compared));
    }

    __m128i bytes;
};

#else

struct ScanBytes {
    explicit ScanBytes(const char* at) { std::memcpy(bytes, at, sizeof bytes); }

    ScanHits equal(char wanted) const {
        ScanHits result = 0;
        for (std::ptrdiff_t i = 0; i < kScanStep; ++i)
            result |= static_cast<ScanHits>(bytes[i] == wanted) << i;
        return result;
    }
    ScanHits spaces() const {
        ScanHits result = 0;
        for (std::ptrdiff_t i = 0; i < kScanStep; ++i)
            result |= static_cast<ScanHits>(isSpace(bytes[i])) << i;
        return result;
    }

private:
    char bytes[kScanStep];
};

#endif

/// Returns the index of the lowest bit; there must be one.
inline std::ptrdiff_t firstHit(ScanHits hits) {
#if defined(__GNUC__)
    return __builtin_ctz(hits);
#else
    std::ptrdiff_t place = 0;
    for (; (hits & 1u) == 0; hits >>= 1)
        ++place;
    return place;
#endif
}

/// Prefetches memory that is read soon. A hint: any address will do.
inline void prefetch(const void* at) {
#if defined(__GNUC__)
    __builtin_prefetch(at);
#else
    static_cast<void>(at);
#endif
}

/// Returns the first of the `wanted` bytes, or `end`.
template <typename... Bytes>
const char* findAny(const char* at, const char* end, Bytes... wanted) {
    for (; end - at >= kScanStep; at += kScanStep) {
        const ScanBytes step(at);
        if (const ScanHits hits = (step.equal(wanted) | ...))
            return at + firstHit(hits);
    }
    while (at != end && ((*at != wanted) && ...))
        ++at;
    return at;
}

/// Returns the first space or `wanted` byte, or `end`.
template <typename... Bytes>
const char* findSpaceOr(const char* at, const char* end, Bytes... wanted) {
    for (; end - at >= kScanStep; at += kScanStep) {
        const ScanBytes step(at);
        if (const ScanHits hits = (step.spaces() | ... | step.equal(wanted)))
            return at + firstHit(hits);
    }
    while (at != end && !isSpace(*at) && ((*at != wanted) && ...))
        ++at;
    return at;
}

/// Returns the first byte that is no space, or `end`. Byte by byte: indentation is much the same
/// from line to line, so the processor predicts its end, where it would wait for the result of a
/// step.
inline const char* skipSpace(const char* at, const char* end) {
    while (at != end && isSpace(*at))
        ++at;
    return at;
}

/// Returns the first `wanted` byte, which may be far away, or `end`.
inline const char* findByte(const char* at, const char* end, char wanted) {
    if (end - at < kScanStep)
        return findAny(at, end, wanted);
    if (const ScanHits hits = ScanBytes(at).equal(wanted))
        return at + firstHit(hits);
    const void* found = std::memchr(at, wanted, static_cast<std::size_t>(end - at));
    return found ? static_cast<const char*>(found) : end;
}

} // namespace MVR::Platform
