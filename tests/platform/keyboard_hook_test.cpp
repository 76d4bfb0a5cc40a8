#include "platform/keyboard_hook.h"

#include "platform/event_pump.h"

#include <gtest/gtest.h>
#include <string>

using namespace MVR::Platform;

namespace {

/// What the hooks saw: a letter for the hook, the key, "-" for a release, "a" with Alt.
std::string seen;
HookHandle oldest, middle, newest;
enum class Act { Pass, Swallow, RemoveSelf, RemoveOlder, Install } act;

std::intptr_t see(char hook, int code, std::uint32_t key, std::uint32_t flags) {
    EXPECT_EQ(code, kHookAction);
    seen += hook + std::to_string(key) + (flags & kFlagReleased ? "-" : "") +
            (flags & kFlagAlt ? "a" : "") + " ";
    return callNextHook(0, code, key, flags);
}
std::intptr_t hookA(int code, std::uint32_t key, std::uint32_t flags) {
    return see('A', code, key, flags);
}
std::intptr_t hookB(int code, std::uint32_t key, std::uint32_t flags) {
    switch (act) {
    case Act::Pass:
        break;
    case Act::Swallow:
        seen += "B! ";
        return 1;
    case Act::RemoveSelf:
        removeKeyboardHook(middle);
        break;
    case Act::RemoveOlder:
        removeKeyboardHook(oldest);
        break;
    case Act::Install:
        newest = installKeyboardHook(hookA);
        break;
    }
    return see('B', code, key, flags);
}

std::string deliver(std::uint32_t key, bool pressed, bool alt, bool swallowed = false) {
    seen.clear();
    EXPECT_EQ(deliverKey(key, pressed, alt), swallowed);
    return seen;
}

TEST(KeyboardHook, TheLastInstalledIsAskedFirstAndTheChainChangesWhileItRuns) {
    EXPECT_EQ(deliver(65, true, false), "");
    oldest = installKeyboardHook(hookA);
    middle = installKeyboardHook(hookB);
    newest = installKeyboardHook(hookA);
    EXPECT_EQ(deliver(65, true, true), "A65a B65a A65a ");
    EXPECT_EQ(deliver(255, false, false), "A255- B255- A255- ");
    EXPECT_EQ(deliver(256, true, false), "");

    act = Act::Swallow;
    EXPECT_EQ(deliver(32, true, false, true), "A32 B! ");
    callNextHook(newest, kHookAction, 65, 0);
    EXPECT_EQ(seen, "A32 B! ") << "no event runs any more";
    act = Act::RemoveOlder;
    EXPECT_EQ(deliver(32, true, false), "A32 B32 ");
    EXPECT_FALSE(removeKeyboardHook(oldest));
    EXPECT_TRUE(removeKeyboardHook(newest));
    act = Act::Install;
    EXPECT_EQ(deliver(32, true, false), "B32 ");
    act = Act::RemoveSelf;
    EXPECT_EQ(deliver(32, true, false), "A32 B32 ");
    EXPECT_EQ(deliver(32, true, false), "A32 ");
    act = Act::Pass;
    releasePlatform();
    EXPECT_EQ(deliver(32, true, false), "");
}

} // namespace
