#include "recording/record_manager.h"

#include "core/contract/core_extensions.h"
#include "platform/headless/desktop.h"
#include "plugins/instance_reference.h"
#include "recording/countdown_window.h"
#include "recording/take_test.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <string>
#include <utility>

namespace MVR::Testing {
namespace {

using testing::ElementsAre;

class RecordManagerTest : public TakeTest {};

TEST_F(RecordManagerTest, TakeIsOneUndoStepInOrder) {
    start();
    EXPECT_EQ(Log::getThreshold(), Log::Error);
    EXPECT_EQ(identifierOf(core->startRecording()), "ALREADYRECORDING");
    pass(80);
    EXPECT_TRUE(core->isRecording());
    EXPECT_EQ(core->stopRecording(), 0);
    EXPECT_EQ(core->stopRecording(), 0) << "harmless when nothing runs";
    EXPECT_THAT(adaptor.calls, ElementsAre("beginUndo Record", "recordingStarted 1", "addUndo",
                                           "setTime 0", "setTime 0.04", "setTime 0.08",
                                           "setTime 0.08", "recordingFinished", "endUndo"));
    EXPECT_THAT(kind->calls, ElementsAre("Probe_01 startRecording 0", "Probe_01 record 0.04",
                                         "Probe_01 record 0.08", "Probe_01 finishRecording 0.08"));
    EXPECT_EQ(Log::getThreshold(), threshold);
    EXPECT_EQ(device->updates, 2);
    EXPECT_EQ(device->activations, 1);
    EXPECT_EQ(device->deactivations, 1);
    pass(200);
    EXPECT_EQ(frames(), range(1, 2)) << "the timer is gone";
}

TEST_F(RecordManagerTest, CountsDownBeforeTheFirstFrame) {
    core->setStartCountdown(3);
    adaptor.time = 10;
    adaptor.rangeEnd = 20;
    start();
    const Platform::WindowHandle window = core->getCountdownWindow();
    Platform::Headless::WindowState state;
    ASSERT_TRUE(Platform::Headless::describeWindow(window, state));
    EXPECT_TRUE(state.visible);
    EXPECT_EQ(state.rectangle.left, Platform::Headless::kDesktopWidth / 2 - 32);
    EXPECT_EQ(state.rectangle.bottom, Platform::Headless::kDesktopHeight / 2 + 32);
    std::vector<std::string> texts;
    for (int i = 1; i < 75; ++i) {
        event(40);
        const CountdownFace* const face = getCountdownFace(window);
        ASSERT_NE(face, nullptr);
        EXPECT_NEAR(face->fraction, (75 - i) % 25 / 25.0, 1e-6);
        if (texts.empty() || texts.back() != face->text)
            texts.push_back(face->text);
    }
    EXPECT_THAT(texts, ElementsAre("3", "2", "1"));
    EXPECT_EQ(frames(), range(1, 0));
    EXPECT_EQ(device->updates, 0) << "devices are polled for simulated frames only";
    event(40); // the start time itself
    EXPECT_TRUE(Platform::isWindow(window));
    event(40);
    EXPECT_FALSE(Platform::isWindow(window));
    EXPECT_EQ(frames(), range(251, 251));

    core->stopRecording();
    start();
    const Platform::WindowHandle second = core->getCountdownWindow();
    Platform::destroyWindow(second); // with the host's window
    event(40);
    core->stopRecording();
    EXPECT_EQ(core->getCountdownWindow(), 0);
}

TEST_F(RecordManagerTest, TheGridIsTheSameBelowZero) {
    adaptor.time = -2;
    adaptor.rangeEnd = 1;
    start();
    pass(3000);
    EXPECT_EQ(frames(), range(-49, 25));
    core->stopRecording();
    curve.clear();
    adaptor.time = 0;
    core->setStartCountdown(3);
    start();
    pass(3000);
    EXPECT_EQ(frames(), range(1, 0)) << "the countdown takes three seconds";
    pass(40);
    EXPECT_EQ(frames(), range(1, 1));
}

TEST_F(RecordManagerTest, SlowMotionStretchesTime) {
    core->setAutoExpand(true);
    start();
    long frame = 0;
    for (std::int32_t slowMotion = 1; slowMotion <= 10; ++slowMotion) {
        core->setSlowMotion(slowMotion); // also in a running take
        EXPECT_EQ(core->getSlowMotion(), slowMotion);
        event(40u << (slowMotion - 1));
        EXPECT_EQ(frames(), range(1, ++frame));
    }
    for (const std::int32_t beyond : {0, -2000, 2000, std::numeric_limits<std::int32_t>::min()}) {
        core->setSlowMotion(beyond);
        event(40);
        EXPECT_LE(frames().size(), static_cast<std::size_t>(frame + 3));
        frame = static_cast<long>(frames().size());
    }
    core->setSlowMotion(1);
    event(40);
    EXPECT_EQ(frames(), range(1, frame + 1));
}

TEST_F(RecordManagerTest, EndOfTheRangeStopsOrMoves) {
    adaptor.rangeEnd = 10;
    adaptor.time = 9.92;
    core->setAutoExpand(true);
    start();
    pass(160);
    EXPECT_EQ(frames(), range(249, 252));
    EXPECT_EQ(adaptor.rangeEnd, 20);
    core->stopRecording();

    curve.clear();
    core->setAutoExpand(false);
    adaptor.rangeEnd = 10;
    adaptor.time = 9.92;
    start();
    pass(160);
    EXPECT_FALSE(core->isRecording());
    EXPECT_EQ(frames(), range(249, 250)) << "the frame after the end reaches no tool";
    EXPECT_EQ(adaptor.rangeEnd, 10);
    EXPECT_EQ(kind->calls.back(), "Probe_01 finishRecording 10.04");
}

TEST_F(RecordManagerTest, LateEventsSkipNothing) {
    clock.set(0xFFFFFF00); // the tick wraps after a quarter of a second
    start();
    event(200);
    EXPECT_EQ(frames(), range(1, 3));
    event(45);
    EXPECT_EQ(frames(), range(1, 6)) << "0.08 were left over";
    event(150);
    EXPECT_EQ(frames(), range(1, 9));
    event(50);
    EXPECT_EQ(frames(), range(1, 10)) << "three ran and less than one was left: dropped";
    pass(1000);
    EXPECT_EQ(frames(), range(1, 35));
}

TEST_F(RecordManagerTest, ATakeTellsWhatItIsNot) {
    CoreTakes& takes = *getTakes(*core);
    EXPECT_FALSE(takes.end("nothing runs"));
    // Its controls count what arrives: one sends zeros, one nothing, one has nearly its name.
    UniDevice::Control* const still = device->add("Still");
    UniDevice::Control* const near = device->add("Axes");
    kind->properties = {"Axis", "Zeros", "Lost"};
    PluginInstance& other = kind->place(*core, "Other");
    other.findProperty("Zeros")->bind(still);
    other.findProperty("Lost")->bind(device->add("Axe"));
    device->onUpdate = [&] {
        device->set("X", ++sample);
        still->setValue(0);
        near->setValue(0);
    };
    start();
    event(300); // the host draws
    EXPECT_NEAR(takes.getDelay(), 0.18, 1e-9) << "three of seven frames were simulated";
    EXPECT_LE(Platform::runDueEvents(), 1) << "it may let the core catch up at once";
    pass(40);
    EXPECT_LT(takes.getDelay(), 0.08);
    EXPECT_EQ(frames().size(), 2 * 7u);
    EXPECT_TRUE(takes.end("the user deleted the camera"));
    EXPECT_FALSE(core->isRecording());
    std::vector<std::string> texts;
    for (const CoreTakeNote& note : takes.list())
        texts.push_back(std::to_string(note.kind) + " " + note.text);
    EXPECT_THAT(texts, ElementsAre("5 the user deleted the camera",
                                   "1 no value from Box:Axe:0 for Lost of Other; Axes:0 sent 7",
                                   testing::HasSubstr("2 7 of 7 frames came late, at most by ")));
    take(100);
    EXPECT_THAT(takes.list().front().text, testing::HasSubstr("no value")) << "a list of its own";
}

TEST_F(RecordManagerTest, KeysStopRetakeOrReachTheHost) {
    core->setUnlockedKeys({{65, 1}, {66, 0}, {67, 2}, {300, 0}});
    const auto swallowed = [](std::uint32_t key, bool alt = false) {
        const bool press = Platform::deliverKey(key, true, alt);
        EXPECT_EQ(Platform::deliverKey(key, false, alt), press);
        return press;
    };
    EXPECT_FALSE(swallowed(70)) << "no take runs";
    start();
    EXPECT_TRUE(swallowed(65));
    EXPECT_FALSE(swallowed(66));
    EXPECT_TRUE(swallowed(67));
    EXPECT_FALSE(swallowed(67, true));
    EXPECT_TRUE(swallowed(90)) << "without Ctrl it is no command";
    Platform::deliverKey(kCtrl, true, false);
    EXPECT_FALSE(swallowed(65));
    EXPECT_TRUE(core->isRecording());

    pass(80);
    EXPECT_TRUE(swallowed(90)); // a retake
    EXPECT_TRUE(core->isRecording());
    EXPECT_EQ(countCalls("undo"), 1);
    EXPECT_EQ(countCalls("beginUndo Record"), 2);
    EXPECT_EQ(stored(), Curve());
    Platform::deliverKey(kCtrl, false, false);
    pass(40);
    EXPECT_EQ(adaptor.undoNames(), std::vector<std::string>{"Record"});

    for (const std::uint32_t key : {27u, 32u}) {
        Platform::deliverKey(key, true, false);
        EXPECT_TRUE(core->isRecording()) << "a key acts when it is released";
        Platform::deliverKey(key, false, false);
        EXPECT_FALSE(core->isRecording());
        EXPECT_FALSE(swallowed(70));
        start();
    }
}

TEST_F(RecordManagerTest, UndoRemovesTheTakeAndKeepsEarlierKeys) {
    const Curve seen = take(2000);
    const Curve first = stored();
    ASSERT_EQ(first.size(), 50u);
    EXPECT_EQ(first, seen);

    adaptor.time = 1;
    device->onUpdate = nullptr; // it stops sending: the last value holds
    take(400);
    const Curve second = stored();
    Curve expected(first.begin(), first.begin() + 24); // the key at 1 goes too
    for (int frame = 26; frame <= 35; ++frame)
        expected.emplace_back(frame * 0.04, first.back().second);
    EXPECT_EQ(second, expected);

    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(adaptor.undo());
        EXPECT_EQ(stored(), first);
        EXPECT_TRUE(adaptor.redo());
        EXPECT_EQ(stored(), second);
    }
    // An undo in mid-take: the host first ends the take, between two frames or in one.
    for (const bool isInFrame : {false, true}) {
        kind->onRecord = [&](ScriptedTool&, double) {
            if (isInFrame && stored().size() > second.size() + 3)
                core->stopRecording();
        };
        adaptor.time = 1.4;
        start();
        pass(400);
        EXPECT_EQ(core->isRecording(), !isInFrame);
        EXPECT_GT(stored().size(), second.size());
        core->stopRecording();
        EXPECT_FALSE(adaptor.isUndoOpen());
        EXPECT_TRUE(adaptor.undo());
        pass(400);
        EXPECT_EQ(stored(), second) << "no frame comes late";
    }
    kind->onRecord = nullptr;
    EXPECT_TRUE(adaptor.undo());
    EXPECT_TRUE(adaptor.undo());
    EXPECT_EQ(stored(), Curve());
}

// What tools do from inside their own operations, at the third frame.
TEST_F(RecordManagerTest, ToolsMayActInTheMiddleOfAFrame) {
    ScriptedPlugin& other = ScriptedPlugin::add("Other");
    bool isPumping = false;
    const std::vector<std::function<void(PluginInstance*)>> acts{
        [this](PluginInstance*) { core->stopRecording(); },
        [this](PluginInstance*) {
            core->stopRecording();
            (void)core->startRecording();
        },
        [](PluginInstance* victim) { victim->getReference()->remove(true); },
        [](PluginInstance* victim) { victim->destroy(); },
        [this](PluginInstance*) { tool->extend(43, 0); }, // itself, which its undo step keeps
        [&](PluginInstance*) { // a message box, during which the host's loop goes on
            if (isPumping)
                ADD_FAILURE() << "a frame within a frame";
            isPumping = true;
            pass(100);
            isPumping = false;
        },
    };
    for (std::size_t act = 0; act < acts.size(); ++act) {
        PluginInstance& victim = other.place(*core, "Victim");
        const auto record = std::exchange(kind->onRecord, [&](ScriptedTool& each, double time) {
            curve.emplace_back(time, each.read(0));
            if (curve.size() == 3)
                acts[act](&victim);
        });
        curve.clear();
        adaptor.time = 0;
        start();
        pass(400);
        core->stopRecording();
        EXPECT_GE(curve.size(), 3u) << act;
        const std::vector<long> seen = frames();
        EXPECT_EQ(seen, range(1, static_cast<long>(seen.size()))) << act;
        EXPECT_FALSE(core->isRecording());
        EXPECT_EQ(countCalls("beginUndo Record"), countCalls("recordingFinished"));
        kind->onRecord = record;
        adaptor.clearUndo();
        core->deleteAllInstances();
        tool = &kind->place(*core);
        tool->findProperty("Axis")->bind(axis);
    }
    kind->onStart = [this](ScriptedTool&, double) { core->stopRecording(); };
    start();
    EXPECT_FALSE(core->isRecording());
    EXPECT_EQ(Log::getThreshold(), threshold);
}

// A tool is started and finished once each, or neither, whoever removes it and whenever; a
// destroyed tool just isn't finished.
TEST_F(RecordManagerTest, ToolsMayEndWhileATakeBeginsOrEnds) {
    ScriptedPlugin& other = ScriptedPlugin::add("Other");
    PluginInstance* victim = nullptr;
    const std::vector<std::function<void()>> removals{
        [&] { victim->extend(43, 0); }, // its undo step keeps it
        [&] { victim->getReference()->remove(true); },
        [&] { victim->destroy(); },
    };
    for (const auto& removal : removals)
        for (const std::string moment : {"recordingStarted 2", "start", "finish", "own finish"}) {
            victim = &other.place(*core);
            other.calls.clear();
            bool isDone = false;
            const auto removeOnce = [&](const std::string& now) {
                if (now == moment && !std::exchange(isDone, true))
                    removal();
            };
            adaptor.onCall = removeOnce;
            kind->onStart = [&](ScriptedTool&, double) { removeOnce("start"); };
            kind->onFinish = [&](ScriptedTool&, double) { removeOnce("finish"); };
            if (&removal == &removals.front()) // it must not destroy itself
                other.onFinish = [&](ScriptedTool&, double) { removeOnce("own finish"); };
            start();
            pass(100);
            core->stopRecording();
            const auto count = [&other](const std::string& part) {
                return std::count_if(other.calls.begin(), other.calls.end(), [&](const auto& call) {
                    return call.find(part) != std::string::npos;
                });
            };
            const bool isStarted = moment == "finish" || moment == "own finish";
            const bool isDestroyed = &removal == &removals.back() && moment == "finish";
            EXPECT_EQ(count("startRecording"), isStarted ? 1 : 0) << moment;
            EXPECT_EQ(count("finishRecording"), isStarted && !isDestroyed ? 1 : 0) << moment;
            adaptor.onCall = nullptr;
            kind->onStart = kind->onFinish = other.onFinish = nullptr;
            adaptor.clearUndo();
            core->deleteAllInstances();
            tool = &kind->place(*core);
        }
}

TEST_F(RecordManagerTest, NoTakeBeginsBeforeTheLastOnesStepIsClosed) {
    int refused = 0;
    adaptor.onCall = [&](const std::string& call) {
        if (call != "recordingFinished")
            return;
        refused += identifierOf(core->startRecording()) == "ALREADYRECORDING";
        refused += identifierOf(core->resimulate(0, 1)) == "ALREADYRECORDING";
    };
    kind->onFinish = [this](ScriptedTool&, double) { // a message box, in which the user continues
        Platform::deliverKey(kCtrl, true, false);
        Platform::deliverKey('Z', false, false);
        Platform::deliverKey(kCtrl, false, false);
    };
    take(100);
    EXPECT_EQ(refused, 2);
    EXPECT_FALSE(core->isRecording());
    EXPECT_EQ(countCalls("undo"), 0);
    EXPECT_EQ(countCalls("beginUndo Record"), 1);
}

TEST_F(RecordManagerTest, TimesBeyondReasonEndNowhere) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const double time : {nan, 1e300, -1e300, kInfinity})
        for (const double rate : {25.0, nan, kInfinity, 1e-300, -25.0}) {
            adaptor.time = time;
            adaptor.rangeEnd = rate;
            adaptor.frameRate = rate;
            core->setStartCountdown(3);
            start();
            for (int i = 0; i < 5; ++i)
                event(100);
            core->stopRecording();
            EXPECT_FALSE(core->isRecording());
        }
    adaptor.frameRate = 25;
    adaptor.time = 0;
    adaptor.rangeEnd = 4;
    core->setStartCountdown(0);
    curve.clear();
    start();
    pass(200);
    EXPECT_FALSE(curve.empty());
    EXPECT_EQ(frames(), range(1, static_cast<long>(curve.size())));
}

} // namespace
} // namespace MVR::Testing
