// What tools, devices and adaptors may do wrong without harm to a take.
#include "core/contract/core_extensions.h"
#include "core/entry.h"
#include "core/services/core_services.h"
#include "plugins/contract/extension_ids.h"
#include "plugins/instance_reference.h"
#include "recording/take_test.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace MVR::Testing {
namespace {

using testing::HasSubstr;
using testing::Not;

[[noreturn]] void fail() {
    throw std::runtime_error("broken");
}

class BorderTest : public TakeTest {
protected:
    void SetUp() override {
        TakeTest::SetUp();
        (void)logged();
    }

    /// Returns what the log got since the last call.
    std::string logged() {
        const std::string text = Log::getText();
        return text.substr(std::exchange(logEnd_, text.size()));
    }

    static std::ptrdiff_t count(const ScriptedPlugin& plugin, const std::string& call) {
        return std::count_if(
            plugin.calls.begin(), plugin.calls.end(),
            [&](const std::string& each) { return each.find(" " + call) != std::string::npos; });
    }

private:
    std::size_t logEnd_ = 0;
};

TEST_F(BorderTest, AToolThatThrowsSitsOutTheRestOfTheTake) {
    struct Case {
        const char* operation;
        std::ptrdiff_t records; // of ten
    };
    const Case cases[] = {
        {"startRecording", 0}, {"record", 5}, {"finishRecording", 10}, {"extend(40)", 4}};
    ScriptedPlugin& other = ScriptedPlugin::add("Other");
    other.place(*core);
    const std::string* broken = nullptr;
    const auto throwIf = [&broken](const char* operation) {
        if (broken != nullptr && *broken == operation)
            fail();
    };
    CInterface::VirtualControlRecord record{"v", 0, UniDevice::finite};
    tool->extend(InterfaceExtension::kAddVirtualControl, reinterpret_cast<std::intptr_t>(&record));
    kind->onStart = [&](ScriptedTool&, double) { throwIf("startRecording"); };
    kind->onRecord = [&](ScriptedTool&, double) {
        if (count(*kind, "record") == 5)
            throwIf("record");
    };
    kind->onFinish = [&](ScriptedTool&, double) { throwIf("finishRecording"); };
    kind->onExtend = [&](ScriptedTool&, std::int32_t id, std::intptr_t) {
        kind->calls.push_back(" extend " + std::to_string(id));
        if (id == ToolExtension::kVirtualControl && count(*kind, "extend 40") == 5)
            throwIf("extend(40)");
        return 0;
    };
    for (const Case& c : cases) {
        const std::string operation = c.operation;
        broken = &operation;
        adaptor.time = 0;
        for (ScriptedPlugin* plugin : {kind, &other})
            plugin->calls.clear();
        (void)take(400);
        const std::string log = logged();
        EXPECT_EQ(count(other, "record"), 10) << operation;
        EXPECT_EQ(count(*kind, "record"), c.records) << operation;
        EXPECT_EQ(count(*kind, "finishRecording"), 1) << operation;
        EXPECT_LE(count(*kind, "extend 40"), operation == "extend(40)" ? 5 : 10) << operation;
        EXPECT_EQ(stored().size(), 10u) << "its input is kept";
        EXPECT_THAT(log, HasSubstr("The tool Probe_01 (Probe of Core) threw in " + operation +
                                   ": broken\n"));
        const std::vector<CoreTakeNote> notes = getTakes(*core)->list();
        EXPECT_EQ(std::count_if(notes.begin(), notes.end(),
                                [](const CoreTakeNote& note) {
                                    return note.kind == CoreTakeNote::kToolFault &&
                                           note.tool == "Probe_01";
                                }),
                  1)
            << operation;
    }
    broken = nullptr;
    kind->calls.clear();
    (void)take(400);
    EXPECT_EQ(count(*kind, "record"), 10) << "it is back in the next take";
    EXPECT_THAT(logged(), Not(HasSubstr("threw")));
}

TEST_F(BorderTest, AToolThatIsDrivenByOneThatThrowsGoesOnFromItsStoredInput) {
    ScriptedPlugin& source = ScriptedPlugin::add("Source");
    PluginInstance& driving = source.place(*core);
    CInterface::VirtualControlRecord record{"v", 0, UniDevice::infinite};
    auto* const out = reinterpret_cast<UniDevice::Control*>(driving.extend(
        InterfaceExtension::kAddVirtualControl, reinterpret_cast<std::intptr_t>(&record)));
    tool->findProperty("Axis")->bind(out);
    double step = 1;
    source.onExtend = [&](ScriptedTool&, std::int32_t id, std::intptr_t) {
        if (id == ToolExtension::kVirtualControl)
            out->setValue(out->value + step);
        return 0;
    };
    const Curve taken = take(400);
    out->resetValues();
    step = 100;
    int frames = 0;
    source.onRecord = [&](ScriptedTool&, double) {
        if (++frames == 3)
            fail();
    };
    curve.clear();
    EXPECT_EQ(core->resimulate(0, 0.4), 0);
    ASSERT_GE(curve.size(), 10u);
    EXPECT_EQ(curve[2].second, 300);
    for (std::size_t i = 3; i < 10; ++i)
        EXPECT_EQ(curve[i].second, taken[i].second) << i;
    EXPECT_EQ(tool->findProperty("Axis")->control, out) << "its own again";
}

TEST_F(BorderTest, AToolThatThrowsWhileItIsMadeIsRefused) {
    const auto tools = [this] { return core->getInstances(false).size(); };
    const std::size_t before = tools();
    const Tag scene = core->getConfiguration();
    for (auto act : {&ScriptedPlugin::onInit, &ScriptedPlugin::onCreate}) {
        kind->*act = [](ScriptedTool&) { fail(); };
        EXPECT_EQ(core->createByType("Probe", "", false), nullptr);
        kind->*act = nullptr;
        EXPECT_THAT(logged(),
                    HasSubstr(act == &ScriptedPlugin::onInit ? "threw in init: broken"
                                                             : "threw in create: broken"));
    }
    kind->onLoad = [](ScriptedTool&) { fail(); };
    core->loadConfiguration(scene);
    EXPECT_THAT(logged(), HasSubstr("threw in load: broken"));
    EXPECT_EQ(tools(), before);
    kind->onSave = [](ScriptedTool&) { fail(); };
    EXPECT_THAT(core->getConfiguration().toText("", "", ""), Not(HasSubstr("<savedata")));
    kind->onExtend = [](ScriptedTool&, std::int32_t, std::intptr_t) -> std::intptr_t { fail(); };
    tool->getReference()->destroy();
    EXPECT_EQ(tools(), before - 1);
    EXPECT_FALSE(adaptor.isUndoOpen());
}

struct Lens final : LensSnapshot {
    double getFocalLengthMm() override { return 35; }
    void setFocalLengthMm(double) override { ++writes; }
    double getFocusDistance() override { return 1; }
    void setFocusDistance(double) override {}
    double getFNumber() override { return 2; }
    void setFNumber(double) override {}
    void release() override { ++releases; }
    int writes = 0;
    int releases = 0;
};

TEST_F(BorderTest, ASnapshotThatIsNeverGivenBackIsEnded) {
    TestNode& node = adaptor.makeNode("Head", nullptr, tool);
    Lens lens;
    node.lens = &lens;
    node.mesh.vertices.resize(1);
    LensSnapshot* late = nullptr;
    kind->onRecord = [&](ScriptedTool& each, double time) {
        EXPECT_EQ(node.snapshots, 0) << "one of a kind may be out";
        CInterface& access = *each.getInterface();
        const double position[3] = {time, 0, 0};
        access.getSnapshot(&node, time)->setPosition(position);
        access.getHelperSnapshot(&node);
        access.getMeshSnapshot(&node, time);
        access.nodeQuery3(&node);
        late = LensSnapshot::fromHandle(access.getLensSnapshot(&node, time));
        late->setFocalLengthMm(50);
    };
    (void)take(1000);
    EXPECT_EQ(node.positions.size(), 25u);
    EXPECT_EQ(node.snapshots, 0);
    EXPECT_EQ(lens.releases, 25);
    EXPECT_EQ(lens.writes, 25);
    late->setFocalLengthMm(50);
    late->release();
    EXPECT_EQ(lens.writes, 25) << "it is gone";
    EXPECT_EQ(lens.releases, 25);
    const std::string log = logged();
    const std::size_t told =
        log.find(") gave nothing back in record, so the lens of node Head, the "
                 "helper of node Head, the transform of node Head is ended\n");
    ASSERT_NE(told, std::string::npos) << log;
    EXPECT_EQ(log.find("gave nothing back", told + 20), std::string::npos) << "told once a take";

    kind->onRecord = [&](ScriptedTool& each, double time) {
        (void)each.getInterface()->getSnapshot(&node, time);
        each.getInterface()->destroyNode(&node, 0);
    };
    (void)take(40);
    EXPECT_THAT(logged(), Not(HasSubstr("gave nothing back"))) << "it went with the node";
}

TEST_F(BorderTest, WhatAnAdaptorThrowsOrListsWronglyEndsInALine) {
    adaptor.makeNode("Head", nullptr, tool);
    adaptor.listsNull = true;
    for (const char* call : {"recordingStarted 1", "setTime 0.2", "recordingFinished", "redraw"}) {
        adaptor.onCall = [call](const std::string& each) {
            if (each == call)
                throw 1;
        };
        adaptor.time = 0;
        EXPECT_EQ(take(400).size(), 10u) << call;
        EXPECT_EQ(core->resimulate(0, 0.4), 0);
        curve.clear();
        const std::string name = std::string(call).substr(0, std::string(call).find(' '));
        if (name == "redraw")
            core->getRoot()->getServices()->getAdaptor()->redraw();
        const std::string log = logged();
        EXPECT_THAT(log, HasSubstr("The adaptor threw in " + name + ": something"));
        EXPECT_THAT(log, HasSubstr("The adaptor returned a null node in getNodes\n"));
        EXPECT_FALSE(core->isRecording());
    }
    adaptor.onCall = nullptr;
    (void)core->getConfiguration();
    (void)core->getDetachedConfiguration();
    tool->getReference()->setLowPolyVisible(false);
    tool->getReference()->remove(true);
}

TEST_F(BorderTest, AHostMayEndToolsWheneverItIsAsked) {
    ScriptedPlugin& other = ScriptedPlugin::add("Other");
    const auto fill = [&] {
        adaptor.onNodes = nullptr;
        core->deleteAllInstances();
        for (int i = 0; i < 4; ++i)
            other.place(*core);
        adaptor.clearUndo();
        adaptor.onNodes = [this, left = 2]() mutable {
            if (--left == 0)
                core->deleteAllInstances();
        };
    };
    const std::function<void()> acts[] = {
        [this] { (void)core->getConfiguration(); },
        [this] { (void)core->getDetachedConfiguration(); },
        [this] { EXPECT_TRUE(getTools(*core)->list().empty()); },
        [this] { core->getRoot()->setLowPolyVisible(false); },
        [this] { (void)take(40); },
    };
    for (const std::function<void()>& act : acts) {
        fill();
        act();
        EXPECT_TRUE(core->getInstances(false).empty());
    }
    adaptor.onNodes = nullptr;
}

TEST_F(BorderTest, DetachFromInsideACallChangesNothing) {
    int refusals = 0;
    const auto refuse = [&] {
        EXPECT_EQ(identifierOf(detachCore(core)), "DETACH_NOTNOW");
        ++refusals;
    };
    const std::vector<std::string> calls{"setTime 0.04", "recordingStarted 1", "recordingFinished",
                                         "endUndo", "beginUndo Record"};
    for (const std::string& call : calls) {
        refusals = 0;
        adaptor.onCall = [&](const std::string& each) {
            if (each == call)
                refuse();
        };
        adaptor.time = 0;
        EXPECT_EQ(take(400).size(), 10u) << call;
        EXPECT_EQ(refusals, 1) << call;
    }
    adaptor.onCall = nullptr;
    refusals = 0;
    device->onUpdate = refuse;
    (void)take(400);
    device->onUpdate = nullptr;
    EXPECT_EQ(refusals, 10);

    adaptor.onCall = [&](const std::string& each) {
        if (each == "detachNotify")
            refuse();
    };
    adaptor.clearUndo();
    EXPECT_EQ(detachCore(core), 0);
    EXPECT_EQ(refusals, 11);
    adaptor.onCall = nullptr;
    core = static_cast<CoreImplementation*>(attachAdaptor(&adaptor));
    ASSERT_NE(core, nullptr) << "no call was left open";
}

} // namespace
} // namespace MVR::Testing
