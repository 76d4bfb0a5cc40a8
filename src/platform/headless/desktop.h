#pragma once

#include "platform/choosers.h"
#include "platform/dialogs.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// The desktop without a screen: what is on it, and the user's hand on it, for tests and batch
/// processes.
namespace MVR::Platform::Headless {

/// The desktop's size in pixels.
constexpr std::int32_t kDesktopWidth = 1920;
constexpr std::int32_t kDesktopHeight = 1080;

struct WindowState {
    std::string windowClass; ///< empty for a dialog
    std::string text;
    Rectangle rectangle;
    WindowHandle parent = 0;
    std::uint32_t style = 0;
    std::uint32_t extendedStyle = 0;
    bool visible = false;
    bool iconic = false;
    bool needsRedraw = false;
};

/// All windows and dialogs, oldest first.
std::vector<WindowHandle> windows();
/// Returns false, with `out` unchanged, if there is no such window.
bool describeWindow(WindowHandle window, WindowState& out);
/// The user minimises or restores a window.
bool setIconic(WindowHandle window, bool iconic);

/// Modal dialogs that run, outermost first.
std::vector<DialogHandle> openDialogs();
/// Returns the resource number of a dialog, or 0 if there is no such dialog.
std::int32_t dialogResource(DialogHandle dialog);
/// The user presses a button; its command arrives at the next turn of the pump. Returns false if
/// there is no such button, or if another modal dialog covers this one.
bool pressControl(DialogHandle dialog, std::int32_t control);

enum class ModalEvent {
    Opened, ///< after the logic's `onOpen`
    Turn    ///< before each turn of its loop, at least each `kModalTurnMs`
};
/// With a user hook, a modal loop sleeps at most this long before it calls the hook again.
constexpr std::int32_t kModalTurnMs = 20;
/// Acts as the user of modal dialogs; called with the innermost. An empty function removes the
/// hook.
using UserHook = std::function<void(DialogHandle dialog, ModalEvent event)>;
void setUserHook(UserHook hook);

struct ShownMessageBox {
    WindowHandle owner;
    std::string text;
    std::string title;
    std::uint32_t flags;
    std::int32_t answer;
};
/// Only the latest are kept, so that a long batch can't fill the memory.
constexpr std::size_t kMessageBoxesKept = 256;
/// What was shown, oldest first.
std::vector<ShownMessageBox> messageBoxes();
/// Answers one later box, the first scripted first. A box without such a button answers with its
/// default and uses the script's answer up.
void scriptMessageBoxAnswer(std::int32_t answer);

struct ShownFileChooser {
    FileChooser chooser;
    bool isSave;
    std::string answer; ///< "" if the user cancelled
};
/// Only the latest are kept.
constexpr std::size_t kFileChoosersKept = 256;
/// What was shown, oldest first.
std::vector<ShownFileChooser> fileChoosers();
/// Answers one later file chooser, the first scripted first.
void scriptFileAnswer(const std::string& path);

/// The items of the menu that was shown last.
std::vector<MenuItem> lastMenu();
/// Chooses from one later menu, the first scripted first.
void scriptMenuAnswer(std::int32_t command);

} // namespace MVR::Platform::Headless
