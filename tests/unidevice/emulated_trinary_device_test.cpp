#include "unidevice/emulated_trinary_device.h"

#include "input_test.h"
#include "support/scripted_device.h"

namespace {

using namespace UniDevice;
using MVR::Testing::ScriptedDevice;

struct TrinaryTest : InputTest {
    ScriptedDevice& keys = *new ScriptedDevice("Keys");
    ScriptedDevice& pad = *new ScriptedDevice("Pad");
    Control* up = keys.add("up", binary);
    Control* down = pad.add("down", binary);
    EmulatedTrinaryDevice& emulator = *new EmulatedTrinaryDevice;
};

TEST_F(TrinaryTest, OneKeyPushesUpTheOtherDown) {
    pad.deviceIndex = 2;
    Control* both = emulator.createControl(up, down);
    EXPECT_EQ(both->description, "emulated control (Keys:up, Pad(2):down)");
    EXPECT_EQ(both->kindMask, trinary);
    const double cases[][3] = {{0, 0, 0}, {1, 0, 1}, {0, 1, -1}, {1, 1, 0}};
    for (const auto& [upValue, downValue, result] : cases) {
        keys.set("up", upValue);
        pad.set("down", downValue);
        EXPECT_EQ(both->getValue(), result);
    }
    keys.set("up", 1);
    EXPECT_FALSE(emulator.prepareDetection());
    EXPECT_EQ(emulator.detectControl(nullptr, nullptr), nullptr);
    EXPECT_EQ(emulator.createControl(up, nullptr), nullptr);
    EXPECT_EQ(emulator.createControl(nullptr, down), nullptr);
    EXPECT_EQ(emulator.control(1), nullptr);
}

TEST_F(TrinaryTest, ASavedBindingMakesTheControlAgain) {
    const char* const form =
        "<control device=\"TrinaryEmulator\" index=\"0\" type=\"control\">"
        "<description>TrinaryEmulator: emulated control (Keys:up, Pad:down)</description>"
        "<control device=\"Keys\" index=\"0\" te_direction=\"positive\" type=\"up\">"
        "<description>Keys: up</description></control>"
        "<control device=\"Pad\" index=\"0\" te_direction=\"negative\" type=\"down\">"
        "<description>Pad: down</description></control></control>";
    auto* made = static_cast<EmulatedTControl*>(handler.findControl(parsed(form)));
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->positive, up);
    EXPECT_EQ(made->negative, down);
    EXPECT_EQ(written(*made), form);
    EXPECT_EQ(handler.findControl(parsed(form)), made);
    EXPECT_EQ(emulator.createControl(up, down), made);
    EXPECT_NE(emulator.createControl(down, up), made);
    EXPECT_EQ(emulator.controlCount(), 2);

    const std::string head = "<control device='TrinaryEmulator' type='control'>";
    const std::string a = "<control type='up' te_direction='positive'/>";
    const std::string b = "<control type='down' te_direction='negative'/>";
    const std::string end = "</control>";
    EXPECT_EQ(handler.findControl(parsed(head + b + a + end)), made) << "in either order";
    for (const std::string& children :
         {a, std::string(), a + "<control type='gone' te_direction='negative'/>"})
        EXPECT_EQ(handler.findControl(parsed(head + children + end)), nullptr) << children;
    EXPECT_EQ(emulator.controlCount(), 2);
}

TEST_F(TrinaryTest, SourcesAndDevicesEndInAnyOrder) {
    Control* both = emulator.createControl(up, down);
    Control* nested = emulator.createControl(both, down);
    keys.set("up", 1);
    EXPECT_EQ(nested->getValue(), 1.0);
    pad.destroy();
    EXPECT_EQ(both->getValue(), 0.0);
    EXPECT_FALSE(both->matches(parsed(written(*both))));
    emulator.destroy();
    EXPECT_TRUE(up->targets.empty());
}

TEST_F(TrinaryTest, ABindingThatIsNestedWithoutEndIsRefused) {
    std::string text = "<control type='up'/>";
    for (int i = 0; i < 40; ++i) {
        text = "<control device='TrinaryEmulator' type='control'>" + text +
               "<control type='down' te_direction='negative'/></control>";
    }
    EXPECT_EQ(handler.findControl(parsed(text)), nullptr);
    EXPECT_EQ(emulator.controlCount(), 0);
}

} // namespace
