#pragma once

#include <cstdint>

/// The one place where events come in: posted messages, redraws and timers run here, on the calling
/// thread, and nowhere else. A host whose own loop isn't ours calls these two in turn; a modal
/// dialog does so itself. All operations belong to one thread.
namespace MVR::Platform {

/// Runs what is due: posted messages in their order, then redraws, then timers by due time, each at
/// most once. What comes up meanwhile is left for the next call. Callbacks may post, arm, kill and
/// call this again; a nested call runs what its caller has not come to yet.
/// Milliseconds until the next event is due, 0 if one is now, -1 if nothing waits.
/// Stands for PeekMessageA and DispatchMessageA.
std::int32_t runDueEvents();

/// Sleeps until the next event is due, at most `maxMs`; below 0 sets no bound. With nothing that
/// waits and no bound it returns at once. Under a `HandClock` it advances that clock instead.
/// Stands for MsgWaitForMultipleObjects.
void waitForEvents(std::int32_t maxMs);

/// Frees all that the platform layer holds in memory: timers, hooks, windows, messages; nobody is
/// told, windows should be destroyed before. The last
/// call before the library is unloaded, and never from inside a callback or a modal dialog. Using
/// the layer afterwards starts from empty.
void releasePlatform();

} // namespace MVR::Platform
