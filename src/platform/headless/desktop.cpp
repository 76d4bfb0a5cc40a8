#include "platform/headless/desktop.h"

#include "platform/headless/state.h"

#include <utility>

namespace MVR::Platform::Headless {

std::vector<WindowHandle> windows() {
    std::vector<WindowHandle> handles;
    for (const std::unique_ptr<Window>& window : getState().windows)
        handles.push_back(window->handle);
    return handles;
}

bool describeWindow(WindowHandle handle, WindowState& out) {
    const Window* window = findWindow(handle);
    if (window)
        out = window->state;
    return window != nullptr;
}

bool setIconic(WindowHandle handle, bool iconic) {
    Window* window = findWindow(handle);
    if (window)
        window->state.iconic = iconic;
    return window != nullptr;
}

std::vector<DialogHandle> openDialogs() {
    std::vector<DialogHandle> handles;
    for (const std::unique_ptr<Window>& window : getState().windows)
        if (findDialog(window->handle))
            handles.push_back(window->handle);
    return handles;
}

std::int32_t dialogResource(DialogHandle handle) {
    const Dialog* dialog = findDialog(handle);
    return dialog ? dialog->resource : 0;
}

bool pressControl(DialogHandle dialog, std::int32_t control) {
    const Control* button = findControl(dialog, control);
    if (!button || button->kind != ControlKind::Button || openDialogs().back() != dialog)
        return false;
    post(dialog, PostKind::Command, 0, control);
    return true;
}

void setUserHook(UserHook hook) {
    getState().userHook = std::move(hook);
}

std::vector<ShownMessageBox> messageBoxes() {
    const std::deque<ShownMessageBox>& shown = getState().messageBoxes;
    return {shown.begin(), shown.end()};
}

void scriptMessageBoxAnswer(std::int32_t answer) {
    getState().messageBoxAnswers.push_back(answer);
}

std::vector<ShownFileChooser> fileChoosers() {
    const std::deque<ShownFileChooser>& shown = getState().fileChoosers;
    return {shown.begin(), shown.end()};
}

void scriptFileAnswer(const std::string& path) {
    getState().fileAnswers.push_back(path);
}

std::vector<MenuItem> lastMenu() {
    return getState().lastMenu;
}

void scriptMenuAnswer(std::int32_t command) {
    getState().menuAnswers.push_back(command);
}

} // namespace MVR::Platform::Headless
