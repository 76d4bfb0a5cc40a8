/// \file
/// The window that counts the seconds down before a take: a digit over a clock face that fills up
/// again each second.
///
/// 1. `registerCountdownWindowClass` when the library is loaded.
/// 2. `createCountdownWindow`, then `updateCountdownWindow` at each timer event of the countdown.
/// 3. `Platform::destroyWindow`. A window also goes with its parent.
/// 4. `unregisterCountdownWindowClass` when the library is unloaded.
#pragma once

#include "platform/windows.h"

#include <cstdint>
#include <string>

namespace MVR {

/// What the window shows.
struct CountdownFace {
    std::string text;
    float fraction = 0.0F; ///< how much of the face is white, 0 to 1
};

/// False if the class was registered already.
bool registerCountdownWindowClass();
/// False if there is no such class, or one of its windows lives.
bool unregisterCountdownWindowClass();

/// The window at `x` and `y` in pixels of the desktop; with both negative it stands in the middle
/// of `parent`, or of the desktop without one. 0 if the class isn't registered.
[[nodiscard]] Platform::WindowHandle createCountdownWindow(Platform::WindowHandle parent,
                                                           std::int32_t x, std::int32_t y);

/// Stores what to show and asks for a repaint; does nothing for a window that isn't or is another.
void updateCountdownWindow(Platform::WindowHandle window, const std::string& text, double fraction);

/// What a countdown window shows, valid until its next update; null for a window that isn't.
[[nodiscard]] const CountdownFace* getCountdownFace(Platform::WindowHandle window);

} // namespace MVR
