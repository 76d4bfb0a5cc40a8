#include "platform/headless/state.h"

#include "platform/event_pump.h"

#include <algorithm>

namespace MVR::Platform {

namespace {

/// A plain pointer, since the library may be unloaded before the process runs its destructors.
Headless::State* state = nullptr;

} // namespace

void releasePlatform() {
    delete state;
    state = nullptr;
}

namespace Headless {

State& getState() {
    if (!state)
        state = new State;
    return *state;
}

Window* findWindow(WindowHandle window) {
    for (const std::unique_ptr<Window>& candidate : getState().windows)
        if (candidate->handle == window)
            return candidate.get();
    return nullptr;
}

Dialog* findDialog(DialogHandle dialog) {
    Window* window = findWindow(dialog);
    return window && window->dialog && !window->dialog->ended ? window->dialog.get() : nullptr;
}

Control* findControl(DialogHandle dialog, std::int32_t control) {
    Dialog* owner = findDialog(dialog);
    if (!owner || control == kNoControl)
        return nullptr;
    const auto found = std::find_if(owner->controls.begin(), owner->controls.end(),
                                    [&](const Control& each) { return each.id == control; });
    return found != owner->controls.end() ? &*found : nullptr;
}

Window& addWindow() {
    State& desktop = getState();
    desktop.windows.push_back(std::make_unique<Window>());
    desktop.windows.back()->handle = ++desktop.lastWindow;
    return *desktop.windows.back();
}

void removeWindow(WindowHandle window) {
    State& desktop = getState();
    std::erase_if(
        desktop.timers, [&](const Timer& timer) { return timer.dialog == window; });
    std::erase_if(desktop.windows, [&](const std::unique_ptr<Window>& candidate) {
        return candidate->handle == window;
    });
}

} // namespace Headless

} // namespace MVR::Platform
