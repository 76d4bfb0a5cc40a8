#include "platform/keyboard_hook.h"

#include "platform/headless/state.h"

#include <utility>

namespace MVR::Platform {

namespace {

constexpr std::uint32_t kHighestVirtualKey = 255;

/// Runs the newest hook older than `handle`, and through it those to which it passes the event.
std::intptr_t runHookBelow(HookHandle handle, int code, std::uint32_t virtualKey,
                           std::uint32_t flags) {
    Headless::State& state = Headless::getState();
    for (auto hook = state.hooks.rbegin(); hook != state.hooks.rend(); ++hook) {
        if (hook->handle < handle) {
            // The call may change the list, so don't use the iterator after it.
            const HookHandle before = std::exchange(state.runningHook, hook->handle);
            const std::intptr_t result = hook->procedure(code, virtualKey, flags);
            state.runningHook = before;
            return result;
        }
    }
    return 0;
}

} // namespace

HookHandle installKeyboardHook(HookProcedure procedure) {
    Headless::State& state = Headless::getState();
    state.hooks.push_back({++state.lastHook, procedure});
    return state.lastHook;
}

bool removeKeyboardHook(HookHandle hook) {
    return std::erase_if(
               Headless::getState().hooks,
               [&](const Headless::Hook& candidate) { return candidate.handle == hook; }) != 0;
}

std::intptr_t callNextHook(HookHandle, int code, std::uint32_t virtualKey, std::uint32_t flags) {
    const HookHandle running = Headless::getState().runningHook;
    return running == 0 ? 0 : runHookBelow(running, code, virtualKey, flags);
}

bool deliverKey(std::uint32_t virtualKey, bool pressed, bool alt) {
    if (virtualKey > kHighestVirtualKey)
        return false;
    const std::uint32_t flags = (pressed ? 0 : kFlagReleased) | (alt ? kFlagAlt : 0);
    const HookHandle aboveAll = Headless::getState().lastHook + 1;
    return runHookBelow(aboveAll, kHookAction, virtualKey, flags) != 0;
}

} // namespace MVR::Platform
