// The core's keyboard hook. While a take runs it keeps keys from the host and hands them to the
// core, except those that the adaptor unlocked. Its state is one for the library and belongs to
// the host's thread.
#pragma once

#include "core/contract/core_interface.h"

#include <cstdint>
#include <vector>

namespace MVR::Hooks {

/// Receives the keys that are kept from the host.
class KeyEventCallback {
public:
    /// Called with a key from 0 to 255, its new state, and the modifiers that are down.
    virtual void onKey(std::int32_t virtualKey, bool pressed, bool ctrl, bool alt, bool shift) = 0;

protected:
    ~KeyEventCallback() = default;
};

/// True while a take runs; otherwise all keys pass.
extern bool hookEnabled;

/// Installs the hook for its first user and counts the users.
void attachKeyHook();
/// Ends one use; the last one removes the hook. More ends than uses do nothing.
void detachKeyHook();

/// Callbacks aren't owned and are called in the order in which they were added. One that is removed
/// during an event is not called any more.
void addKeyCallback(KeyEventCallback* callback);
void removeKeyCallback(KeyEventCallback* callback);

/// Replaces the table of keys that pass to the host if their modifiers are down. Keys outside 0 to
/// 255 are skipped.
void setUnlockedKeys(const std::vector<UnlockedKey>& keys);

/// Removes the hook and forgets all of the above. Called when the library is unloaded.
void releaseKeyHook();

} // namespace MVR::Hooks
