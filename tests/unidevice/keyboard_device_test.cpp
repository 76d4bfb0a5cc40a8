#include "unidevice/keyboard_device.h"

#include "core/base/sdk/log.h"
#include "input_test.h"
#include "platform/keyboard_hook.h"

namespace {

using namespace UniDevice;
using MVR::Platform::deliverKey;

struct KeyboardTest : InputTest {
    Control* key(const std::string& type) {
        MVR::Tag tag = MVR::Tag::element("control");
        tag.attributeRef("device") = "Keyboard";
        tag.attributeRef("type") = type;
        return handler.findControl(tag);
    }
    WINHOOK_KeyboardDevice& keyboard = *new WINHOOK_KeyboardDevice(0);
};

TEST_F(KeyboardTest, NamesEachKeyOnce) {
    ASSERT_EQ(keyboard.controlCount(), 256);
    EXPECT_EQ(keyboard.control(0)->type, "Left_Arrow");
    EXPECT_EQ(keyboard.control(7)->type, "RETUR");
    EXPECT_EQ(keyboard.control(56)->type, "Z");
    EXPECT_EQ(keyboard.control(57)->type, "+");
    EXPECT_EQ(keyboard.control(103)->type, "Right_MENU");
    EXPECT_EQ(keyboard.control(104)->type, "");
    EXPECT_EQ(keyboard.control(104)->description, "Key_0");
    EXPECT_EQ(keyboard.control(255)->description, "Key_255");
    std::vector<std::string> names;
    for (int i = 0; i < 256; ++i) {
        names.push_back(keyboard.control(i)->description);
        EXPECT_EQ(keyboard.control(i)->kindMask, binary);
    }
    EXPECT_THAT(names, testing::Contains("Key_200"));
    std::sort(names.begin(), names.end());
    EXPECT_EQ(std::adjacent_find(names.begin(), names.end()), names.end());
}

TEST_F(KeyboardTest, ABindingToAnyKeyComesBackToThatKey) {
    for (int i = 0; i < keyboard.controlCount(); ++i) {
        MVR::Tag binding;
        keyboard.control(i)->toTag(binding);
        const bool isNothing = keyboard.control(i)->description == "Key_0";
        EXPECT_EQ(handler.findControl(binding), isNothing ? nullptr : keyboard.control(i))
            << keyboard.control(i)->description;
    }
    for (const char* index : {" index=\"0\"", ""}) {
        const std::size_t logged = MVR::Log::getText().size();
        EXPECT_EQ(handler.findControl(
                      parsed("<control device=\"Keyboard\" type=\"\"" + std::string(index) + "/>")),
                  nullptr);
        EXPECT_THAT(MVR::Log::getText().substr(logged), testing::HasSubstr("A stored key"));
    }
}

TEST_F(KeyboardTest, KeysAreSeenWhileActiveAndNotSwallowed) {
    Control* a = key("A");
    deliverKey('A', true, false);
    EXPECT_EQ(a->value, 0.0) << "not active yet";

    EXPECT_TRUE(handler.activate());
    EXPECT_FALSE(deliverKey('A', true, false));
    EXPECT_EQ(a->value, 1.0);
    EXPECT_EQ(a->previousValue, 0.0);
    deliverKey('A', true, false); // held
    EXPECT_EQ(a->value, 1.0);
    EXPECT_EQ(a->previousValue, 1.0);
    deliverKey('A', false, true);
    EXPECT_EQ(a->value, 0.0);
    EXPECT_EQ(a->previousValue, 1.0);
    EXPECT_FALSE(deliverKey(5000, true, false));

    deliverKey('A', true, false);
    EXPECT_TRUE(handler.activate()); // a second time without an end between
    EXPECT_EQ(a->value, 0.0) << "a take begins with all keys up";
    EXPECT_TRUE(handler.deactivate());
    deliverKey('A', true, false);
    EXPECT_EQ(a->value, 0.0);
    EXPECT_TRUE(handler.deactivate());
}

TEST_F(KeyboardTest, ADetectionFindsThePressedKey) {
    EXPECT_TRUE(handler.prepareDetection());
    EXPECT_EQ(handler.detectControl(nullptr), nullptr);
    deliverKey('B', true, false);
    deliverKey(38, true, false);
    EXPECT_EQ(handler.detectControl(nullptr), key("Up_Arrow")) << "the first in the list's order";
    const std::vector<Control*> excluded{key("Up_Arrow")};
    EXPECT_EQ(handler.detectControl(&excluded), key("B"));
    deliverKey('B', true, false); // held: no change any more
    EXPECT_EQ(handler.detectControl(&excluded), nullptr);
}

TEST_F(KeyboardTest, MayGoWhileActive) {
    handler.activate();
    keyboard.destroy();
    EXPECT_FALSE(deliverKey('A', true, false));
}

} // namespace
