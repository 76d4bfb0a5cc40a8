#pragma once

#include <cstdint>

namespace MVR {

/// One key event of a host whose own loop reads the keyboard. Ctrl and Shift are known from their
/// own events, with KeyCode::kCtrl and KeyCode::kShift for either side; so pass on every event,
/// also between takes.
struct HostEvent {
    std::uint32_t size = sizeof(HostEvent); ///< bytes of this record, for later growth
    std::uint32_t virtualKey = 0;           ///< a code of key_codes.h, 0 to 255
    bool pressed = false;   ///< true for a press (and its repeats), false for a release
    bool alt = false;       ///< Alt is down
    bool swallowed = false; ///< answer: true if the host must not act on the key
};

/// The exported event pump, for hosts whose loop doesn't deliver the core's timers and keys:
///
///     extern "C" std::int32_t pumpEvents(MVR::HostEvent* event);
///
/// Runs what is due: timers (so the frames of a take) and posted messages. With `event` not null
/// the key goes through the core's keyboard hooks first, and `swallowed` receives the outcome; a
/// record with a size smaller than the one here is ignored. Returns the milliseconds until the next
/// event is due, 0 for at once, -1 if nothing waits. Call it on the thread that called `attach`, at
/// any time while the library is loaded; it may be called again from inside a call that it makes.
using PumpEventsFunction = std::int32_t (*)(HostEvent* event);

} // namespace MVR
