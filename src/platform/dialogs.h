#pragma once

#include "platform/windows.h"

#include <cstdint>
#include <string>
#include <string_view>

/// Modal dialogs of native controls, built from the templates in "platform/dialog_templates.h".
///
/// 1. `runModalDialog` creates the dialog and its controls, hidden, and calls
///    `DialogLogic::onOpen`.
/// 2. It runs the event pump until the dialog has ended: messages, the dialog's own timers and
///    commands reach the logic, and thread timers re-enter from there.
/// 3. The logic calls `endDialog`. The dialog is destroyed when the call that it was in returns.
/// 4. `runModalDialog` returns the result.
///
/// An operation on a dialog or control that doesn't exist does nothing and returns false, "" or 0.
namespace MVR::Platform {

/// A dialog is a window, so the operations of "platform/windows.h" accept it too.
using DialogHandle = WindowHandle;

/// The behaviour of a dialog. Its calls come from the event pump inside `runModalDialog`.
class DialogLogic {
public:
    virtual ~DialogLogic() = default;

    /// Called before the dialog is seen: fill controls, centre it, show it. Stands for
    /// WM_INITDIALOG.
    virtual void onOpen(DialogHandle dialog) = 0;
    /// Receives a message of `postMessage`.
    virtual void onMessage(DialogHandle, std::uint32_t /*message*/) {}
    /// Stands for WM_TIMER.
    virtual void onTimer(DialogHandle, std::uint32_t /*timerId*/) {}
    /// The user pressed a button. Stands for WM_COMMAND.
    virtual void onCommand(DialogHandle, std::int32_t /*control*/) {}
};

/// Runs a dialog to its end and returns the result of `endDialog`, or -1 if there is no such
/// template. Dialogs nest; `logic` must outlive the call. Without a screen, a dialog that nobody
/// can end any more (nothing waits in the pump, and there is no user hook) ends with -1. Stands for
/// DialogBoxParamA.
std::intptr_t runModalDialog(std::int32_t resource, WindowHandle owner, DialogLogic& logic);

/// Asks the dialog to end; only the first result counts. Stands for EndDialog.
bool endDialog(DialogHandle dialog, std::intptr_t result);

/// Delivers a message to `onMessage` at the next turn of the pump, or drops it if the dialog has
/// ended by then. Stands for PostMessageA.
bool postMessage(DialogHandle dialog, std::uint32_t message);

/// Starts a timer of the dialog, under an id of the dialog's own. It repeats until it is killed or
/// the dialog ends. Setting a running one restarts it. Stands for SetTimer with a window.
bool setDialogTimer(DialogHandle dialog, std::uint32_t timerId, std::uint32_t intervalMs);
/// Stands for KillTimer with a window.
bool killDialogTimer(DialogHandle dialog, std::uint32_t timerId);

/// Stand for SetDlgItemTextA and GetDlgItemTextA.
bool setControlText(DialogHandle dialog, std::int32_t control, std::string_view text);
std::string getControlText(DialogHandle dialog, std::int32_t control);

/// A progress bar's ends, 0 and 100 at first, and its position, which is clamped between them.
/// Stand for PBM_SETRANGE32, PBM_SETPOS and PBM_GETPOS.
bool setProgressRange(DialogHandle dialog, std::int32_t control, std::int32_t low,
                      std::int32_t high);
bool setProgressPosition(DialogHandle dialog, std::int32_t control, std::int32_t position);
std::int32_t getProgressPosition(DialogHandle dialog, std::int32_t control);

/// Centres the dialog on its owner, or on the desktop without one. Stands for MoveWindow.
void centreOnOwner(DialogHandle dialog);
/// Stands for ShowWindow with SW_SHOW.
void show(DialogHandle dialog);

} // namespace MVR::Platform
