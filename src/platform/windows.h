#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Native windows, reduced to what the layers above call.
///
/// 1. `registerWindowClass` names a window procedure.
/// 2. `createWindow` creates a window; the procedure gets `kMessageCreate` before it returns.
/// 3. The event pump sends `kMessagePaint` once for all calls of `requestRedraw` since the last.
/// 4. `destroyWindow` sends `kMessageDestroy`; the user data can still be read then.
/// 5. `unregisterWindowClass`, when no window of the class is left.
namespace MVR::Platform {

/// 0 means none. Handles are never reused.
using WindowHandle = std::intptr_t;

constexpr std::uint32_t kMessageCreate = 1;  ///< WM_CREATE; `lParam` is the create parameter
constexpr std::uint32_t kMessageDestroy = 2; ///< WM_DESTROY
constexpr std::uint32_t kMessagePaint = 15;  ///< WM_PAINT

/// A result of -1 to `kMessageCreate` refuses the window, which is then destroyed as usual. Other
/// results are ignored.
using WindowProcedure = std::intptr_t (*)(WindowHandle window, std::uint32_t message,
                                          std::intptr_t wParam, std::intptr_t lParam);

/// Pixels of the desktop, from the upper left; `right` and `bottom` are exclusive.
struct Rectangle {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t right = 0;
    std::int32_t bottom = 0;
};

/// Returns false if the name is empty or in use. Stands for RegisterClassA.
bool registerWindowClass(std::string_view name, WindowProcedure procedure);
/// Returns false if there is no such class or one of its windows lives. Stands for
/// UnregisterClassA.
bool unregisterWindowClass(std::string_view name);

constexpr std::uint32_t kStyleVisible = 0x10000000; ///< WS_VISIBLE: shown from the start
constexpr std::uint32_t kStylePopup = 0x80000000;   ///< WS_POPUP

struct WindowCreation {
    std::string windowClass{};
    std::string title{};
    std::uint32_t style = kStylePopup;
    std::uint32_t extendedStyle = 0;
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    WindowHandle parent = 0; ///< the window dies with it; one of the host's counts as none
    std::intptr_t parameter = 0;
};

/// Returns 0 if the class is unknown or the procedure refuses. Stands for CreateWindowExA.
WindowHandle createWindow(const WindowCreation& creation);

/// Destroys the window and then its child windows; modal dialogs among them end with -1. Returns
/// false if there is no such window, or if it is itself a modal dialog, which only `endDialog`
/// ends. Stands for DestroyWindow.
bool destroyWindow(WindowHandle window);

/// Stands for ShowWindow with SW_SHOW (5) or SW_HIDE (0).
void showWindow(WindowHandle window, bool visible);

/// A value of the owner's for each window, 0 at first and for a window that doesn't exist. Stands
/// for GetWindowLongA and SetWindowLongA with GWL_USERDATA.
std::intptr_t getUserData(WindowHandle window);
void setUserData(WindowHandle window, std::intptr_t value);

/// Reads the window's rectangle, or with 0 the desktop's. Returns false, with `out` unchanged, if
/// there is no such window. Stands for GetWindowRect and GetDesktopWindow.
bool getWindowRectangle(WindowHandle windowOrZero, Rectangle& out);

/// The text of a window, "" if there is no such window. Stands for GetWindowTextA and
/// SetWindowTextA.
std::string getWindowText(WindowHandle window);
bool setWindowText(WindowHandle window, std::string_view text);

/// Stands for RedrawWindow with RDW_INVALIDATE. A hidden window is painted when it is shown.
void requestRedraw(WindowHandle window);

/// Stands for IsWindow.
bool isWindow(WindowHandle window);
/// Returns true for a window that the user has minimised. Stands for IsIconic.
bool isIconic(WindowHandle window);

} // namespace MVR::Platform
