#include "platform/event_pump.h"

#include "platform/headless/state.h"
#include "platform/sdk/clock.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace MVR::Platform {

namespace {

using Headless::getState;

void runPosts() {
    const std::uint64_t last = getState().lastPost;
    while (!getState().posts.empty() && getState().posts.front().sequence <= last) {
        const Headless::Post post = getState().posts.front();
        getState().posts.pop_front();
        Headless::Dialog* dialog = Headless::findDialog(post.dialog);
        if (!dialog)
            continue;
        switch (post.kind) {
        case Headless::PostKind::Message:
            dialog->logic->onMessage(post.dialog, post.message);
            break;
        case Headless::PostKind::Command:
            dialog->logic->onCommand(post.dialog, post.control);
            break;
        }
    }
}

bool isRedrawDue(const Headless::Window& window) {
    return window.state.needsRedraw && window.state.visible && !window.state.iconic;
}

void runRedraws() {
    for (WindowHandle handle : Headless::windows()) {
        Headless::Window* window = Headless::findWindow(handle);
        if (window && isRedrawDue(*window)) {
            window->state.needsRedraw = false;
            window->procedure(handle, kMessagePaint, 0, 0);
        }
    }
}

/// Returns 0 if something is due, -1 if nothing waits.
std::int32_t msUntilNext() {
    const bool isRedraw = std::any_of(getState().windows.begin(), getState().windows.end(),
                                      [](const auto& window) { return isRedrawDue(*window); });
    return isRedraw || !getState().posts.empty() ? 0 : Headless::msUntilTimer();
}

} // namespace

std::int32_t runDueEvents() {
    runPosts();
    runRedraws();
    Headless::runDueTimers();
    return msUntilNext();
}

void waitForEvents(std::int32_t maxMs) {
    const std::int32_t next = msUntilNext();
    const std::int32_t bound = maxMs >= 0 ? maxMs : std::max(next, 0);
    const std::int32_t waitMs = next >= 0 ? std::min(next, bound) : bound;
    if (waitMs == 0)
        return;
    if (HandClock* clock = HandClock::current())
        clock->advance(std::uint32_t(waitMs));
    else
        std::this_thread::sleep_for(std::chrono::milliseconds(waitMs));
}

namespace Headless {

void post(DialogHandle dialog, PostKind kind, std::uint32_t message, std::int32_t control) {
    State& state = getState();
    state.posts.push_back({++state.lastPost, dialog, kind, message, control});
}

} // namespace Headless

} // namespace MVR::Platform
