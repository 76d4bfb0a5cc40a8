#pragma once

#include <cstdint>

/// Timers of the thread that runs the event pump; they need no window.
namespace MVR::Platform {

/// Never 0, and never reused in a process before all ids have been used.
using TimerId = std::uint32_t;
/// `tick` is the `tickMs` of the call, however late it comes.
using TimerCallback = void (*)(TimerId id, std::uint32_t tick);

constexpr std::uint32_t kLongestIntervalMs = 0x7FFFFFFF;

/// Starts a timer that fires every `intervalMs` until it is killed, first after one interval. The
/// id of a running timer changes that one: it gets the new interval and callback, and its period
/// starts anew. With 0 or an id that doesn't run, a new timer is created. An interval below 1
/// counts as 1, one above `kLongestIntervalMs` as that. A timer fires only in `runDueEvents`. It is
/// a state, not a queue: one that missed several periods fires once and then keeps to its grid.
/// Callbacks may set and kill any timer and run the pump. Stands for SetTimer without a window.
TimerId setTimer(TimerId existingOrZero, std::uint32_t intervalMs, TimerCallback callback);

/// Kills a timer, which won't fire any more even if it is due. Returns true if it ran. Stands for
/// KillTimer.
bool killTimer(TimerId id);

} // namespace MVR::Platform
