#pragma once

#include <cstdint>

/// Hooks on the key events of the host's thread. The hook that was installed last is called first
/// for each event. It passes the event on through `callNextHook` and returns that result, or
/// swallows the event by returning 1 without the call.
namespace MVR::Platform {

/// Values of `code`. Below 0 a procedure must pass the event on untouched.
constexpr int kHookAction = 0;   ///< HC_ACTION
constexpr int kHookNoRemove = 3; ///< HC_NOREMOVE

/// Bits of `flags`.
constexpr std::uint32_t kFlagReleased = 1u << 31; ///< the key goes up
constexpr std::uint32_t kFlagAlt = 1u << 29;      ///< Alt is down

/// `virtualKey` is 0 to 255, as Windows numbers keys. A result other than 0 swallows the event.
using HookProcedure = std::intptr_t (*)(int code, std::uint32_t virtualKey, std::uint32_t flags);
/// 0 means none.
using HookHandle = std::intptr_t;

/// Installs a hook. May be called at any time, also from a hook; a hook installed during an event
/// sees only later ones. Stands for SetWindowsHookExA with WH_KEYBOARD and the current thread.
HookHandle installKeyboardHook(HookProcedure procedure);

/// Removes a hook; returns true if it was installed. May be called from any hook, its own included:
/// the event goes on to those that are left. Stands for UnhookWindowsHookEx.
bool removeKeyboardHook(HookHandle hook);

/// Called by a hook procedure: runs those installed before it and returns their result, 0 at the
/// end of the chain. The position in the chain is that of the procedure that is running; `current`
/// is ignored, so a procedure that was installed twice can't loop. Returns 0 outside of an event.
/// Stands for CallNextHookEx.
std::intptr_t callNextHook(HookHandle current, int code, std::uint32_t virtualKey,
                           std::uint32_t flags);

/// The host's side: a key went down (again, while it is held) or up. Returns true if a hook
/// swallowed the event, on which the host must not act then. A key above 255 reaches no hook.
bool deliverKey(std::uint32_t virtualKey, bool pressed, bool alt);

} // namespace MVR::Platform
