#include "platform/dialogs.h"

#include "platform/event_pump.h"
#include "platform/headless/desktop.h"
#include "platform/sdk/clock.h"
#include "platform/timers.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>

using namespace MVR::Platform;

namespace {

constexpr std::int32_t kProgress = 140;
constexpr std::int32_t kBar = 1070;
constexpr std::int32_t kStop = 1075;

int threadTimerEvents = 0;
void countThreadTimer(TimerId, std::uint32_t) {
    ++threadTimerEvents;
}

/// Works in slices, like a long computation: each slice arms the dialog's timer for the next.
class SlicedWork : public DialogLogic {
public:
    void onOpen(DialogHandle dialog) override {
        calls += "open ";
        setProgressRange(dialog, kBar, 0, slices);
        centreOnOwner(dialog);
        show(dialog);
        postMessage(dialog, 1480);
    }
    void onMessage(DialogHandle dialog, std::uint32_t message) override {
        EXPECT_EQ(message, 1480u);
        step(dialog);
    }
    void onTimer(DialogHandle dialog, std::uint32_t timerId) override {
        EXPECT_EQ(timerId, 7u);
        EXPECT_TRUE(killDialogTimer(dialog, timerId));
        step(dialog);
    }
    void onCommand(DialogHandle dialog, std::int32_t control) override {
        calls += "stop ";
        EXPECT_EQ(control, kStop);
        setDialogTimer(dialog, 7, 1);
        postMessage(dialog, 1480);
        EXPECT_TRUE(endDialog(dialog, 2));
        EXPECT_FALSE(endDialog(dialog, 3));
    }

    int slices = 3;
    std::function<void(DialogHandle)> inSlice;
    std::string calls;

private:
    void step(DialogHandle dialog) {
        setProgressPosition(dialog, kBar, ++done_);
        calls += std::to_string(getProgressPosition(dialog, kBar)) + " ";
        if (inSlice)
            inSlice(dialog);
        if (done_ < slices)
            setDialogTimer(dialog, 7, 1);
        else
            endDialog(dialog, 1);
    }

    int done_ = 0;
};

class Dialogs : public testing::Test {
protected:
    void TearDown() override {
        EXPECT_TRUE(Headless::windows().empty());
        releasePlatform();
    }
    HandClock clock_;
};

TEST_F(Dialogs, AModalLoopRunsItsDialogAndTheThreadTimers) {
    SlicedWork work;
    threadTimerEvents = 0;
    setTimer(0, 1, countThreadTimer);
    work.inSlice = [](DialogHandle dialog) {
        Headless::WindowState state;
        ASSERT_TRUE(Headless::describeWindow(dialog, state));
        EXPECT_TRUE(state.visible);
        EXPECT_EQ(state.rectangle.left + state.rectangle.right, Headless::kDesktopWidth);
        EXPECT_EQ(getControlText(dialog, kStop), "Stop");
        EXPECT_TRUE(setControlText(dialog, kStop, "Halt"));
        EXPECT_EQ(getControlText(dialog, kStop), "Halt");
        setControlText(dialog, kStop, "Stop");
        setProgressPosition(dialog, kBar, 99);
        EXPECT_EQ(getProgressPosition(dialog, kBar), 3);
        EXPECT_FALSE(setProgressPosition(dialog, kStop, 1));
        EXPECT_FALSE(setControlText(dialog, 5, ""));
        EXPECT_FALSE(destroyWindow(dialog));
    };
    EXPECT_EQ(runModalDialog(kProgress, 0, work), 1);
    EXPECT_EQ(work.calls, "open 1 2 3 ");
    EXPECT_EQ(threadTimerEvents, 2);
    EXPECT_EQ(runModalDialog(9999, 0, work), -1);
}

TEST_F(Dialogs, TheUserStopsOneAndNothingOfItComesLater) {
    SlicedWork work;
    work.slices = 1000;
    int turns = 0;
    Headless::setUserHook([&](DialogHandle dialog, Headless::ModalEvent event) {
        EXPECT_EQ(Headless::dialogResource(dialog), kProgress);
        EXPECT_EQ(turns == 0, event == Headless::ModalEvent::Opened);
        if (++turns == 4) {
            EXPECT_FALSE(Headless::pressControl(dialog, kBar));
            EXPECT_TRUE(Headless::pressControl(dialog, kStop));
        }
    });
    EXPECT_EQ(runModalDialog(kProgress, 0, work), 2);
    EXPECT_EQ(work.calls, "open 1 2 stop ");
    EXPECT_EQ(runDueEvents(), -1) << "the message and the timer that it left";
    EXPECT_EQ(work.calls, "open 1 2 stop ");
}

TEST_F(Dialogs, NestAndTheInnerCoversTheOuter) {
    SlicedWork outer;
    SlicedWork inner;
    inner.inSlice = [&](DialogHandle dialog) {
        const auto open = Headless::openDialogs();
        ASSERT_EQ(open.size(), 2u);
        EXPECT_EQ(open[1], dialog);
        EXPECT_FALSE(Headless::pressControl(open[0], kStop));
    };
    outer.inSlice = [&](DialogHandle dialog) {
        outer.inSlice = nullptr;
        EXPECT_EQ(runModalDialog(kProgress, dialog, inner), 1);
        EXPECT_EQ(Headless::openDialogs().size(), 1u);
    };
    EXPECT_EQ(runModalDialog(kProgress, 0, outer), 1);
    EXPECT_EQ(outer.calls + inner.calls, "open 1 2 3 open 1 2 3 ");
}

class Idle : public DialogLogic {
public:
    void onOpen(DialogHandle) override {}
};

class PostsToItself : public DialogLogic {
public:
    void onOpen(DialogHandle dialog) override { postMessage(dialog, 1); }
    void onMessage(DialogHandle dialog, std::uint32_t message) override {
        postMessage(dialog, message + 1);
    }
    void onTimer(DialogHandle dialog, std::uint32_t) override { endDialog(dialog, 5); }
};

TEST_F(Dialogs, AMessageThatPostsTheNextLeavesRoomForTimers) {
    PostsToItself logic;
    int turns = 0;
    Headless::setUserHook([&](DialogHandle dialog, Headless::ModalEvent) {
        if (++turns == 10) {
            setDialogTimer(dialog, 1, 1);
            clock_.advance(1);
        }
    });
    EXPECT_EQ(runModalDialog(kProgress, 0, logic), 5);
    EXPECT_EQ(turns, 10);
}

TEST_F(Dialogs, OneThatNobodyCanEndEnds) {
    Idle idle;
    EXPECT_EQ(runModalDialog(kProgress, 0, idle), -1);

    ASSERT_TRUE(registerWindowClass("Owner", [](WindowHandle, std::uint32_t, std::intptr_t,
                                                std::intptr_t) { return std::intptr_t(0); }));
    const WindowHandle owner = createWindow({.windowClass = "Owner"});
    Headless::setUserHook([&](DialogHandle, Headless::ModalEvent) { destroyWindow(owner); });
    EXPECT_EQ(runModalDialog(kProgress, owner, idle), -1);
}

} // namespace
