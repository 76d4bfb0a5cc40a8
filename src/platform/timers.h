#pragma once

#include <cstdint>

/// Timers of the thread that runs the event pump; they need no window.
namespace MVR::Platform {

/// Never 0, and never used twice in a process before all ids are through.
using TimerId = std::uint32_t;
/// `tick` is the time of the call in `tickMs`, however late it comes.
using TimerCallback = void (*)(TimerId id, std::uint32_t tick);

constexpr std::uint32_t kLongestIntervalMs = 0x7FFFFFFF;

/// Starts a timer that fires each `intervalMs` until it is killed, first after one interval. With
/// the id of a running timer it changes that one: new interval and callback, and the period starts
/// anew. With 0 or an id that doesn't run it makes a new timer. An interval below 1 counts as 1,
/// one above `kLongestIntervalMs` as that.
/// A timer fires from `runDueEvents` alone. It is a state, not a queue: one that missed several
/// periods fires once, and then keeps to its grid. Callbacks may set and kill any timer and run the
/// pump. Stands for SetTimer without a window.
TimerId setTimer(TimerId existingOrZero, std::uint32_t intervalMs, TimerCallback callback);

/// True if it ran; it doesn't fire any more, even if it was due. Stands for KillTimer.
bool killTimer(TimerId id);

} // namespace MVR::Platform
