#include "recording/values/animated_variable.h"

#include "recording/values/variable_mod_undo.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace MVR::Util {
namespace {

using Keys = std::vector<std::pair<double, double>>;

AVar_Linear<double> variableOf(const Keys& keys) {
    AVar_Linear<double> variable;
    for (const auto& [time, value] : keys)
        variable.setKey(time, value);
    return variable;
}

Keys keysOf(const AVar<double>& variable) {
    Keys keys;
    for (std::size_t i = 0; i < variable.getKeys().size(); ++i)
        keys.emplace_back(variable.getKeys()[i].time, variable.getKeys()[i].value);
    return keys;
}

std::string blockOf(const AVar<double>& variable) {
    std::string block(variable.getDataSize(), '\xEE');
    variable.writeData(block.data(), block.size());
    return block;
}

// The same values in any order of reading: the cursor must not matter.
TEST(AnimatedVariable, ReadsTheSameForwardsBackwardsAndAtRandom) {
    AVar_Linear<double> line = variableOf({{1, 10}, {3, 30}});
    for (const double time : {2.0, 4.0, 0.0, 2.0, 3.0, 1.0, 4.0, 2.5})
        EXPECT_EQ(line.getValue(time), std::min(30.0, std::max(10.0, time * 10))) << time;
    EXPECT_EQ(line.findNearest(0), 0);
    EXPECT_EQ(line.findNearest(1.9), 0);
    EXPECT_EQ(line.findNearest(2), 1) << "of two at the same distance the later";
    EXPECT_EQ(line.findNearest(9), 1);
    EXPECT_EQ(AVar_Linear<double>().findNearest(1), -1);
    EXPECT_EQ(AVar_Linear<double>().getValue(1), 0.0);

    AVar_Linear<double> squares;
    for (int i = 0; i < 1000; ++i)
        squares.setKey(i, i * i);
    for (int i = 0; i < 3000; ++i) {
        const double time = i * 7919 % 2001 / 2.0;
        const double low = std::min(std::floor(time), 999.0);
        const double high = std::min(std::ceil(time), 999.0);
        EXPECT_EQ(squares.getValue(time), (low * low + high * high) / 2) << time;
    }
}

TEST(AnimatedVariable, KeysStayInOrderAndUnique) {
    AVar_Linear<double> variable = variableOf({{3, 30}, {1, 10}, {2, 20}, {2, 21}, {0, 0}});
    EXPECT_EQ(keysOf(variable), (Keys{{0, 0}, {1, 10}, {2, 21}, {3, 30}}));
    variable.setKey(std::numeric_limits<double>::quiet_NaN(), 5);
    variable.eraseFrom(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(variable.getKeys().size(), 4u);
    EXPECT_EQ(variable.getValue(std::numeric_limits<double>::quiet_NaN()), 0.0);

    const std::vector<std::pair<double, std::size_t>> cuts{{3.5, 4}, {3, 3},  {1.5, 2},
                                                           {1, 1},   {-1, 0}, {-1, 0}};
    for (const auto& [time, left] : cuts) {
        variable.eraseFrom(time);
        EXPECT_EQ(variable.getKeys().size(), left) << time;
    }
    variable.setKey(7, 70); // the cursor was behind the removed keys
    EXPECT_EQ(variable.getValue(8), 70);
}

TEST(AnimatedVariable, ManyKeysInAnyOrderAndCutAnywhere) {
    Keys wanted;
    for (int i = 0; i < 3000; ++i)
        wanted.emplace_back(i, i * i);
    AVar_Linear<double> variable;
    for (int step = 0; step < 3000; ++step) {
        const int i = step * 7 % 3000;
        variable.setKey(i, i * i);
    }
    EXPECT_EQ(keysOf(variable), wanted);
    for (const std::size_t cut : {2999u, 2081u, 2080u, 2049u, 2048u, 2047u, 33u, 32u, 31u, 1u}) {
        const AVar_Linear<double> whole = variable;
        variable.eraseFrom(static_cast<double>(cut));
        EXPECT_EQ(keysOf(variable), Keys(wanted.begin(), wanted.begin() + static_cast<long>(cut)));
        variable.setKey(1e6, 1);
        EXPECT_EQ(variable.getKeys().size(), cut + 1);
        variable = whole;
        EXPECT_EQ(keysOf(variable), wanted);
    }
}

TEST(AnimatedVariable, BlockIsLittleEndianAndReadsBack) {
    const AVar_Linear<double> variable = variableOf({{1, -2.5}});
    EXPECT_EQ(blockOf(variable), std::string("\x10\0\0\0\x10\0\0\0\x64\0\0\0\x01\0\0\0"
                                             "\0\0\0\0\0\0\xF0\x3F\0\0\0\0\0\0\x04\xC0",
                                             32));
    for (const int count : {0, 1, 33, 500}) {
        AVar_Linear<double> keys;
        for (int i = 0; i < count; ++i)
            keys.setKey(i / 60.0, std::sin(i));
        const std::string block = blockOf(keys);
        EXPECT_EQ(block.size(), 16u + 16u * static_cast<std::size_t>(count));
        AVar_Linear<double> copy = variableOf({{9, 9}});
        ASSERT_TRUE(copy.readData(block.data(), block.size()));
        EXPECT_EQ(keysOf(copy), keysOf(keys));
    }
    std::string small(31, '\xEE');
    variable.writeData(small.data(), small.size());
    EXPECT_EQ(small[12], 0) << "no key is announced that didn't fit";
    EXPECT_EQ(small[16], '\xEE');
}

TEST(AnimatedVariable, RefusesHostileBlocksWhole) {
    const std::string good = blockOf(variableOf({{1, 10}, {2, 20}}));
    const auto changed = [&good](std::size_t at, const std::string& bytes) {
        return std::string(good).replace(at, bytes.size(), bytes);
    };
    std::vector<std::string> bad;
    for (std::size_t cut = 0; cut < good.size(); ++cut)
        bad.push_back(good.substr(0, cut));
    bad.push_back(changed(0, "\x11"));
    bad.push_back(changed(8, "\x63"));
    bad.push_back(changed(12, "\xFF\xFF\xFF\xFF"));    // four thousand million keys
    bad.push_back(changed(4, "\xF0\xFF\xFF\xFF\x64")); // and matching bytes after it
    bad.back().replace(12, 4, "\xFF\xFF\xFF\x0F");
    bad.push_back(changed(32, good.substr(16, 8))); // the same time twice
    bad.push_back(
        changed(16, std::string("\0\0\0\0\0\0\xF8\x7F", 8))); // a time that isn't a number
    for (const std::string& block : bad) {
        AVar_Linear<double> variable = variableOf({{5, 50}});
        EXPECT_FALSE(variable.readData(block.data(), block.size()));
        EXPECT_EQ(keysOf(variable), (Keys{{5, 50}}));
    }
    AVar_Linear<double> variable;
    const std::string contradiction = changed(4, "\x10");
    ASSERT_TRUE(variable.readData(contradiction.data(), contradiction.size()));
    EXPECT_EQ(keysOf(variable), (Keys{{-1, 0}, {-1, 0}}));
    EXPECT_EQ(variable.getValue(-1), 0.0);
}

TEST(VariableModUndo, UndoAndRedoInTurnAndAfterTheToolIsGone) {
    using Variables = std::vector<AVar_Linear<double>>;
    auto live = std::make_shared<Variables>(2, variableOf({{1, 1}}));
    const auto state = [&live] { return live->empty() ? Keys{} : keysOf(live->front()); };
    const Keys before = state();
    CVariableModUndo<Variables> undo(live);
    live->front().setKey(2, 2);
    const Keys after = state();

    undo.redo();
    EXPECT_EQ(state(), after) << "nothing to redo yet";
    for (int round = 0; round < 2; ++round) {
        undo.restore(true);
        undo.restore(true);
        EXPECT_EQ(state(), before);
        undo.redo();
        undo.redo();
        EXPECT_EQ(state(), after);
    }
    undo.restore(false);
    EXPECT_EQ(state(), before);
    live->front().setKey(2, 2); // the repeat left the stored keys alone
    undo.restore(true);
    EXPECT_EQ(state(), before);

    live.reset();
    undo.redo();
    undo.restore(true);
    undo.restore(false);
}

} // namespace
} // namespace MVR::Util
