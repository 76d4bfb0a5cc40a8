#include "core/entry.h"
#include "platform/dialog_templates.h"
#include "platform/headless/desktop.h"
#include "plugins/contract/extension_ids.h"
#include "plugins/instance_reference.h"
#include "recording/record_manager.h"
#include "recording/take_test.h"
#include "support/long_run.h"

#include <cstring>
#include <limits>

namespace MVR::Testing {
namespace {

class ResimulationTest : public TakeTest {
protected:
    Curve resimulate(double from, double to) {
        curve.clear();
        EXPECT_EQ(core->resimulate(from, to), 0);
        EXPECT_FALSE(core->isRecording());
        EXPECT_EQ(countCalls("recordingStarted 1"), countCalls("recordingFinished"));
        EXPECT_EQ(tool->findProperty("Axis")->control, axis) << "it has its own control again";
        return std::exchange(curve, {});
    }

    static void expectCurve(const Curve& result, const Curve& wanted, double factor) {
        ASSERT_EQ(result.size(), wanted.size());
        for (std::size_t i = 0; i < result.size(); ++i) {
            EXPECT_NEAR(result[i].first, wanted[i].first, 1e-9);
            EXPECT_NEAR(result[i].second, wanted[i].second * factor, 1e-9);
        }
    }
};

TEST_F(ResimulationTest, ReproducesTheTakeAndFollowsChangedParameters) {
    const Curve taken = take(4000);
    ASSERT_EQ(taken.size(), 100u);
    const Curve before = stored();
    adaptor.calls.clear();
    core->setSlowMotion(3);
    const Curve first = resimulate(0, 4);
    expectCurve(first, taken, 1);
    EXPECT_EQ(core->getSlowMotion(), 3);
    EXPECT_EQ(adaptor.calls.front(), "beginUndo Resimulating");
    EXPECT_EQ(adaptor.calls.back(), "endUndo");
    EXPECT_EQ(kind->calls.back(), "Probe_01 finishRecording 4.04");
    EXPECT_EQ(Log::getThreshold(), threshold);

    const Curve second = resimulate(0, 4);
    ASSERT_EQ(second.size(), first.size());
    EXPECT_EQ(std::memcmp(second.data(), first.data(), first.size() * sizeof(first[0])), 0);
    EXPECT_EQ(stored(), before) << "a resimulation stores nothing";

    tool->findProperty("Axis")->multiplier = 2;
    expectCurve(resimulate(0, 4), taken, 2);
    const Curve part = resimulate(1, 2);
    expectCurve(part, Curve(taken.begin() + 25, taken.begin() + 50), 2);
}

// At the rates of games and of television, on the host's grid from 0 and from far out.
TEST_F(ResimulationTest, ALongTakeIsTheSameToTheBit) {
    const double length = isLongRun() ? 3600 : 300;
    device->onUpdate = [this] { device->set("X", 100 * std::sin(++sample * 0.05)); };
    core->setAutoExpand(false);
    for (const double rate : {60.0, 30000.0 / 1001}) {
        for (const double near : {0.0, 1000.0}) {
            adaptor.frameRate = rate;
            adaptor.time = std::floor(near * rate) * (1 / rate);
            const double begin = adaptor.time;
            const double end = begin + length;
            adaptor.rangeEnd = end;
            start();
            double due = 0;
            for (std::uint32_t passed = 0; core->isRecording(); due += 1000 / rate)
                for (; passed < due; passed += 10)
                    event(10);
            const Curve taken = std::exchange(curve, {});
            ASSERT_EQ(taken.size(), static_cast<std::size_t>(length * rate)) << rate;
            EXPECT_EQ(resimulate(begin, end), taken) << rate << " from " << begin;
        }
    }
}

TEST_F(ResimulationTest, OffTheGridFramesCountFromTheStart) {
    take(4000);
    const Curve result = resimulate(1.013, 3);
    ASSERT_EQ(result.size(), 49u);
    for (std::size_t i = 0; i < result.size(); ++i)
        EXPECT_EQ(result[i].first, 1.013 + (static_cast<double>(i) + 1) / 25);
}

// Below the tool that offers it, beside it, and above it; written in its step, and when asked for.
TEST_F(ResimulationTest, AControlOfAToolIsReadInTheSameFrame) {
    ScriptedPlugin& source = ScriptedPlugin::add("Source");
    source.properties = {"In"};
    PluginInstance& giver = source.place(*core);
    giver.findProperty("In")->bind(axis);
    giver.findProperty("In")->deadzone = 0;
    CInterface::VirtualControlRecord record;
    record.name = "Doubled";
    record.kindMask = UniDevice::infinite;
    auto* const doubled = reinterpret_cast<UniDevice::Control*>(giver.extend(
        InterfaceExtension::kAddVirtualControl, reinterpret_cast<std::intptr_t>(&record)));
    ASSERT_NE(doubled, nullptr);
    source.onExtend = [](ScriptedTool& each, std::int32_t id, std::intptr_t data) -> std::intptr_t {
        if (id == ToolExtension::kVirtualControl)
            reinterpret_cast<UniDevice::Control*>(data)->setValue(2 * each.read(0));
        return 0;
    };
    tool->findProperty("Axis")->bind(doubled); // placed before its source
    Curve own;
    source.onRecord = [&](ScriptedTool& each, double time) {
        own.emplace_back(time, each.read(0));
        doubled->value = -1; // no other tool may see it in this frame
    };
    const Curve taken = take(4000);
    Curve wanted = std::exchange(own, {});
    for (auto& [time, value] : wanted)
        value *= 2;
    EXPECT_EQ(taken, wanted);
    const auto again = [&] {
        own.clear();
        curve.clear();
        EXPECT_EQ(core->resimulate(0, 4), 0);
        EXPECT_EQ(tool->findProperty("Axis")->control, doubled);
        return std::exchange(curve, {});
    };
    EXPECT_EQ(again(), taken);
    giver.findProperty("In")->multiplier = 3;
    for (auto& [time, value] : wanted)
        value *= 3;
    expectCurve(again(), wanted, 1);
    giver.getReference()->setChecked(false, false); // it isn't in the take: what is stored serves
    EXPECT_EQ(again(), taken);
}

TEST_F(ResimulationTest, AValueThatIsNoNumberIsNeverRead) {
    device->onUpdate = [this] {
        ++sample;
        device->set("X", sample == 3 ? std::nan("") : sample == 4 ? HUGE_VAL : sample);
    };
    const Curve taken = take(400);
    const std::vector<double> wanted{1, 2, 2, 2, 5};
    for (std::size_t i = 0; i < wanted.size(); ++i)
        EXPECT_EQ(taken.at(i).second, wanted[i]);
    EXPECT_EQ(resimulate(0, 0.4), taken);
    const std::string log = Log::getText();
    const std::size_t told = log.find("isn't a number");
    EXPECT_NE(told, std::string::npos);
    EXPECT_EQ(log.find("isn't a number", told + 1), std::string::npos);
}

TEST_F(ResimulationTest, EmptyAndRefusedSpans) {
    take(4000);
    EXPECT_EQ(resimulate(2, 2), Curve());
    EXPECT_EQ(resimulate(3, 2), Curve());
    EXPECT_EQ(kind->calls.back(), "Probe_01 finishRecording 2.04");
    adaptor.calls.clear();
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const std::vector<std::pair<double, double>> spans{
        {0, kInfinity},    {-kInfinity, 0}, {kInfinity, 0},        {0, 1e300},
        {0, std::nan("")}, {0, -kInfinity}, {kInfinity, kInfinity}};
    for (const auto& [from, to] : spans)
        EXPECT_EQ(identifierOf(core->resimulate(from, to)), "RESIMULATE_BADRANGE");
    EXPECT_TRUE(adaptor.calls.empty());
    EXPECT_EQ(resimulate(1e18, 1e18 + 1024).size(), 1u) << "a frame makes no difference there";
    start();
    EXPECT_EQ(identifierOf(core->resimulate(0, 4)), "ALREADYRECORDING");
    EXPECT_TRUE(core->isRecording());
}

TEST_F(ResimulationTest, StopButtonKeepsWhatIsDone) {
    const Curve taken = take(4000);
    const auto record = kind->onRecord;
    kind->onRecord = [&](ScriptedTool& each, double time) {
        record(each, time);
        clock.advance(100);                          // a slow tool: a few frames per slice
        const Tag saved = tool->getInputProfile(""); // as a host that saves the scene meanwhile
        EXPECT_EQ(saved.child("property").child("control").attribute("type"), "X");
    };
    std::vector<std::int32_t> shown;
    Platform::Headless::setUserHook([&](Platform::DialogHandle dialog,
                                        Platform::Headless::ModalEvent) {
        shown.push_back(
            Platform::getProgressPosition(dialog, Platform::ResimulationResource::kProgressBar));
        if (curve.size() > 20)
            Platform::Headless::pressControl(dialog, Platform::ResimulationResource::kStopButton);
    });
    const Curve done = resimulate(0, 4);
    Platform::Headless::setUserHook(nullptr);
    EXPECT_GT(done.size(), 20u);
    EXPECT_LT(done.size(), 40u) << "the loop lives at least every half second";
    expectCurve(done, Curve(taken.begin(), taken.begin() + static_cast<long>(done.size())), 1);
    EXPECT_TRUE(std::is_sorted(shown.begin(), shown.end()));
    EXPECT_GT(shown.back(), 10);
}

TEST_F(ResimulationTest, ToolsAndDevicesMayEndInTheMiddle) {
    const Curve taken = take(4000);
    ScriptedPlugin& other = ScriptedPlugin::add("Other");
    other.properties = {"Axis"};
    PluginInstance* const victim = &other.place(*core);
    const auto record = kind->onRecord;
    kind->onRecord = [&](ScriptedTool& each, double time) {
        record(each, time);
        if (curve.size() == 3)
            victim->getReference()->remove(true);
        if (curve.size() == 5)
            core->stopRecording();
    };
    EXPECT_EQ(core->resimulate(0, 4), 0);
    EXPECT_EQ(curve.size(), 5u);
    EXPECT_EQ(std::count(other.calls.begin(), other.calls.end(), "Other_01 record 0.08"), 1);
    EXPECT_EQ(other.calls.back(), "Other_01 finishRecording 0.12");

    curve.clear();
    kind->onRecord = [&](ScriptedTool& each, double time) { // as a host that is closed meanwhile
        record(each, time);
        EXPECT_EQ(identifierOf(detachCore(core)), "DETACH_NOTNOW");
    };
    EXPECT_EQ(core->resimulate(0, 4), 0);
    EXPECT_EQ(curve.size(), taken.size());

    curve.clear();
    kind->onRecord = [&](ScriptedTool& each, double time) {
        record(each, time);
        device->remove("X");
    };
    EXPECT_EQ(core->resimulate(0, 4), 0);
    expectCurve(curve, taken, 1);
    EXPECT_EQ(tool->findProperty("Axis")->control, nullptr);
    device->onUpdate = nullptr;

    PluginInstance& shy = other.place(*core, "Shy");
    UniDevice::Control* const own = device->add("Y");
    shy.findProperty("Axis")->bind(own);
    other.onStart = [](ScriptedTool& each, double) { each.getInterface()->extend(43, 0); };
    EXPECT_EQ(core->resimulate(0, 4), 0);
    EXPECT_FALSE(shy.isInTree());
    EXPECT_EQ(shy.findProperty("Axis")->control, own) << "undo restores it";
}

} // namespace
} // namespace MVR::Testing
