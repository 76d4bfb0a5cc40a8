#include "core/services/key_hook.h"

#include "core/base/sdk/log.h"
#include "platform/event_pump.h"
#include "platform/keyboard_hook.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace {

using namespace MVR;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr std::uint32_t kShift = 16;
constexpr std::uint32_t kCtrl = 17;

struct KeyHookTest : testing::Test, Hooks::KeyEventCallback {
    KeyHookTest() {
        Hooks::attachKeyHook();
        Hooks::addKeyCallback(this);
        Hooks::hookEnabled = true;
    }
    ~KeyHookTest() {
        Hooks::releaseKeyHook();
        Util::SingletonCollector::destroyAll();
        Platform::releasePlatform();
    }
    void onKey(int virtualKey, bool pressed, bool ctrl, bool alt, bool shift) override {
        keys.push_back(std::to_string(virtualKey) + (pressed ? " down" : " up") +
                       (ctrl ? " ctrl" : "") + (alt ? " alt" : "") + (shift ? " shift" : ""));
    }
    /// Returns true if a press of the key reaches the host.
    static bool reachesHost(std::uint32_t key, bool alt = false) {
        return !Platform::deliverKey(key, true, alt);
    }

    std::vector<std::string> keys;
};

TEST_F(KeyHookTest, KeysAreKeptFromTheHostWhileATakeRuns) {
    EXPECT_FALSE(reachesHost('A'));
    EXPECT_FALSE(reachesHost(kCtrl));
    EXPECT_FALSE(reachesHost('Z', true));
    Platform::deliverKey('Z', false, false);
    EXPECT_THAT(keys, ElementsAre("65 down", "17 down ctrl", "90 down ctrl alt", "90 up ctrl"));
    Hooks::hookEnabled = false;
    EXPECT_TRUE(reachesHost('A'));
    Platform::deliverKey(kCtrl, false, false); // released between two takes
    Hooks::hookEnabled = true;
    keys.clear();
    EXPECT_FALSE(reachesHost('Z'));
    EXPECT_THAT(keys, ElementsAre("90 down"));

    Hooks::attachKeyHook(); // a second user
    Hooks::detachKeyHook();
    EXPECT_FALSE(reachesHost('A'));
    Hooks::detachKeyHook();
    EXPECT_TRUE(reachesHost('A'));
    Hooks::detachKeyHook(); // one too many must not spoil the next
    Hooks::attachKeyHook();
    EXPECT_FALSE(reachesHost('A'));
}

TEST_F(KeyHookTest, UnlockedKeysReachTheHostWithTheirModifiers) {
    Hooks::setUnlockedKeys({{'T', 0}});
    Hooks::setUnlockedKeys({{'A', 0}, {'C', 1}, {'D', 2}, {'S', 4}, {'X', 7}, {-1, 0}, {256, 0}});
    EXPECT_THAT(Log::getText(), HasSubstr("Setting unlocked keys"));
    EXPECT_THAT(Log::getText(), HasSubstr("key: 88"));
    const auto passing = [](bool alt) {
        std::string passed;
        for (const char key : {'A', 'C', 'D', 'S', 'T', 'X'})
            if (reachesHost(static_cast<std::uint32_t>(key), alt))
                passed += key;
        return passed;
    };
    EXPECT_EQ(passing(false), "A"); // and no longer T
    EXPECT_EQ(passing(true), "AD");
    reachesHost(kCtrl);
    EXPECT_EQ(passing(false), "AC");
    reachesHost(kShift);
    EXPECT_EQ(passing(false), "ACS");
    EXPECT_EQ(passing(true), "ACDSX");
}

struct Leaver : Hooks::KeyEventCallback {
    explicit Leaver(Hooks::KeyEventCallback* leaving) : other(leaving) {}
    ~Leaver() = default;
    void onKey(int, bool, bool, bool, bool) override {
        Hooks::removeKeyCallback(other);
        Hooks::removeKeyCallback(this);
    }
    Hooks::KeyEventCallback* other;
};

TEST_F(KeyHookTest, ACallbackMayRemoveOthersFromTheList) {
    Hooks::removeKeyCallback(this);
    Leaver leaver(this);
    Hooks::addKeyCallback(&leaver);
    Hooks::addKeyCallback(this);
    EXPECT_FALSE(reachesHost('A'));
    EXPECT_THAT(keys, ElementsAre());
}

} // namespace
