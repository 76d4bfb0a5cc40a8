// The inputs of tools and the devices that drive them, as an adaptor sees them.

#include "core/contract/core_extensions.h"
#include "plugins/contract/extension_ids.h"
#include "plugins/tree_test.h"
#include "support/scripted_device.h"
#include "support/scripted_tool.h"
#include "unidevice/sdk/property.h"

namespace {

using namespace MVR;
using Testing::identifierOf;

struct ToolInputTest : Testing::TreeTest {
    void SetUp() override {
        TreeTest::SetUp();
        rig = &Testing::ScriptedPlugin::add("Rig");
        rig->properties = {"X", "Y"};
        tools = getTools(*core);
        inputs = getInputs(*core);
    }

    Testing::ScriptedPlugin* rig = nullptr;
    CoreTools* tools = nullptr;
    CoreInputs* inputs = nullptr;
};

TEST_F(ToolInputTest, BindingsAreReadAndSetWithAllTheirDigits) {
    auto& pad = *new Testing::ScriptedDevice("Pad");
    pad.add("stick");
    const std::string control = "<control device=\"Pad\" type=\"stick\" index=\"0\"/>";
    const std::string exact = "0.12345678901234568";
    Tag profile("<profile name=\"\"><property name=\"X\"><multiplier>" + exact + "</multiplier>" +
                control +
                "</property><property name=\"Y\"><control device=\"Gone\" type=\"a\" "
                "index=\"0\"/></property></profile>");
    ASSERT_EQ(tools->create("Rig", "", "", profile, nullptr), 0);
    EXPECT_EQ(toText(getFaults(*core)->list().at(0)),
              "Model Rig_01, tool Rig_01, inputprofile: controls that aren't there: 1");
    UniDevice::Property& x = *tools->find("Rig_01")->findProperty("X");
    EXPECT_EQ(x.multiplier, 0.12345678901234568);
    EXPECT_EQ(x.control, pad.control(0));

    const Tag bindings = tools->getBindings("Rig_01");
    EXPECT_EQ(bindings.child(0).child("multiplier").value(), exact);
    EXPECT_EQ(bindings.child(0).child("control").attribute("device"), "Pad");
    x.multiplier = 3;
    x.bind(nullptr);
    std::int32_t missing = -1;
    EXPECT_EQ(tools->setBindings("Rig_01", profile, &missing), 0);
    EXPECT_EQ(missing, 1);
    EXPECT_EQ(tools->setBindings("Rig_01", bindings, nullptr), 0);
    EXPECT_TRUE(tools->getBindings("Rig_01") == bindings);
    const auto multiplier = [](const Tag& configuration) {
        const Tag& tool = configuration.child(0);
        return tool.child("inputprofile").child(0).child(0).child("multiplier").value();
    };
    EXPECT_EQ(multiplier(tools->getExactConfiguration()), exact);
    EXPECT_EQ(multiplier(core->getConfiguration()), "0.123457") << "as files have it";

    EXPECT_TRUE(tools->getBindings("b").isEmpty());
    EXPECT_EQ(identifierOf(tools->setBindings("b", profile, &missing)), "MODEL_NOTOOL");
    EXPECT_EQ(identifierOf(tools->setBindings("Rig_01", Tag(), &missing)), "TOOL_BADPROFILE");
    ASSERT_EQ(core->startRecording(), 0);
    EXPECT_EQ(identifierOf(tools->setBindings("Rig_01", Tag("<profile/>"), &missing)),
              "ALREADYRECORDING");
    core->stopRecording();
    EXPECT_EQ(x.control, pad.control(0));
}

TEST_F(ToolInputTest, AMappingChangesWithoutItsBinding) {
    auto& pad = *new Testing::ScriptedDevice("Pad");
    pad.add("stick");
    const Tag profile("<profile name=\"\"><property name=\"X\"><offset>0.1</offset><control "
                      "device=\"Pad\" type=\"stick\" index=\"0\"/><own/></property><property "
                      "name=\"Y\"><control device=\"Gone\" type=\"a\" index=\"0\"/></property>"
                      "<property name=\"Z\"><offset>1</offset></property></profile>");
    ASSERT_EQ(tools->create("Rig", "a", "", profile, nullptr), 0);
    pad.set("stick", -0.5);
    std::vector<CoreToolInput> list = tools->listInputs("a");
    ASSERT_EQ(list.size(), 2U) << "kept for a tool that has Z";
    EXPECT_EQ(list[0].name + list[1].name, "XY");
    EXPECT_TRUE(list[0].isBound && !list[1].isBound);
    EXPECT_EQ(list[0].value, -0.5) << "not mapped";
    EXPECT_EQ(list[0].kindMask, tools->find("a")->findProperty("X")->acceptedKinds);

    const Tag before = tools->getBindings("a");
    const auto change = [this](const std::string& input) {
        return tools->setMapping("a", Tag("<property name=\"" + input +
                                          "\"><multiplier>3</multiplier><offset>far</offset>"
                                          "<control/></property>"));
    };
    EXPECT_EQ(change("X") + change("Y"), 0);
    Tag expected = before;
    for (std::int32_t i = 0; i < 2; ++i)
        expected.child(i).child("multiplier").child(0) = Tag::textNode("3");
    EXPECT_EQ(tools->getBindings("a").toText("", "", ""), expected.toText("", "", ""))
        << "controls and kept elements are as they were";
    EXPECT_EQ(identifierOf(change("Z")), "TOOL_NOINPUT");
    EXPECT_EQ(identifierOf(tools->setMapping("b", Tag("<property/>"))), "MODEL_NOTOOL");
    EXPECT_EQ(identifierOf(tools->setMapping("a", before)), "TOOL_BADPROFILE");

    ASSERT_EQ(core->startRecording(), 0);
    EXPECT_EQ(tools->setMapping("a", before.child(0)), 0) << "also during a take";
    core->stopRecording();
    EXPECT_EQ(tools->setMapping("a", before.child(1)), 0);
    EXPECT_TRUE(tools->getBindings("a") == before);
}

TEST_F(ToolInputTest, InputsShowTheValuesOfTheLastPoll) {
    auto& pad = *new Testing::ScriptedDevice("Pad");
    pad.add("stick", UniDevice::finite, 2);
    pad.onUpdate = [&] { pad.set("stick", 0.5); };
    rig->onInit = [](Testing::ScriptedTool& tool) {
        CInterface::VirtualControlRecord record{"Out", 0, UniDevice::infinite};
        tool.getInterface()->extend(InterfaceExtension::kAddVirtualControl,
                                    reinterpret_cast<std::intptr_t>(&record));
    };
    ASSERT_EQ(tools->create("Rig", "a", "", Tag(), nullptr), 0);
    const auto find = [&](const std::string& name) {
        for (CoreDevice& device : inputs->list())
            if (device.name == name)
                return device;
        return CoreDevice();
    };
    CoreDevice device = find("Pad");
    ASSERT_EQ(device.controls.size(), 1U);
    EXPECT_EQ(device.controls[0].type + device.controls[0].description, "stickstick");
    EXPECT_EQ(device.controls[0].index, 2);
    EXPECT_EQ(device.controls[0].kindMask, UniDevice::finite);
    EXPECT_EQ(device.controls[0].value, 0) << "nobody has asked it yet";
    EXPECT_EQ(device.driver, "dummydriver");
    EXPECT_FALSE(device.isTool);
    EXPECT_TRUE(find("a").isTool);
    EXPECT_TRUE(find("Keyboard").isBuiltIn && find("TrinaryEmulator").isBuiltIn);
    EXPECT_FALSE(device.isBuiltIn || find("a").isBuiltIn);
    ASSERT_EQ(inputs->listDrivers().size(), 1U);
    EXPECT_EQ(inputs->listDrivers()[0].name + inputs->listDrivers()[0].library, "dummydriver");

    EXPECT_EQ(inputs->setListening(true), 0);
    EXPECT_EQ(inputs->update(), 0);
    EXPECT_EQ(find("Pad").controls.at(0).value, 0.5);
    EXPECT_EQ(inputs->setListening(false), 0);
    EXPECT_EQ(pad.activations, 1);
    pad.works = false;
    EXPECT_EQ(identifierOf(inputs->setListening(true)), "INPUT_INACTIVE");
    pad.works = true;
    ASSERT_EQ(core->startRecording(), 0);
    const int deactivations = pad.deactivations;
    EXPECT_EQ(identifierOf(inputs->setListening(false)), "ALREADYRECORDING");
    EXPECT_EQ(identifierOf(inputs->update()), "ALREADYRECORDING");
    EXPECT_EQ(pad.deactivations, deactivations) << "the take goes on listening";
    core->stopRecording();
}

} // namespace
