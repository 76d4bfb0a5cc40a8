// A scene that is saved with its takes continues in another process.

#include "plugins/instance_reference.h"
#include "recording/take_test.h"

#include <cstring>

namespace MVR::Testing {
namespace {

class ConfigurationTest : public TakeTest {
protected:
    /// Ends the core as its process does, and starts another one with the same host's scene.
    void restart() {
        CoreTest::TearDown();
        CoreTest::SetUp();
        makeKindAndDevice();
        kind->onLoad = [this](ScriptedTool& each) { block = each.readSaveData(); };
    }
    void load(const Tag& configuration) {
        core->loadConfiguration(configuration);
        ASSERT_EQ(core->getInstances(false).size(), 1U);
        tool = core->getInstances(false)[0];
    }
    Curve resimulate() {
        curve.clear();
        EXPECT_EQ(core->resimulate(0, 4), 0);
        return std::exchange(curve, {});
    }
    static bool isSame(const Curve& a, const Curve& b) {
        return a.size() == b.size() &&
               std::memcmp(a.data(), b.data(), a.size() * sizeof(a[0])) == 0;
    }

    std::string block; // that a tool found when it was loaded
};

TEST_F(ConfigurationTest, ATakeIsSimulatedToTheSameBytesInAnotherProcess) {
    kind->onSave = [](ScriptedTool& each) { each.getInterface()->setSaveData("\0block", 6); };
    tool->createNode("Node", 0, 0);
    ASSERT_EQ(take(4000).size(), 100U);
    const Curve keys = stored();
    const Curve before = resimulate();
    const std::string text = core->getConfiguration().toText("\n", "\t", "");

    restart();
    load(Tag(text));
    EXPECT_EQ(block, std::string("\0block", 6));
    EXPECT_EQ(tool->getName(), "Probe_01");
    EXPECT_EQ(adaptor.nodes.size(), 1U) << "its node is the one that it had";
    EXPECT_EQ(adaptor.nodes[0]->getOwner(), tool);
    EXPECT_EQ(tool->findProperty("Axis")->control, axis);
    EXPECT_EQ(stored(), keys);
    EXPECT_TRUE(isSame(resimulate(), before));
    EXPECT_EQ(core->getConfiguration().toText("\n", "\t", ""), text)
        << "and a block that the tool leaves as it is stays";

    // A take on top of it: the keys before its start stay, and one undo restores the rest.
    device->onUpdate = [this] { device->set("X", 5); };
    adaptor.clearUndo();
    adaptor.time = 2;
    take(1000);
    const Curve mixed = stored();
    EXPECT_EQ(mixed[48], keys[48]);
    EXPECT_EQ(mixed[49], std::make_pair(2.04, 5.0)) << "the key at its start goes";
    EXPECT_EQ(mixed.back().second, 5);
    ASSERT_EQ(adaptor.undoNames().size(), 1U);
    adaptor.undo();
    EXPECT_EQ(stored(), keys);
    device->onUpdate = nullptr;
}

TEST_F(ConfigurationTest, WhatHasNoNodeIsKeptBesideTheScene) {
    take(1000);
    const Curve keys = stored();
    const std::string text = core->getDetachedConfiguration().toText("", "", "");
    restart();
    load(Tag(text));
    EXPECT_EQ(stored(), keys);
    EXPECT_EQ(core->getDetachedConfiguration().toText("", "", ""), text);
    tool->createNode("Node", 0, 0);
    EXPECT_EQ(core->getDetachedConfiguration().toText("", "", ""), "<MVR/>");
}

} // namespace
} // namespace MVR::Testing
