#pragma once

#include <cstdint>

/// Hooks on the key events of the host's thread. For each event the hook that was installed last is
/// called first; it passes the event on through `callNextHook`, whose result it returns, or
/// swallows it by returning 1 without.
namespace MVR::Platform {

/// Values of `code`. Below 0 a procedure must pass the event on untouched.
constexpr int kHookAction = 0;   ///< HC_ACTION
constexpr int kHookNoRemove = 3; ///< HC_NOREMOVE

/// Bits of `flags`.
constexpr std::uint32_t kFlagReleased = 1u << 31; ///< the key goes up
constexpr std::uint32_t kFlagAlt = 1u << 29;      ///< Alt is down

/// `virtualKey`: 0 to 255, as Windows numbers keys. A result other than 0 swallows the event.
using HookProcedure = std::intptr_t (*)(int code, std::uint32_t virtualKey, std::uint32_t flags);
/// 0 is none.
using HookHandle = std::intptr_t;

/// May be called at any time, also from a hook; a hook installed during an event first sees the
/// next one. Stands for SetWindowsHookExA with WH_KEYBOARD and the current thread.
HookHandle installKeyboardHook(HookProcedure procedure);

/// True if it was installed. May be called from any hook, its own too: the event goes on to those
/// that are left. Stands for UnhookWindowsHookEx.
bool removeKeyboardHook(HookHandle hook);

/// Called by a hook procedure: runs those installed before it and gives their result, 0 at the end
/// of the chain. The place in the chain is that of the procedure which runs now; `current` is not
/// looked at, so that a procedure which was installed twice can't loop. Outside of an event 0.
/// Stands for CallNextHookEx.
std::intptr_t callNextHook(HookHandle current, int code, std::uint32_t virtualKey,
                           std::uint32_t flags);

/// The host's side: one key went down (again, while it is held) or up. True if a hook swallowed it,
/// and the host must not act on it. A key above 255 reaches no hook.
bool deliverKey(std::uint32_t virtualKey, bool pressed, bool alt);

} // namespace MVR::Platform
