#include "data/sdk/byte_buffer.h"

#include "core/base/sdk/log.h"
#include "platform/temporary_folder.h"

#include <gtest/gtest.h>

#include <random>

namespace MVR {
namespace {

ByteBuffer buffer(const std::string& bytes) {
    return ByteBuffer(bytes.data(), bytes.size());
}

std::string text(const ByteBuffer& buffer) {
    return std::string(buffer.data(), buffer.data() + buffer.size());
}

std::string little32(std::uint32_t value) {
    std::string bytes;
    for (int i = 0; i < 4; ++i)
        bytes += static_cast<char>(value >> 8 * i);
    return bytes;
}

// A block with the table's records in this order.
std::string block(const std::vector<std::pair<char, std::uint32_t>>& table, std::uint32_t size,
                  const std::string& payload) {
    std::string bytes = little32(0x005331CA) + little32(100) +
                        little32(static_cast<std::uint32_t>(table.size())) + little32(size);
    for (const auto& [symbol, weight] : table)
        bytes += symbol + little32(weight);
    return bytes + payload;
}

std::string decoded(const std::string& bytes) {
    return text(buffer(bytes).decompress());
}

TEST(ByteBufferTest, WritesTheBlockFormat) {
    EXPECT_EQ(text(buffer("aaaabbc").compress()),
              block({{'c', 1}, {'b', 2}, {'a', 4}}, 7, std::string("\xAF\0", 2)));
    EXPECT_EQ(text(buffer("zzzz").compress()), block({{'z', 4}}, 4, ""));
    EXPECT_EQ(text(ByteBuffer().compress()), block({}, 0, ""));
    EXPECT_EQ(text(ByteBuffer(nullptr, 3)), std::string(3, '\0'));

    // A block of the first version, which must stay readable.
    ByteBuffer file;
    ASSERT_TRUE(file.readFile(MIRVANE_TEST_FILES "block_100.bin"));
    EXPECT_EQ(text(file.decompress()), "<id>34</id>\r\n\xC3\xA4");
}

TEST(ByteBufferTest, RoundTripsAnyBytes) {
    std::mt19937 random(7);
    std::vector<std::string> inputs{"a", "ab", std::string(1000000, 'x'), std::string(1, '\0')};
    for (std::size_t size : {3, 255, 256, 4096, 16383, 16384, 100003}) {
        for (int symbols : {2, 3, 11, 64, 256}) {
            std::string input;
            while (input.size() < size)
                input += static_cast<char>(random() % symbols);
            inputs.push_back(input);
        }
    }
    // Weights that double or follow Fibonacci make codes longer than any table.
    std::string doubled;
    std::string fibonacci;
    for (std::uint32_t symbol = 0, a = 1, b = 1; symbol < 24; ++symbol, b += a, a = b - a)
        fibonacci.append(a, static_cast<char>('a' + symbol));
    for (std::uint32_t symbol = 0; symbol < 20; ++symbol)
        doubled.append(1u << symbol, static_cast<char>(symbol));
    for (std::string* input : {&doubled, &fibonacci}) {
        std::shuffle(input->begin(), input->end(), random);
        inputs.push_back(*input);
    }
    for (const std::string& input : inputs)
        EXPECT_TRUE(decoded(text(buffer(input).compress())) == input) << input.size();
}

TEST(ByteBufferTest, TiesAndOddTablesDecodeByTheTable) {
    // All weights equal: only the table's order defines the codes, from left to right.
    EXPECT_EQ(decoded(block({{'a', 1}, {'b', 1}, {'c', 1}, {'d', 1}}, 4, "\xD8")), "abcd");
    EXPECT_EQ(decoded(block({{'d', 1}, {'c', 1}, {'b', 1}, {'a', 1}}, 4, "\xD8")), "dcba");
    // A merged node comes after a leaf of its weight: b and c together weigh as much as a.
    EXPECT_EQ(decoded(block({{'b', 1}, {'c', 1}, {'a', 2}}, 3, "\x0A")), "abb");
    // Weights that overflow 32 bits when they are added, that are 0, or that are in no order.
    for (std::uint32_t weight : {0u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu})
        EXPECT_EQ(decoded(block({{'a', weight}, {'b', weight}}, 4, "\x05")), "baba");
    std::vector<std::pair<char, std::uint32_t>> chain;
    for (std::uint32_t i = 0; i < 256; ++i)
        chain.emplace_back(static_cast<char>(i), i < 32 ? 1u << i : 0xFFFFFFFFu - i);
    std::string payload;
    std::mt19937 random(3);
    while (payload.size() < 4096)
        payload += static_cast<char>(random());
    EXPECT_FALSE(decoded(block(chain, 4096, payload)).empty());
}

TEST(ByteBufferTest, WhatIsNoBlockPassesThrough) {
    const std::string whole = block({{'z', 4}}, 4, "");
    std::string other = whole;
    other[0] ^= 1;
    std::string version = whole;
    version[4] = 101;
    const std::string symbols = whole.substr(0, 8) + little32(257) + whole.substr(12);
    for (const std::string& bytes : {std::string(), std::string("<a>x</a>"), other, version,
                                     symbols, whole.substr(0, 15), whole.substr(0, 8)})
        EXPECT_EQ(decoded(bytes), bytes);
}

TEST(ByteBufferTest, HostileBlocksGetNoMoreThanTheyHold) {
    const std::size_t logged = Log::getText().size();
    EXPECT_EQ(decoded(block({{'z', 1}}, 0xFFFFFFFF, "")).size(), std::size_t(64) << 20);
    EXPECT_EQ(decoded(block({{'y', 1}, {'z', 1}}, 0xFFFFFFFF, "\x0F")), "zzzzyyyy");
    EXPECT_EQ(decoded(block({}, 0xFFFFFFFF, "x")), "");
    EXPECT_NE(Log::getText().find("Compressed data is incomplete", logged), std::string::npos);

    std::string input;
    for (int i = 0; i < 900; ++i)
        input += static_cast<char>(i * i % 37 * (i % 3));
    const std::string whole = text(buffer(input).compress());
    const std::size_t payloadAt = 16 + 5 * static_cast<unsigned char>(whole[8]);
    for (std::size_t size = 16; size < whole.size(); ++size) {
        const std::string part = decoded(whole.substr(0, size));
        EXPECT_TRUE(input.starts_with(part)) << size;
        EXPECT_EQ(part.empty(), size <= payloadAt) << size;
    }
}

TEST(ByteBufferTest, FilesAreReadAndReplacedWhole) {
    TemporaryFolder folder;
    const std::string bytes("\r\n\0\xFF<", 5);
    EXPECT_TRUE(buffer(bytes).writeFile(folder.path + "bytes"));
    ByteBuffer read;
    EXPECT_TRUE(read.readFile(folder.path + "bytes"));
    EXPECT_EQ(text(read), bytes);
    EXPECT_FALSE(read.readFile(folder.path + "missing"));
    EXPECT_EQ(text(read), bytes);
    EXPECT_FALSE(read.writeFile(folder.path + "missing/bytes"));
}

} // namespace
} // namespace MVR
