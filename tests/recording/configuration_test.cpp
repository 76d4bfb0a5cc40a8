// A scene that is saved with its takes goes on in another process where it was.

#include "plugins/instance_reference.h"
#include "recording/take_test.h"

#include <cstring>

namespace MVR::Testing {
namespace {

class ConfigurationTest : public TakeTest {
protected:
    /// Ends the core as its process does, and starts another one with the same host's scene.
    void restart() {
        adaptor.clearUndo();
        ASSERT_EQ(detachCore(core), 0);
        libraryUnloading();
        libraryLoaded(Platform::ownModule());
        core = static_cast<CoreImplementation*>(attachAdaptor(&adaptor));
        ASSERT_NE(core, nullptr);
        kind = &ScriptedPlugin::add("Probe");
        kind->properties = {"Axis"};
        kind->onRecord = [this](ScriptedTool& each, double time) {
            curve.emplace_back(time, each.read(0));
        };
        kind->onLoad = [this](ScriptedTool& each) {
            const void* bytes = nullptr;
            const std::int32_t size = each.getInterface()->getSaveData(&bytes);
            block.assign(static_cast<const char*>(bytes), static_cast<std::size_t>(size));
        };
        device = new ScriptedDevice("Box");
        axis = device->add("X");
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
    start();
    pass(4000);
    core->stopRecording();
    const Curve taken = std::exchange(curve, {});
    ASSERT_EQ(taken.size(), 100U);
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

    tool->findProperty("Axis")->multiplier = 2;
    const Curve doubled = resimulate();
    ASSERT_EQ(doubled.size(), before.size());
    for (std::size_t i = 0; i < doubled.size(); ++i)
        EXPECT_EQ(doubled[i], std::make_pair(before[i].first, before[i].second * 2));
    EXPECT_EQ(stored(), keys);

    // A take on top of it: what was before its start stays, and one undo brings the rest back.
    tool->findProperty("Axis")->multiplier = 1;
    device->onUpdate = [this] { device->set("X", 5); };
    adaptor.clearUndo();
    adaptor.time = 2;
    start();
    pass(1000);
    core->stopRecording();
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
    start();
    pass(1000);
    core->stopRecording();
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
