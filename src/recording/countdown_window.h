// The window that counts the seconds down before a take: a digit over a clock face that fills up
// again each second.
//
// 1. `registerCountdownWindowClass` when the library is loaded.
// 2. `createCountdownWindow`, then `updateCountdownWindow` at each timer event of the countdown.
// 3. `Platform::destroyWindow`. A window is also destroyed with its parent.
// 4. `unregisterCountdownWindowClass` when the library is unloaded.
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

/// Returns false if the class was registered already.
bool registerCountdownWindowClass();
/// Returns false if there is no such class, or one of its windows still exists.
bool unregisterCountdownWindowClass();

/// Creates the window at `x` and `y` in pixels of the desktop; with both negative in the middle of
/// `parent`, or of the desktop without one. Returns 0 if the class isn't registered.
[[nodiscard]] Platform::WindowHandle createCountdownWindow(Platform::WindowHandle parent,
                                                           std::int32_t x, std::int32_t y);

/// Stores what to show and asks for a repaint; does nothing for a window that doesn't exist or
/// isn't a countdown window.
void updateCountdownWindow(Platform::WindowHandle window, const std::string& text, double fraction);

/// Returns what a countdown window shows, valid until its next update; null for any other window.
[[nodiscard]] const CountdownFace* getCountdownFace(Platform::WindowHandle window);

} // namespace MVR
