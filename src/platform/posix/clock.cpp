#include "platform/sdk/clock.h"

#include <cassert>
#include <chrono>

namespace MVR::Platform {

namespace {

HandClock* handClock = nullptr;

UtcTime toUtcTime(std::chrono::sys_time<std::chrono::milliseconds> time) {
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(std::chrono::floor<std::chrono::seconds>(time - day));
    return {int(date.year()),
            std::int32_t(unsigned(date.month())),
            std::int32_t(unsigned(date.day())),
            std::int32_t(clock.hours().count()),
            std::int32_t(clock.minutes().count()),
            std::int32_t(clock.seconds().count())};
}

} // namespace

std::uint32_t tickMs() {
    if (handClock)
        return handClock->tick_;
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return std::uint32_t(std::chrono::duration_cast<std::chrono::milliseconds>(sinceStart).count());
}

UtcTime utcNow() {
    using std::chrono::milliseconds;
    if (handClock)
        return toUtcTime(std::chrono::sys_time<milliseconds>(milliseconds(handClock->utcMs_)));
    return toUtcTime(std::chrono::floor<milliseconds>(std::chrono::system_clock::now()));
}

HandClock::HandClock(std::uint32_t tick, std::int64_t utcMs) : tick_(tick), utcMs_(utcMs) {
    assert(!handClock && "one hand clock at a time");
    handClock = this;
}

HandClock::~HandClock() {
    handClock = nullptr;
}

void HandClock::advance(std::uint32_t ms) {
    tick_ += ms;
    utcMs_ += ms;
}

void HandClock::set(std::uint32_t tick) {
    tick_ = tick;
}

HandClock* HandClock::current() {
    return handClock;
}

} // namespace MVR::Platform
