// Counts memory and measures code that uses it. Replaces the process's allocation, so include it
// once in a program. "warm" topics use memory that the process has used before; "fresh" ones return
// it to the system before each round, so that each page is touched for the first time, as on the
// first load of a file.
#pragma once

#include <benchmark/benchmark.h>
#include <malloc.h>
#include <zlib.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <string_view>

// Only during a counted round, which isn't timed: counting is slow.
inline bool countsMemory = false;
inline std::size_t liveBytes = 0;
inline std::size_t peakBytes = 0;

inline void* countedAllocate(std::size_t size) {
    void* memory = std::malloc(size);
    if (!memory)
        std::abort();
    if (countsMemory) {
        liveBytes += malloc_usable_size(memory);
        peakBytes = std::max(peakBytes, liveBytes);
    }
    return memory;
}

inline void countedFree(void* memory) {
    if (countsMemory)
        liveBytes -= malloc_usable_size(memory);
    std::free(memory);
}

void* operator new(std::size_t size) {
    return countedAllocate(size);
}
void* operator new[](std::size_t size) {
    return countedAllocate(size);
}
void operator delete(void* memory) noexcept {
    countedFree(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    countedFree(memory);
}
void operator delete[](void* memory) noexcept {
    countedFree(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    countedFree(memory);
}

inline std::uint32_t hashOf(std::string_view bytes) {
    return static_cast<std::uint32_t>(
        crc32(0, reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uInt>(bytes.size())));
}

// `work` returns the hash of its result, which is computed outside of the timed part.
inline void measure(benchmark::State& state, bool fresh, const std::function<void()>& work,
                    const std::function<std::uint32_t()>& hash = {}) {
    // Otherwise the allocator returns memory to the system whenever much was freed, warm or not.
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    // What was allocated earlier and is freed in the round must not count below zero.
    const std::size_t before = liveBytes = peakBytes = std::size_t{1} << 40;
    countsMemory = true;
    work();
    countsMemory = false;
    for (auto round : state) {
        if (fresh) {
            state.PauseTiming();
            malloc_trim(0);
            state.ResumeTiming();
        }
        work();
    }
    state.counters["peak_bytes"] = static_cast<double>(peakBytes - before);
    if (hash)
        state.counters["hash"] = hash();
}

using Bytes = std::unique_ptr<Bytef[]>;

// zlib with no more than Huffman codes, in one call.
inline std::size_t deflateHuffman(const std::string& text, Bytes& out) {
    z_stream stream{};
    deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, 15, 9, Z_HUFFMAN_ONLY);
    const uLong bound = deflateBound(&stream, text.size());
    out.reset(new Bytef[bound]);
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
    stream.avail_in = static_cast<uInt>(text.size());
    stream.next_out = out.get();
    stream.avail_out = static_cast<uInt>(bound);
    deflate(&stream, Z_FINISH);
    deflateEnd(&stream);
    return stream.total_out;
}
