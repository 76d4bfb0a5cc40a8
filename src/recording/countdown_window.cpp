#include "recording/countdown_window.h"

#include <memory>

namespace MVR {

namespace {

constexpr const char* kWindowClass = "OskelCountdownTimer";
constexpr std::int32_t kSize = 64;              // pixels, both ways
constexpr std::uint32_t kExtendedStyle = 0x201; // its edge, and not in the tab order

CountdownFace* faceOf(Platform::WindowHandle window) {
    return reinterpret_cast<CountdownFace*>(Platform::getUserData(window));
}

std::intptr_t onMessage(Platform::WindowHandle window, std::uint32_t message, std::intptr_t,
                        std::intptr_t) {
    if (message == Platform::kMessageCreate) {
        auto face = std::make_unique<CountdownFace>();
        Platform::setUserData(window, reinterpret_cast<std::intptr_t>(face.release()));
    } else if (message == Platform::kMessageDestroy) {
        const std::unique_ptr<CountdownFace> face(faceOf(window));
        Platform::setUserData(window, 0);
    }
    return 0;
}

} // namespace

bool registerCountdownWindowClass() {
    return Platform::registerWindowClass(kWindowClass, onMessage);
}

bool unregisterCountdownWindowClass() {
    return Platform::unregisterWindowClass(kWindowClass);
}

Platform::WindowHandle createCountdownWindow(Platform::WindowHandle parent, std::int32_t x,
                                             std::int32_t y) {
    if (x < 0 && y < 0) {
        Platform::Rectangle around;
        if (!Platform::getWindowRectangle(parent, around))
            (void)Platform::getWindowRectangle(0, around);
        x = (around.left + around.right) / 2 - kSize / 2;
        y = (around.top + around.bottom) / 2 - kSize / 2;
    }
    Platform::WindowCreation creation;
    creation.windowClass = kWindowClass;
    creation.style = Platform::kStylePopup | Platform::kStyleVisible;
    creation.extendedStyle = kExtendedStyle;
    creation.x = x;
    creation.y = y;
    creation.width = kSize;
    creation.height = kSize;
    creation.parent = parent;
    const Platform::WindowHandle window = Platform::createWindow(creation);
    Platform::showWindow(window, true);
    return window;
}

void updateCountdownWindow(Platform::WindowHandle window, const std::string& text,
                           double fraction) {
    CountdownFace* face = faceOf(window);
    if (face == nullptr)
        return;
    face->text = text;
    face->fraction = static_cast<float>(fraction);
    Platform::requestRedraw(window);
}

const CountdownFace* getCountdownFace(Platform::WindowHandle window) {
    return faceOf(window);
}

} // namespace MVR
