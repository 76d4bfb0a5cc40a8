#include "platform/timers.h"

#include "platform/event_pump.h"
#include "platform/sdk/clock.h"

#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

using namespace MVR::Platform;

namespace {

class Timers : public testing::Test {
protected:
    void TearDown() override {
        releasePlatform();
        fired().clear();
        actions().clear();
    }

    static std::vector<TimerId>& fired() {
        static std::vector<TimerId> ids;
        return ids;
    }
    static std::map<TimerId, std::function<void()>>& actions() {
        static std::map<TimerId, std::function<void()>> byId;
        return byId;
    }
    static void onTimer(TimerId id, std::uint32_t tick) {
        EXPECT_EQ(tick, tickMs());
        fired().push_back(id);
        if (const auto action = actions().find(id); action != actions().end())
            action->second();
    }
    static std::vector<TimerId> runAt(HandClock& clock, std::uint32_t ms) {
        fired().clear();
        clock.advance(ms);
        runDueEvents();
        return fired();
    }
    using Ids = std::vector<TimerId>;
};

TEST_F(Timers, FireInOrderOfDueTimeOnceHoweverLateAndKeepTheirGrid) {
    HandClock clock(1000);
    EXPECT_EQ(runDueEvents(), -1);
    const TimerId slow = setTimer(0, 30, onTimer);
    const TimerId fast = setTimer(0, 10, onTimer);
    const TimerId zero = setTimer(0, 0, onTimer);
    EXPECT_EQ(runDueEvents(), 1);
    EXPECT_EQ(runAt(clock, 1), Ids{zero});
    EXPECT_TRUE(killTimer(zero));
    EXPECT_FALSE(killTimer(zero));
    EXPECT_EQ(runAt(clock, 34), (Ids{fast, slow}));
    EXPECT_EQ(runDueEvents(), 5);
    EXPECT_EQ(runAt(clock, 5), Ids{fast});
    // Equal due times: the one set first.
    EXPECT_EQ(runAt(clock, 20), (Ids{fast, slow}));
}

TEST_F(Timers, SettingARunningOneRestartsItsPeriodAndAnUnknownIdMakesANewOne) {
    HandClock clock;
    const TimerId id = setTimer(0, 100, onTimer);
    clock.advance(90);
    EXPECT_EQ(setTimer(id, 50, onTimer), id);
    EXPECT_EQ(runAt(clock, 49), Ids{});
    EXPECT_EQ(runAt(clock, 1), Ids{id});
    EXPECT_TRUE(killTimer(id));
    const TimerId other = setTimer(id, 10, onTimer);
    EXPECT_NE(other, id);
    EXPECT_NE(other, 0u);
    EXPECT_EQ(runAt(clock, 10), Ids{other});
}

TEST_F(Timers, CallbacksMayKillSetAndRunThePump) {
    HandClock clock;
    const TimerId first = setTimer(0, 10, onTimer);
    const TimerId second = setTimer(0, 10, onTimer);
    const TimerId third = setTimer(0, 10, onTimer);
    TimerId added = 0;
    actions()[first] = [&] {
        killTimer(second);
        setTimer(third, 5, onTimer);
        added = setTimer(0, 1, onTimer);
        killTimer(first);
    };
    EXPECT_EQ(runAt(clock, 10), Ids{first});
    EXPECT_EQ(runAt(clock, 5), (Ids{added, third}));
    killTimer(added);

    const TimerId fourth = setTimer(0, 5, onTimer);
    actions()[third] = [] { runDueEvents(); };
    EXPECT_EQ(runAt(clock, 5), (Ids{third, fourth}));
}

TEST_F(Timers, GoOnOverTheWrapOfTheTickAndAfterAClockThatWasSetBack) {
    HandClock clock(0xFFFFFFFB);
    const TimerId id = setTimer(0, 10, onTimer);
    EXPECT_EQ(runAt(clock, 9), Ids{});
    EXPECT_EQ(tickMs(), 4u);
    EXPECT_EQ(runAt(clock, 1), Ids{id});
    EXPECT_EQ(runDueEvents(), 10);
    clock.set(0);
    EXPECT_EQ(runAt(clock, 0), Ids{id});
    EXPECT_LE(runDueEvents(), 10);
}

TEST_F(Timers, WaitingMovesTheHandClockToTheNextTimerOrTheBound) {
    HandClock clock;
    waitForEvents(-1);
    EXPECT_EQ(tickMs(), 0u);
    waitForEvents(7);
    EXPECT_EQ(tickMs(), 7u);
    const TimerId id = setTimer(0, 40, onTimer);
    waitForEvents(15);
    EXPECT_EQ(tickMs(), 22u);
    waitForEvents(-1);
    EXPECT_EQ(runAt(clock, 0), Ids{id});
    EXPECT_EQ(tickMs(), 47u);
}

TEST_F(Timers, RunOnTheRealClock) {
    const std::uint32_t start = tickMs();
    setTimer(0, 2, onTimer);
    while (fired().size() < 3) {
        waitForEvents(-1);
        runDueEvents();
    }
    EXPECT_GE(tickMs() - start, 6u);
}

TEST(Clock, HandClockMovesTheDateWithItAndRestoresTheRealClock) {
    const auto text = [](const UtcTime& t) {
        std::string joined;
        for (std::int32_t part : {t.year, t.month, t.day, t.hour, t.minute, t.second})
            joined += std::to_string(part) + " ";
        return joined;
    };
    {
        HandClock clock(0, 1709251199000); // the last second of a leap day
        EXPECT_EQ(text(utcNow()), "2024 2 29 23 59 59 ");
        clock.set(5000);
        EXPECT_EQ(text(utcNow()), "2024 2 29 23 59 59 ");
        clock.advance(1000);
        EXPECT_EQ(text(utcNow()), "2024 3 1 0 0 0 ");
        EXPECT_EQ(tickMs(), 6000u);
    }
    EXPECT_EQ(HandClock::current(), nullptr);
    EXPECT_GT(utcNow().year, 2024);
}

} // namespace
