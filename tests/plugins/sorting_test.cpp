#include "plugins/tree_test.h"

#include <algorithm>

namespace {

using namespace MVR;
using Testing::expectInOrder;

struct SortingTest : Testing::TreeTest {
    /// Puts a node of `child` below the first of `parent`.
    void hang(const std::string& child, const std::string& parent) {
        nodeOf(child, "below " + parent)->setParent(nodeOf(parent, "main"));
    }
    SceneNode* nodeOf(const std::string& tool, const std::string& name) {
        return find(tool)->getInstance()->createNode(name, kNodeHelper, 0);
    }
    std::string sorted() {
        std::string names;
        for (PluginInstance* each : core->sortForRecording(core->getInstances(false)))
            names += each->getName();
        return names;
    }
};

TEST_F(SortingTest, ToolsComeAfterThoseThatTheyHangBelow) {
    struct {
        const char* hangs; // pairs: the first hangs below the second
        const char* order;
    } const cases[] = {
        {"", "ABCD"},     {"AB", "BACD"},     {"BA", "ABCD"},       {"ABBCCD", "DCBA"},
        {"ACDA", "CABD"}, {"ADBDCA", "DABC"}, {"ACAB", "CBAD"},     {"AA", "ABCD"},
        {"ABBA", "BACD"}, {"ABBCCA", "CBAD"}, {"ABACADBD", "DBCA"},
    };
    EXPECT_EQ(sorted(), "");
    for (const auto& each : cases) {
        core->deleteAllInstances();
        adaptor.clearUndo();
        adaptor.nodes.clear();
        for (const char* name : {"A", "B", "C", "D"})
            place(name);
        for (const char* pair = each.hangs; *pair != '\0'; pair += 2)
            hang({pair[0]}, {pair[1]});
        nodeOf("C", "loose")->setParent(nullptr);
        EXPECT_EQ(sorted(), each.order) << each.hangs;
    }
}

TEST_F(SortingTest, LogsWhatItVisits) {
    place("A");
    place("B");
    hang("A", "B");
    Log::setThreshold(Log::Notice);
    newLog();
    sorted();
    expectInOrder(newLog(),
                  {"Before sort: A\nB\n", "  Node: below B\n", "    Parent: main\n",
                   "  Node: main\n", "    add: B\n", "    add: A\n", "After sort: B\nA\n"});
}

TEST_F(SortingTest, ALongChainIsSorted) {
    Log::setThreshold(Log::Error);
    constexpr int kTools = 1500;
    SceneNode* child = nullptr;
    for (int i = 0; i < kTools; ++i) {
        SceneNode* const node =
            place("T" + std::to_string(i))->getInstance()->createNode("main", kNodeHelper, 0);
        if (child != nullptr)
            child->setParent(node);
        child = node;
    }
    std::vector<PluginInstance*> expected = core->getInstances(true);
    const std::vector<PluginInstance*> order = core->sortForRecording(expected);
    std::reverse(expected.begin(), expected.end());
    EXPECT_TRUE(order == expected);
}

} // namespace
