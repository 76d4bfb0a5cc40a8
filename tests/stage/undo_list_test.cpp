#include "stage/scene/undo_list.h"

#include <gtest/gtest.h>

#include <string>

namespace Stage {
namespace {

/// Notes each call: "u" undo, "r" redo, "d" destroyed, with its letter.
class Noted final : public MVR::CUndo {
public:
    Noted(std::string& calls, char name) : calls_(calls), name_(name) {}
    void restore(bool isUndo) override { note(isUndo ? 'u' : '?'); }
    void redo() override { note('r'); }
    void destroy() override {
        note('d');
        delete this;
    }

private:
    void note(char what) { (calls_ += what) += name_; }

    std::string& calls_;
    char name_;
};

class UndoListTest : public testing::Test {
protected:
    void add(char name) { list.add(new Noted(calls, name)); }
    void step(const std::string& name, const std::string& objects) {
        list.begin(name);
        for (const char object : objects)
            add(object);
        list.end();
    }
    std::string take() { return std::exchange(calls, {}); }

    std::string calls;
    UndoList list;
};

TEST_F(UndoListTest, NestedStepsAreOneEntryUnderTheOuterName) {
    list.begin("Record");
    add('a');
    step("inner", "bc");
    EXPECT_TRUE(list.isOpen());
    EXPECT_FALSE(list.undo()) << "a step is open";
    add('d');
    list.end();
    EXPECT_EQ(list.getUndoCount(), 1U);
    EXPECT_EQ(list.getUndoName(), "Record");
    EXPECT_TRUE(list.undo());
    EXPECT_EQ(take(), "uduc"
                      "ubua");
    EXPECT_TRUE(list.redo());
    EXPECT_EQ(take(), "rarbrcrd");
    EXPECT_FALSE(list.redo());
    list.clear();
    EXPECT_EQ(take(), "dadbdcdd");
}

TEST_F(UndoListTest, WhatLeavesNoEntry) {
    step("nothing", "");
    list.begin("only empty steps");
    step("inner", "");
    list.end();
    list.end(); // one too many
    list.add(nullptr);
    EXPECT_EQ(list.getUndoCount(), 0U);
    EXPECT_FALSE(list.undo());

    list.begin("outer");
    add('a');
    list.begin("failed");
    add('b');
    add('c');
    list.cancel();
    EXPECT_EQ(take(), "ucub"
                      "dbdc")
        << "undone in reverse, then freed";
    list.cancel();
    EXPECT_EQ(take(), "uada");
    EXPECT_EQ(list.getUndoCount(), 0U);
    EXPECT_FALSE(list.isOpen());
}

TEST_F(UndoListTest, ANewEntryDropsWhatCouldBeRedone) {
    step("one", "a");
    step("two", "b");
    list.undo();
    list.undo();
    take();
    step("three", "c");
    EXPECT_EQ(take(), "dbda") << "latest first: it may need what the earlier one made";
    EXPECT_FALSE(list.redo());
    EXPECT_EQ(list.getUndoName(), "three");
    add('e');
    EXPECT_EQ(list.getUndoCount(), 2U) << "an object without a step is an entry of its own";
    list.clear();
}

TEST_F(UndoListTest, WhatIsAddedDuringAnUndoIsDropped) {
    list.begin("sets off another change");
    list.add([this] { add('x'); }, [this] { add('y'); });
    list.end();
    list.undo();
    list.redo();
    EXPECT_EQ(take(), "dxdy");
    EXPECT_EQ(list.getUndoCount(), 1U);
    for (std::size_t i = 0; i < UndoList::kMostEntries; ++i)
        step("more", "m");
    EXPECT_EQ(list.getUndoCount(), UndoList::kMostEntries);
    list.clear();
}

} // namespace
} // namespace Stage
