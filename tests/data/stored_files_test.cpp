// Files as earlier versions wrote them. Each still loads, with all that it holds.

#include "instance/plugin_instance.h"
#include "osc_config.h"
#include "plugins/instance_reference.h"
#include "support/core_fixture.h"
#include "support/scripted_device.h"
#include "support/scripted_tool.h"
#include "unidevice/sdk/control.h"
#include "unidevice/sdk/property.h"

#include <filesystem>
#include <functional>
#include <sstream>

namespace {

using namespace MVR;
using namespace MVR::Testing;

const std::string kFolder = MIRVANE_TEST_FILES;

/// "NAME MULTIPLIER DEADZONE [CONTROL]" of each property of a tool.
std::string describe(PluginInstance& tool) {
    std::ostringstream text;
    for (const char* name : {"Move", "Turn"}) {
        const UniDevice::Property& property = *tool.findProperty(name);
        text << name << " " << property.multiplier << " " << property.deadzone;
        if (property.control != nullptr)
            text << " " << property.control->type << " " << property.control->index;
        text << ";";
    }
    return text.str();
}

class StoredFilesTest : public CoreTest {
protected:
    void SetUp() override {
        const std::string user = home.documents() + "/data/Stage/";
        std::filesystem::create_directories(user);
        std::filesystem::copy_file(kFolder + "settings_1.xml", user + "settings.xml");
        std::filesystem::copy_file(kFolder + "recent_1.xml", user + "recent.xml");
        CoreTest::SetUp();
        kind_ = &ScriptedPlugin::add("Rig");
        kind_->properties = {"Move", "Turn"};
        (new ScriptedDevice("Stick"))->add("axis", UniDevice::finite, 3); // the handler owns it
    }

    std::string readTools() {
        Tag configuration;
        EXPECT_EQ(configuration.load(kFolder + "configuration_2.5.xml"), 0);
        core->loadConfiguration(configuration);
        std::string text;
        for (PluginInstance* tool : core->getInstances(false)) {
            text += tool->getName() + ": " + describe(*tool);
            text += core->getInstances(true).front() == tool ? " checked " : " ";
        }
        const InstanceReference& first = *core->getRoot()->getChildReference(0);
        return text + first.getChildReference(0)->getInstanceName() + " below it";
    }
    std::string readProfile() {
        Tag profile;
        EXPECT_EQ(profile.load(kFolder + "input_profile_1.xml"), 0);
        PluginInstance& tool = kind_->place(*core);
        EXPECT_EQ(tool.applyInputProfile(profile), 0);
        return describe(tool);
    }
    std::string readRecent() {
        std::string text;
        for (std::int32_t i = 0; i < core->getRecentCount(); ++i)
            text += core->getRecentLabel(i) + ";";
        return text;
    }
    std::string readSettings() {
        core->addProperty(500, 0.0);
        core->addProperty(501, std::string());
        double number = 0;
        std::string text;
        EXPECT_TRUE(core->getProperty(500, &number) && core->getProperty(501, &text));
        std::ostringstream all;
        all << core->getStartCountdown() << " " << core->getAutoExpand() << " " << number << " "
            << text;
        return all.str();
    }

    ScriptedPlugin* kind_ = nullptr; // the core owns it
};

TEST_F(StoredFilesTest, EachLoadsWithAllThatItHolds) {
    const struct {
        const char* file;
        std::function<std::string()> read;
        const char* content;
    } cases[] = {
        {"settings_1.xml", [this] { return readSettings(); }, "5 0 0.1 a \"text\" <\xC3\xA9>"},
        {"recent_1.xml", [this] { return readRecent(); }, "Old;Rig A;"},
        {"configuration_2.5.xml", [this] { return readTools(); },
         "Rig A: Move 2.5 0.25 axis 3;Turn 1 0.1; checked Rig B: Move 1 0.1;Turn 1 0.1; Rig B "
         "below it"},
        {"input_profile_1.xml", [this] { return readProfile(); },
         "Move 2.5 0.25 axis 3;Turn 1 0.1;"},
        {"osc_1.xml",
         [] {
             const OscConfig config = loadOscConfig(kFolder + "osc_1.xml");
             return config.address + " " + std::to_string(config.port);
         },
         "0.0.0.0 9123"},
    };
    for (const auto& stored : cases)
        EXPECT_EQ(stored.read(), stored.content) << stored.file;
    EXPECT_EQ(Log::getText().find("Unable to read"), std::string::npos);
}

} // namespace
