/// \file
/// The core's keyboard hook: while a take runs it keeps keys from the host and hands them to the
/// core, but for those that the adaptor unlocked. Everything here is one state for the library, on
/// the host's thread.
#pragma once

#include "core/contract/core_interface.h"

#include <cstdint>
#include <vector>

namespace MVR::Hooks {

/// Who gets the keys that are kept from the host.
class KeyEventCallback {
public:
    /// `virtualKey` 0 to 255, its new state, and the modifiers that are down.
    virtual void onKey(std::int32_t virtualKey, bool pressed, bool ctrl, bool alt, bool shift) = 0;

protected:
    ~KeyEventCallback() = default;
};

/// True while a take runs; without it all keys pass.
extern bool hookEnabled;

/// Installs the hook for its first user and counts the users.
void attachKeyHook();
/// Ends one use; the last one removes the hook. More ends than uses do nothing.
void detachKeyHook();

/// Callbacks are called in the order of adding; they aren't owned. One that is removed while an
/// event is handed out gets nothing more.
void addKeyCallback(KeyEventCallback* callback);
void removeKeyCallback(KeyEventCallback* callback);

/// Replaces the table of keys that pass to the host if their modifiers are down. A key outside 0 to
/// 255 is skipped.
void setUnlockedKeys(const std::vector<UnlockedKey>& keys);

/// Removes the hook and forgets all of the above. Called when the library is unloaded.
void releaseKeyHook();

} // namespace MVR::Hooks
