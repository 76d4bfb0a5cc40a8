#pragma once

#include <cstdint>

/// The event pump. Posted messages, redraws and timers run here, on the calling thread, and nowhere
/// else. A host with a loop of its own calls these two in turn; a modal dialog does so itself. All
/// operations belong to one thread.
namespace MVR::Platform {

/// Runs what is due: posted messages in their order, then redraws, then timers by due time, each at
/// most once. What becomes due meanwhile waits for the next call. Callbacks may post, arm, kill and
/// call this again; a nested call runs what its caller has not reached yet. Returns the
/// milliseconds until the next event is due, 0 if one is due now, -1 if nothing waits. Stands for
/// PeekMessageA and DispatchMessageA.
std::int32_t runDueEvents();

/// Sleeps until the next event is due, but at most `maxMs`; a negative value sets no limit. Returns
/// at once if nothing waits and there is no limit. Under a `HandClock` it advances that clock
/// instead. Stands for MsgWaitForMultipleObjects.
void waitForEvents(std::int32_t maxMs);

/// Frees all that the platform layer holds in memory: timers, hooks, windows, messages. It notifies
/// nobody, so destroy windows first. The last call before the library is unloaded, and never from
/// inside a callback or a modal dialog. Using the layer afterwards starts from empty.
void releasePlatform();

} // namespace MVR::Platform
