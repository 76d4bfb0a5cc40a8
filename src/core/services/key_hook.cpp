#include "core/services/key_hook.h"

#include "core/base/sdk/log.h"
#include "core/contract/key_codes.h"
#include "platform/keyboard_hook.h"

#include <algorithm>
#include <cstddef>

namespace MVR::Hooks {

bool hookEnabled = false;

namespace {

constexpr std::int32_t kKeyCount = 256;

std::int32_t hookUsers = 0;
Platform::HookHandle coreHook = 0;
bool ctrlDown = false;
bool altDown = false;
bool shiftDown = false;
UnlockedKey unlockedKeys[kKeyCount];
std::vector<KeyEventCallback*>* callbacks = nullptr; // made with the first, freed with the last

bool passesToHost(std::uint32_t virtualKey) {
    if (virtualKey >= kKeyCount || unlockedKeys[virtualKey].key == -1)
        return false;
    const std::int32_t needed = unlockedKeys[virtualKey].modifiers;
    return ((needed & KeyModifier::kCtrl) == 0 || ctrlDown) &&
           ((needed & KeyModifier::kAlt) == 0 || altDown) &&
           ((needed & KeyModifier::kShift) == 0 || shiftDown);
}

void handOut(std::int32_t virtualKey, bool pressed) {
    if (callbacks == nullptr)
        return;
    const std::vector<KeyEventCallback*> asked = *callbacks; // a callback may change the list
    for (KeyEventCallback* callback : asked) {
        if (callbacks == nullptr)
            return;
        if (std::find(callbacks->begin(), callbacks->end(), callback) != callbacks->end())
            callback->onKey(virtualKey, pressed, ctrlDown, altDown, shiftDown);
    }
}

std::intptr_t onKeyEvent(int code, std::uint32_t virtualKey, std::uint32_t flags) {
    const auto pass = [&] { return Platform::callNextHook(coreHook, code, virtualKey, flags); };
    if (code != Platform::kHookAction && code != Platform::kHookNoRemove)
        return pass();
    const bool pressed = (flags & Platform::kFlagReleased) == 0;
    // Followed between takes too: a Ctrl that was released then must not turn a later Z into a
    // retake.
    if (virtualKey == KeyCode::kShift)
        shiftDown = pressed;
    if (virtualKey == KeyCode::kCtrl)
        ctrlDown = pressed;
    altDown = (flags & Platform::kFlagAlt) != 0;
    if (!hookEnabled || passesToHost(virtualKey))
        return pass();
    handOut(static_cast<std::int32_t>(virtualKey), pressed);
    return 1;
}

} // namespace

void attachKeyHook() {
    if (hookUsers++ == 0)
        coreHook = Platform::installKeyboardHook(&onKeyEvent);
}

void detachKeyHook() {
    if (hookUsers == 0 || --hookUsers > 0)
        return;
    Platform::removeKeyboardHook(coreHook);
    coreHook = 0;
}

void addKeyCallback(KeyEventCallback* callback) {
    if (callbacks == nullptr)
        callbacks = new std::vector<KeyEventCallback*>;
    callbacks->push_back(callback);
}

void removeKeyCallback(KeyEventCallback* callback) {
    if (callbacks == nullptr)
        return;
    callbacks->erase(std::remove(callbacks->begin(), callbacks->end(), callback), callbacks->end());
    if (!callbacks->empty())
        return;
    delete callbacks;
    callbacks = nullptr;
}

void setUnlockedKeys(const std::vector<UnlockedKey>& keys) {
    Log log("Setting unlocked keys", Log::Notice);
    std::fill(std::begin(unlockedKeys), std::end(unlockedKeys), UnlockedKey());
    for (const UnlockedKey& key : keys)
        if (key.key >= 0 && key.key < kKeyCount)
            unlockedKeys[key.key] = key;
    for (const UnlockedKey& key : unlockedKeys)
        if (key.key != -1)
            log.write("key", key.key, Log::OwnLevel);
}

void releaseKeyHook() {
    while (hookUsers > 0)
        detachKeyHook();
    hookEnabled = ctrlDown = altDown = shiftDown = false;
    std::fill(std::begin(unlockedKeys), std::end(unlockedKeys), UnlockedKey());
    delete callbacks;
    callbacks = nullptr;
}

} // namespace MVR::Hooks
