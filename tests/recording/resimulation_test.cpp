#include "core/entry.h"
#include "platform/dialog_templates.h"
#include "platform/headless/desktop.h"
#include "plugins/instance_reference.h"
#include "recording/record_manager.h"
#include "recording/take_test.h"

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
        EXPECT_EQ(identifierOf(detachCore(core)), "ALREADYRECORDING");
    };
    EXPECT_EQ(core->resimulate(0, 4), 0);
    EXPECT_EQ(curve.size(), 1u);

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
