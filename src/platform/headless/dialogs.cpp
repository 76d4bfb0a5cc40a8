#include "platform/dialogs.h"

#include "platform/event_pump.h"
#include "platform/headless/state.h"

#include <algorithm>
#include <iterator>

namespace MVR::Platform {

namespace {

using Headless::Control;
using Headless::findControl;
using Headless::findDialog;
using Headless::getState;

DialogHandle createDialog(const DialogTemplate& form, WindowHandle owner, DialogLogic& logic) {
    Headless::Window& window = Headless::addWindow();
    window.procedure = nullptr;
    window.state.text = form.title;
    window.state.rectangle = {0, 0, form.width, form.height};
    window.state.parent = isWindow(owner) ? owner : 0;
    window.dialog = std::make_unique<Headless::Dialog>();
    window.dialog->resource = form.resource;
    window.dialog->logic = &logic;
    for (std::size_t i = 0; i < form.controlCount; ++i) {
        const ControlTemplate& control = form.controls[i];
        window.dialog->controls.push_back({control.id, control.kind, control.text});
    }
    return window.handle;
}

void askUser(DialogHandle dialog, Headless::ModalEvent event) {
    // A copy, as the hook may replace itself.
    const Headless::UserHook hook = getState().userHook;
    if (hook && findDialog(dialog))
        hook(dialog, event);
}

void turnModalLoop(DialogHandle dialog) {
    askUser(dialog, Headless::ModalEvent::Turn);
    const std::int32_t next = runDueEvents();
    if (!findDialog(dialog))
        return;
    const bool hasUser = bool(getState().userHook);
    if (next < 0 && !hasUser) {
        endDialog(dialog, -1);
        return;
    }
    waitForEvents(hasUser ? Headless::kModalTurnMs : -1);
}

Control* findBar(DialogHandle dialog, std::int32_t control) {
    Control* found = findControl(dialog, control);
    return found && found->kind == ControlKind::ProgressBar ? found : nullptr;
}

} // namespace

std::intptr_t runModalDialog(std::int32_t resource, WindowHandle owner, DialogLogic& logic) {
    const auto form =
        std::find_if(std::begin(kDialogTemplates), std::end(kDialogTemplates),
                     [&](const DialogTemplate& each) { return each.resource == resource; });
    if (form == std::end(kDialogTemplates))
        return -1;
    const DialogHandle dialog = createDialog(*form, owner, logic);
    logic.onOpen(dialog);
    askUser(dialog, Headless::ModalEvent::Opened);
    while (findDialog(dialog))
        turnModalLoop(dialog);
    const std::intptr_t result = Headless::findWindow(dialog)->dialog->result;
    Headless::removeWindow(dialog);
    return result;
}

bool endDialog(DialogHandle handle, std::intptr_t result) {
    Headless::Dialog* dialog = findDialog(handle);
    if (dialog) {
        dialog->ended = true;
        dialog->result = result;
    }
    return dialog != nullptr;
}

bool postMessage(DialogHandle dialog, std::uint32_t message) {
    if (!findDialog(dialog))
        return false;
    Headless::post(dialog, Headless::PostKind::Message, message, 0);
    return true;
}

bool setDialogTimer(DialogHandle dialog, std::uint32_t timerId, std::uint32_t intervalMs) {
    if (!findDialog(dialog))
        return false;
    killDialogTimer(dialog, timerId);
    Headless::addTimer(Headless::unusedTimerId(), intervalMs, nullptr, dialog, timerId);
    return true;
}

bool killDialogTimer(DialogHandle dialog, std::uint32_t timerId) {
    return dialog != 0 && std::erase_if(
                              getState().timers,
                              [&](const Headless::Timer& timer) {
                                  return timer.dialog == dialog && timer.dialogTimerId == timerId;
                              }) != 0;
}

bool setControlText(DialogHandle dialog, std::int32_t control, std::string_view text) {
    Control* found = findControl(dialog, control);
    if (found)
        found->text = text;
    return found != nullptr;
}

std::string getControlText(DialogHandle dialog, std::int32_t control) {
    const Control* found = findControl(dialog, control);
    return found ? found->text : "";
}

bool setProgressRange(DialogHandle dialog, std::int32_t control, std::int32_t low,
                      std::int32_t high) {
    Control* bar = findBar(dialog, control);
    if (!bar || low > high)
        return false;
    bar->low = low;
    bar->high = high;
    bar->position = std::clamp(bar->position, low, high);
    return true;
}

bool setProgressPosition(DialogHandle dialog, std::int32_t control, std::int32_t position) {
    Control* bar = findBar(dialog, control);
    if (bar)
        bar->position = std::clamp(position, bar->low, bar->high);
    return bar != nullptr;
}

std::int32_t getProgressPosition(DialogHandle dialog, std::int32_t control) {
    const Control* bar = findBar(dialog, control);
    return bar ? bar->position : 0;
}

void centreOnOwner(DialogHandle handle) {
    Headless::Window* window = Headless::findWindow(handle);
    Rectangle owner;
    if (!window || !getWindowRectangle(window->state.parent, owner))
        return;
    Rectangle& place = window->state.rectangle;
    const std::int32_t width = place.right - place.left;
    const std::int32_t height = place.bottom - place.top;
    place.left = (owner.left + owner.right - width) / 2;
    place.top = (owner.top + owner.bottom - height) / 2;
    place.right = place.left + width;
    place.bottom = place.top + height;
}

void show(DialogHandle dialog) {
    showWindow(dialog, true);
}

} // namespace MVR::Platform
