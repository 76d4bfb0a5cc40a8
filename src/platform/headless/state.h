#pragma once

#include "platform/dialog_templates.h"
#include "platform/dialogs.h"
#include "platform/headless/desktop.h"
#include "platform/keyboard_hook.h"
#include "platform/timers.h"

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

/// All that the headless back end holds, in one place so that it can be freed in one step.
namespace MVR::Platform::Headless {

/// Measured from the start of the period, so that the tick may wrap.
struct Timer {
    TimerId id;
    std::uint32_t startTick;
    std::uint32_t intervalMs;
    TimerCallback callback; ///< null for a dialog's timer
    DialogHandle dialog;
    std::uint32_t dialogTimerId;
};

/// Which operation of a dialog's logic is called.
enum class PostKind { Message, Command };

struct Post {
    std::uint64_t sequence;
    DialogHandle dialog;
    PostKind kind;
    std::uint32_t message; ///< of PostKind::Message
    std::int32_t control;  ///< of PostKind::Command
};

struct Hook {
    HookHandle handle;
    HookProcedure procedure;
};

struct Control {
    std::int32_t id;
    ControlKind kind;
    std::string text;
    std::int32_t low = 0;
    std::int32_t high = 100;
    std::int32_t position = 0;
};

struct Dialog {
    std::int32_t resource;
    DialogLogic* logic; ///< outlives the modal loop
    std::vector<Control> controls;
    bool ended = false;
    std::intptr_t result = 0;
};

struct Window {
    WindowHandle handle;
    WindowState state;
    WindowProcedure procedure; ///< null for a dialog
    std::intptr_t userData = 0;
    bool dying = false;
    std::unique_ptr<Dialog> dialog;
};

struct State {
    std::vector<Timer> timers; ///< in the order in which they were set
    TimerId lastTimer = 0;
    std::deque<Post> posts;
    std::uint64_t lastPost = 0;
    std::vector<Hook> hooks; ///< by ascending handle: the last is called first
    HookHandle lastHook = 0;
    HookHandle runningHook = 0; ///< 0 outside of a key event
    std::map<std::string, WindowProcedure, std::less<>> windowClasses;
    std::vector<std::unique_ptr<Window>> windows; ///< oldest first
    WindowHandle lastWindow = 0;
    UserHook userHook;
    std::deque<ShownMessageBox> messageBoxes;
    std::deque<std::int32_t> messageBoxAnswers;
    std::deque<ShownFileChooser> fileChoosers;
    std::deque<std::string> fileAnswers;
    std::vector<MenuItem> lastMenu;
    std::deque<std::int32_t> menuAnswers;
};

/// Created at the first call, freed by `releasePlatform`.
State& getState();

/// Returns null if there is no such window. Valid until the window is destroyed.
Window* findWindow(WindowHandle window);
/// Returns null if there is no such dialog or it has ended.
Dialog* findDialog(DialogHandle dialog);
Control* findControl(DialogHandle dialog, std::int32_t control);

/// Adds an empty window at the end of the list.
Window& addWindow();
/// Removes a window and its timers from the lists; notifies nobody.
void removeWindow(WindowHandle window);

TimerId unusedTimerId();
/// Starts a timer under an id that isn't in use. With a null `callback` the dialog's logic is
/// called.
TimerId addTimer(TimerId id, std::uint32_t intervalMs, TimerCallback callback, DialogHandle dialog,
                 std::uint32_t dialogTimerId);
/// Calls the timers that are due now, each at most once.
void runDueTimers();
/// Returns the milliseconds until the next timer is due, or -1 if there is none.
std::int32_t msUntilTimer();

void post(DialogHandle dialog, PostKind kind, std::uint32_t message, std::int32_t control);

} // namespace MVR::Platform::Headless
