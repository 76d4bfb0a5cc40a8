#include "platform/timers.h"

#include "platform/headless/state.h"
#include "platform/sdk/clock.h"

#include <algorithm>

namespace MVR::Platform {

namespace {

using Headless::Timer;

Timer* findTimer(TimerId id) {
    std::vector<Timer>& timers = Headless::getState().timers;
    const auto found = std::find_if(timers.begin(), timers.end(),
                                    [&](const Timer& timer) { return timer.id == id; });
    return found != timers.end() ? &*found : nullptr;
}

/// Returns 0 or more if the timer is due. A clock that was set back makes all timers due: better
/// once too early than 49 days too late.
std::int64_t overdueMs(const Timer& timer, std::uint32_t now) {
    return std::int64_t(now - timer.startTick) - timer.intervalMs;
}

/// Sorted by due time; of equals the one that was set first comes first.
std::vector<TimerId> listDueTimers() {
    const std::uint32_t now = tickMs();
    std::vector<Timer> due = Headless::getState().timers;
    std::erase_if(
        due, [&](const Timer& timer) { return overdueMs(timer, now) < 0; });
    std::stable_sort(due.begin(), due.end(), [&](const Timer& a, const Timer& b) {
        return overdueMs(a, now) > overdueMs(b, now);
    });
    std::vector<TimerId> ids;
    for (const Timer& timer : due)
        ids.push_back(timer.id);
    return ids;
}

void fire(Timer& timer, std::uint32_t now) {
    // Drop missed periods, keep the grid.
    timer.startTick += (now - timer.startTick) / timer.intervalMs * timer.intervalMs;
    const Timer copy = timer; // the call may end the timer
    if (copy.callback)
        copy.callback(copy.id, now);
    else if (Headless::Dialog* dialog = Headless::findDialog(copy.dialog))
        dialog->logic->onTimer(copy.dialog, copy.dialogTimerId);
}

} // namespace

TimerId setTimer(TimerId existingOrZero, std::uint32_t intervalMs, TimerCallback callback) {
    const bool isRunning = killTimer(existingOrZero);
    return Headless::addTimer(isRunning ? existingOrZero : Headless::unusedTimerId(), intervalMs,
                              callback, 0, 0);
}

bool killTimer(TimerId id) {
    return std::erase_if(
               Headless::getState().timers,
               [&](const Timer& timer) { return timer.id == id && timer.dialog == 0; }) != 0;
}

namespace Headless {

TimerId unusedTimerId() {
    TimerId& last = getState().lastTimer;
    do {
        ++last;
    } while (last == 0 || findTimer(last));
    return last;
}

TimerId addTimer(TimerId id, std::uint32_t intervalMs, TimerCallback callback, DialogHandle dialog,
                 std::uint32_t dialogTimerId) {
    intervalMs = std::clamp(intervalMs, std::uint32_t(1), kLongestIntervalMs);
    getState().timers.push_back({id, tickMs(), intervalMs, callback, dialog, dialogTimerId});
    return id;
}

void runDueTimers() {
    for (TimerId id : listDueTimers()) {
        // A timer before it may have killed it, set it anew, or run the pump.
        const std::uint32_t now = tickMs();
        Timer* timer = findTimer(id);
        if (timer && overdueMs(*timer, now) >= 0)
            fire(*timer, now);
    }
}

std::int32_t msUntilTimer() {
    const std::uint32_t now = tickMs();
    std::int64_t next = -1;
    for (const Timer& timer : getState().timers) {
        const std::int64_t wait = std::max<std::int64_t>(-overdueMs(timer, now), 0);
        next = next < 0 ? wait : std::min(next, wait);
    }
    return std::int32_t(next);
}

} // namespace Headless

} // namespace MVR::Platform
