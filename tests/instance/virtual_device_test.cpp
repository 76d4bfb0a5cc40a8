#include "instance/plugin_instance.h"
#include "plugins/instance_reference.h"
#include "support/core_fixture.h"
#include "support/scripted_device.h"
#include "support/scripted_tool.h"
#include "unidevice/sdk/device_handler.h"

namespace MVR::Testing {
namespace {

class VirtualDeviceTest : public CoreTest {
protected:
    static UniDevice::Control* offer(PluginInstance& tool, const std::string& name) {
        CInterface::VirtualControlRecord record{name, 3, UniDevice::finite};
        return reinterpret_cast<UniDevice::Control*>(
            tool.extend(41, reinterpret_cast<std::intptr_t>(&record)));
    }

    UniDevice::DeviceHandler& handler = *UniDevice::DeviceHandler::instance();
};

TEST_F(VirtualDeviceTest, ListedOnceWithTheFirstControlAndBackInItsPositionAfterUndo) {
    ScriptedPlugin& kind = ScriptedPlugin::add("Source");
    PluginInstance& plain = kind.place(*core);
    PluginInstance& source = kind.place(*core);
    const std::size_t devices = handler.devices.size();
    UniDevice::Device* const last = handler.devices.back();
    UniDevice::Control* const speed = offer(source, "Speed");
    offer(source, "Height");
    EXPECT_EQ(handler.devices.size(), devices + 1);
    EXPECT_EQ(handler.devices.back(), last) << "the trinary emulation stays the last";
    EXPECT_EQ(handler.indexOf(&plain), -1);
    auto* const late = new ScriptedDevice("Late");
    const std::int32_t place = handler.indexOf(&source);

    EXPECT_EQ(speed->type + speed->description, "SpeedSpeed");
    EXPECT_EQ(speed->index, 3);
    EXPECT_EQ(speed->kindMask, UniDevice::finite);
    EXPECT_EQ(speed->threshold, 0.1);
    EXPECT_EQ(source.control(-1), nullptr);
    EXPECT_EQ(source.control(2), nullptr);
    EXPECT_EQ(source.control(0), speed);

    Tag binding;
    speed->toTag(binding);
    EXPECT_EQ(handler.findControl(binding), speed);
    source.getReference()->remove(false);
    EXPECT_EQ(handler.indexOf(&source), -1);
    EXPECT_EQ(handler.findControl(binding), nullptr);
    ASSERT_TRUE(adaptor.undo());
    EXPECT_EQ(handler.indexOf(&source), place);

    late->destroy();
    source.unregister();
    source.registerWith(-1, nullptr); // behind the emulation
    source.getReference()->remove(false);
    handler.devices.front()->destroy(); // the list is shorter than the place that is remembered
    ASSERT_TRUE(adaptor.undo());
    EXPECT_EQ(handler.indexOf(&source), handler.indexOf(last) - 1);
    EXPECT_EQ(handler.devices.back(), last);
    plain.getReference()->remove(false);
    ASSERT_TRUE(adaptor.undo());
    EXPECT_EQ(handler.indexOf(&plain), -1) << "it offers nothing";
}

TEST_F(VirtualDeviceTest, ValuesArePulledFromTheToolAndReachOthers) {
    ScriptedPlugin& kind = ScriptedPlugin::add("Source");
    PluginInstance& source = kind.place(*core);
    UniDevice::Control* const speed = offer(source, "Speed");
    kind.onExtend = [](ScriptedTool&, std::int32_t id, std::intptr_t data) -> std::intptr_t {
        if (id == 40)
            reinterpret_cast<UniDevice::Control*>(data)->setValue(0.75);
        return 0;
    };
    ScriptedPlugin& user = ScriptedPlugin::add("User");
    user.properties = {"In"};
    UniDevice::Property* const in = user.place(*core).findProperty("In");
    in->deadzone = 0;
    in->bind(speed);
    source.getReference()->remove(false); // out of the list, but its values stay live
    handler.update();
    EXPECT_EQ(in->getValue(), 0.75);
    EXPECT_TRUE(handler.prepareDetection());
    handler.update();
    EXPECT_NE(handler.detectControl(nullptr), speed);
    adaptor.clearUndo(); // the tool ends, and its control
    EXPECT_EQ(in->control, nullptr);
}

} // namespace
} // namespace MVR::Testing
