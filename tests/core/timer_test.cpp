#include "core/services/timer_manager.h"

#include "platform/event_pump.h"
#include "platform/sdk/clock.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace {

using MVR::Platform::HandClock;
using testing::ElementsAre;

class Client : public MVR::Util::TimerManager {
public:
    explicit Client(std::vector<std::string>* events) : events_(events) {}
    void onTimer(std::int32_t id, std::uint32_t now) override {
        events_->push_back(std::to_string(id) + "@" + std::to_string(now));
        if (action)
            action();
    }
    using TimerManager::armTimer;
    using TimerManager::disarmTimer;

    std::function<void()> action;

private:
    std::vector<std::string>* events_;
};

struct TimerTest : testing::Test {
    ~TimerTest() override {
        first.reset();
        second.reset();
        MVR::Util::SingletonCollector::destroyAll();
        MVR::Platform::releasePlatform();
    }
    /// Returns the events of the next milliseconds, pumped at each of them.
    std::vector<std::string> pass(std::uint32_t milliseconds) {
        events.clear();
        for (std::uint32_t passed = 0; passed < milliseconds; ++passed) {
            clock.advance(1);
            MVR::Platform::runDueEvents();
        }
        return events;
    }

    HandClock clock{1000};
    std::vector<std::string> events;
    std::unique_ptr<Client> first = std::make_unique<Client>(&events);
    std::unique_ptr<Client> second = std::make_unique<Client>(&events);
};

TEST_F(TimerTest, TimersRepeatAtWholeMillisecondsUntilTheyAreDisarmed) {
    first->armTimer(123, 0.0019); // one millisecond: the rest is cut off
    EXPECT_THAT(pass(2), ElementsAre("123@1001", "123@1002"));
    first->armTimer(123, 0.002); // the same timer at another interval
    EXPECT_THAT(pass(4), ElementsAre("123@1004", "123@1006"));
    second->disarmTimer(123); // not its own
    first->disarmTimer(7);    // not running
    EXPECT_THAT(pass(2), ElementsAre("123@1008"));
    first->disarmTimer(123);
    EXPECT_THAT(pass(10), ElementsAre());
    for (const double odd : {-1.0, 1e300, std::numeric_limits<double>::quiet_NaN()})
        first->armTimer(9, odd);
}

TEST_F(TimerTest, TheLastClientThatArmsAnIdGetsItsEvents) {
    first->armTimer(1, 0.001);
    std::vector<std::string> others;
    Client taker(&others);
    taker.armTimer(1, 0.001);
    EXPECT_THAT(pass(2), ElementsAre());
    EXPECT_THAT(others, ElementsAre("1@1001", "1@1002"));
}

TEST_F(TimerTest, NoEventReachesAClientThatIsGone) {
    first->armTimer(1, 0.001);
    second->armTimer(2, 0.001);
    first->action = [this] { second.reset(); }; // both are due at once
    EXPECT_THAT(pass(1), ElementsAre("1@1001"));
    first->action = [this] { first->armTimer(1, 0.003); };
    EXPECT_THAT(pass(5), ElementsAre("1@1002", "1@1005"));
    first.reset();
    EXPECT_THAT(pass(5), ElementsAre());
}

} // namespace
