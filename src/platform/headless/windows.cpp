#include "platform/windows.h"

#include "platform/headless/state.h"

#include <algorithm>

namespace MVR::Platform {

using Headless::findWindow;
using Headless::getState;
using Headless::Window;

bool registerWindowClass(std::string_view name, WindowProcedure procedure) {
    return !name.empty() && procedure &&
           getState().windowClasses.emplace(std::string(name), procedure).second;
}

bool unregisterWindowClass(std::string_view name) {
    const auto& windows = getState().windows;
    const auto found = getState().windowClasses.find(name);
    if (found == getState().windowClasses.end() ||
        std::any_of(windows.begin(), windows.end(), [&](const auto& window) {
            return window->procedure && window->state.windowClass == name;
        }))
        return false;
    getState().windowClasses.erase(found);
    return true;
}

WindowHandle createWindow(const WindowCreation& creation) {
    const auto found = getState().windowClasses.find(creation.windowClass);
    if (found == getState().windowClasses.end())
        return 0;
    Window& window = Headless::addWindow();
    const WindowHandle handle = window.handle;
    window.procedure = found->second;
    window.state.windowClass = creation.windowClass;
    window.state.text = creation.title;
    window.state.style = creation.style;
    window.state.extendedStyle = creation.extendedStyle;
    window.state.rectangle = {creation.x, creation.y, creation.x + std::max(creation.width, 0),
                              creation.y + std::max(creation.height, 0)};
    window.state.parent = isWindow(creation.parent) ? creation.parent : 0;
    window.state.visible = (creation.style & kStyleVisible) != 0;
    window.state.needsRedraw = true;
    if (window.procedure(handle, kMessageCreate, 0, creation.parameter) == -1)
        destroyWindow(handle);
    return isWindow(handle) ? handle : 0;
}

bool destroyWindow(WindowHandle handle) {
    Window* window = findWindow(handle);
    if (!window || window->dialog || window->dying)
        return false;
    window->dying = true;
    window->procedure(handle, kMessageDestroy, 0, 0);
    for (WindowHandle child : Headless::windows()) {
        Window* candidate = findWindow(child);
        if (!candidate || candidate->state.parent != handle)
            continue;
        if (candidate->dialog) {
            candidate->state.parent = 0;
            endDialog(child, -1);
        } else {
            destroyWindow(child);
        }
    }
    Headless::removeWindow(handle);
    return true;
}

void showWindow(WindowHandle handle, bool visible) {
    if (Window* window = findWindow(handle)) {
        window->state.needsRedraw |= window->procedure && visible && !window->state.visible;
        window->state.visible = visible;
    }
}

std::intptr_t getUserData(WindowHandle handle) {
    const Window* window = findWindow(handle);
    return window ? window->userData : 0;
}

void setUserData(WindowHandle handle, std::intptr_t value) {
    if (Window* window = findWindow(handle))
        window->userData = value;
}

bool getWindowRectangle(WindowHandle windowOrZero, Rectangle& out) {
    if (windowOrZero == 0) {
        out = {0, 0, Headless::kDesktopWidth, Headless::kDesktopHeight};
        return true;
    }
    const Window* window = findWindow(windowOrZero);
    if (window)
        out = window->state.rectangle;
    return window != nullptr;
}

std::string getWindowText(WindowHandle handle) {
    const Window* window = findWindow(handle);
    return window ? window->state.text : "";
}

bool setWindowText(WindowHandle handle, std::string_view text) {
    Window* window = findWindow(handle);
    if (window)
        window->state.text = text;
    return window != nullptr;
}

void requestRedraw(WindowHandle handle) {
    Window* window = findWindow(handle);
    if (window && window->procedure)
        window->state.needsRedraw = true;
}

bool isWindow(WindowHandle handle) {
    return findWindow(handle) != nullptr;
}

bool isIconic(WindowHandle handle) {
    const Window* window = findWindow(handle);
    return window && window->state.iconic;
}

} // namespace MVR::Platform
