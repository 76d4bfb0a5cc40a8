#include "instance/plugin_instance.h"

#include "platform/choosers.h"
#include "platform/headless/desktop.h"
#include "plugins/instance_reference.h"
#include "plugins/libraries/plugin.h"
#include "support/core_fixture.h"
#include "support/scripted_device.h"
#include "support/scripted_tool.h"
#include "unidevice/sdk/profile_managers.h"

#include <gmock/gmock.h>

#include <random>
#include <set>

namespace MVR::Testing {
namespace {

using testing::ElementsAre;

class PluginInstanceTest : public CoreTest {
protected:
    void SetUp() override {
        CoreTest::SetUp();
        ASSERT_NE(core, nullptr);
        kind = &ScriptedPlugin::add("Camera");
        kind->properties = {"A", "B"};
    }

    ScriptedPlugin* kind = nullptr;
};

// The expected name, found the slow way.
std::string slowUnique(const std::multiset<std::string>& used, const std::string& wanted) {
    std::string name = wanted;
    std::string base = wanted;
    for (int counter = 1; used.count(name) != 0; ++counter) {
        const std::size_t size = base.size();
        if (size > 2 && base[size - 3] == '_' && std::isdigit(base[size - 2]) != 0 &&
            std::isdigit(base[size - 1]) != 0)
            base.resize(size - 3);
        name = base + (counter < 10 ? "_0" : "_") + std::to_string(counter);
    }
    return name;
}

TEST_F(PluginInstanceTest, NamesAreUniqueInTheTree) {
    const std::vector<std::pair<std::string, std::string>> cases{{"", "Camera_01"},
                                                                 {"Camera_01", "Camera_02"},
                                                                 {"Camera_01", "Camera_03"},
                                                                 {"Camera", "Camera"},
                                                                 {"Camera", "Camera_04"},
                                                                 {"Camera_100", "Camera_100"},
                                                                 {"Camera_100", "Camera_100_01"}};
    for (const auto& [wanted, taken] : cases)
        EXPECT_EQ(kind->place(*core, wanted).getName(), taken);
    PluginInstance& second =
        *core->getRoot()->findInstance("Camera_02", false, nullptr)->getInstance();
    second.getReference()->remove(false);
    EXPECT_EQ(kind->place(*core, "Camera_01").getName(), "Camera_02")
        << "one outside the tree blocks no name";
    PluginInstance& loose = *second.getPlugin()->createInstance(core, "Loose");
    EXPECT_EQ(kind->place(*core, "Loose").getName(), "Loose");
    loose.setName("Loose");
    EXPECT_EQ(loose.getName(), "Loose_01");
    EXPECT_EQ(loose.getCode()->getName(), "Loose_01");
    loose.destroy();
}

TEST(InstanceNames, AgreesWithThePlainWalk) {
    std::mt19937 random(7);
    InstanceNames names;
    std::multiset<std::string> used;
    const std::vector<std::string> wishes{"A",    "A_01", "A_01_01", "A_02",
                                          "B_99", "_01",  "A_00",    "A_099"};
    for (int round = 0; round < 4000; ++round) {
        if (used.size() < 130 && (random() % 5 != 0 || used.empty())) {
            const std::string& wanted = wishes[random() % wishes.size()];
            const std::string name = names.makeUnique(wanted);
            ASSERT_EQ(name, slowUnique(used, wanted));
            names.add(name);
            used.insert(name);
            continue;
        }
        auto gone = used.begin();
        std::advance(gone, random() % used.size());
        names.remove(*gone);
        used.erase(gone);
    }
}

TEST_F(PluginInstanceTest, ReferenceAndInstanceEndTogetherAndOnce) {
    PluginInstance& first = kind->place(*core);
    PluginInstance& second = kind->place(*core);
    SceneNode* const node = first.createNode("Body", 0, 0);
    kind->calls.clear();
    first.destroy();
    EXPECT_FALSE(static_cast<TestNode*>(node)->linked) << "the scene object is free of the tool";
    EXPECT_FALSE(static_cast<TestNode*>(node)->destroyed);
    second.getReference()->destroy();
    EXPECT_THAT(kind->calls, ElementsAre("Camera_01 destroy", "Camera_02 destroy"));
}

TEST_F(PluginInstanceTest, UnplugIsOneUndoStepWithOrWithoutTheScene) {
    for (const bool deleteScene : {true, false}) {
        PluginInstance& tool = kind->place(*core, "Tool");
        auto* const node = static_cast<TestNode*>(tool.createNode("Body", 0, 0));
        adaptor.clearUndo();
        if (deleteScene)
            tool.extend(43, 0);
        else
            tool.unplug(false);
        EXPECT_EQ(adaptor.undoNames(), std::vector<std::string>{"Delete plugin instance"});
        EXPECT_EQ(node->destroyed, deleteScene);
        EXPECT_FALSE(tool.isInTree());
        adaptor.clearUndo();
        EXPECT_EQ(core->getInstances(false).size(), 0u);
        EXPECT_EQ(kind->calls.back(), "Tool destroy");
    }
}

TEST_F(PluginInstanceTest, InputProfilesCarryBindingsAndParameters) {
    auto* const device = new ScriptedDevice("Box");
    UniDevice::Control* const axis = device->add("X");
    PluginInstance& tool = kind->place(*core);
    UniDevice::Property& a = *tool.findProperty("A");
    UniDevice::Property& b = *tool.findProperty("B");
    a.bind(axis);
    a.multiplier = 2.5;
    const Tag saved = tool.getInputProfile("Mine");
    EXPECT_EQ(saved.attribute("name"), "Mine");
    a.multiplier = 1;
    a.bind(nullptr);
    b.bind(axis);

    EXPECT_EQ(tool.applyInputProfile(Tag()), PluginInstance::kNoProfile);
    EXPECT_EQ(tool.applyInputProfile(Tag("<other><property name=\"A\"/></other>")),
              PluginInstance::kNoProfile);
    EXPECT_EQ(b.control, axis) << "a tag that is no profile changes nothing";
    EXPECT_EQ(tool.applyInputProfile(saved), 0);
    EXPECT_EQ(a.control, axis);
    EXPECT_EQ(a.multiplier, 2.5);
    EXPECT_EQ(b.control, nullptr);

    EXPECT_EQ(tool.applyInputProfile(
                  Tag("<profile><property name=\"A\"><offset>3</offset><control device=\"Gone\" "
                      "type=\"X\"/></property><property name=\"C\"><control device=\"Gone\"/>"
                      "</property></profile>")),
              1)
        << "a property that the tool lacks doesn't count";
    EXPECT_EQ(a.control, nullptr);
    EXPECT_EQ(a.getValue(), 3);
}

TEST_F(PluginInstanceTest, AToolMayHaveListsOfItsOwn) {
    ConfigProfileManager ownConfigs;
    InputProfileManager ownInputs;
    PluginInstance& tool = kind->place(*core, "Tool");
    kind->onExtend = [&](ScriptedTool&, std::int32_t id, std::intptr_t) {
        return id == 53   ? reinterpret_cast<std::intptr_t>(&ownConfigs)
               : id == 54 ? reinterpret_cast<std::intptr_t>(&ownInputs)
                          : 0;
    };
    EXPECT_EQ(&tool.getConfigProfiles(), &tool.getPlugin()->getConfigProfiles());
    EXPECT_EQ(&tool.getInputProfiles(), &tool.getPlugin()->getInputProfiles());
    kind->extensions = {53, 54};
    EXPECT_EQ(&tool.getConfigProfiles(), &ownConfigs);
    EXPECT_EQ(&tool.getInputProfiles(), &ownInputs);

    EXPECT_EQ(ownConfigs.addElement(tool.getConfigProfile("Wide"), false, false), 0);
    core->setInstanceConfigProfile("Tool", "Wide");
    core->setInstanceConfigProfile("nobody", "Wide");
    EXPECT_EQ(Log::getText().find("Unable to find profile"), std::string::npos);
    core->setInstanceConfigProfile("Tool", "wide");
    EXPECT_THAT(Log::getText(), testing::HasSubstr("Unable to find profile: Tool: wide"));

    kind->onExtend = nullptr;
    EXPECT_EQ(&tool.getInputProfiles(), &tool.getPlugin()->getInputProfiles()) << "answers null";
}

TEST_F(PluginInstanceTest, ToolSeesHostAndParents) {
    PluginInstance& outer = kind->place(*core, "Outer");
    PluginInstance& inner = kind->place(*core, "Inner");
    CInterface& door = inner;
    std::string parent = "unchanged";
    door.extend(55, reinterpret_cast<std::intptr_t>(&parent));
    EXPECT_EQ(parent, "unchanged") << "the root is no parent";
    core->relocate(inner.getReference(), outer.getReference());
    door.extend(55, reinterpret_cast<std::intptr_t>(&parent));
    EXPECT_EQ(parent, "Outer");
    for (const bool withNode : {false, true}) {
        if (withNode)
            outer.createNode("Body", 0, 0);
        Tag masters = Tag::element("list");
        kind->calls.clear();
        door.extend(56, reinterpret_cast<std::intptr_t>(&masters));
        ASSERT_EQ(masters.childCount("masternode"), withNode ? 2 : 1);
        EXPECT_EQ(kind->calls.front(), "Inner save");
        EXPECT_EQ(masters.child("masternode", withNode).child("parent").value(), "Outer");
        EXPECT_EQ(masters.child("masternode", withNode).child("childindex").value(), "0");
    }
    for (const std::intptr_t answer :
         {door.extend(99, 0), door.extend(39, 0), door.extend(41, 0), door.extend(55, 0),
          door.extend(56, 0), door.nodeQuery1(nullptr), door.nodeQuery3(nullptr),
          door.nodeQuery5(nullptr), door.getLensSnapshot(nullptr, 0)})
        EXPECT_EQ(answer, 0);
    EXPECT_EQ(door.getSnapshot(nullptr, 0), nullptr);
    door.destroyNode(nullptr, 0);
    for (const char* line : {"Caught unhandled extension: 99", "acquire lens snapshot from NULL",
                             "acquire snapshot from NULL", "destroy NULL node"})
        EXPECT_THAT(Log::getText(), testing::HasSubstr(line));

    adaptor.calls.clear();
    core->setStartCountdown(0);
    ASSERT_EQ(core->startRecording(), 0);
    door.redraw();
    core->stopRecording();
    door.redraw();
    EXPECT_EQ(std::count(adaptor.calls.begin(), adaptor.calls.end(), "redraw"), 1);
}

TEST_F(PluginInstanceTest, SavedBlockIsAnOwnedCopy) {
    CInterface& door = kind->place(*core);
    std::string bytes("a\0b", 3);
    door.setSaveData(bytes.data(), 3);
    bytes = "xyz";
    const void* address = nullptr;
    EXPECT_EQ(door.getSaveData(nullptr), 3);
    ASSERT_EQ(door.getSaveData(&address), 3);
    EXPECT_EQ(std::string(static_cast<const char*>(address), 3), std::string("a\0b", 3));
    door.setSaveData(bytes.data(), -1);
    EXPECT_EQ(door.getSaveData(&address), 0);
    EXPECT_EQ(address, nullptr);
}

TEST_F(PluginInstanceTest, MessageBoxSpeaksTheToolsFlags) {
    CInterface& door = kind->place(*core);
    bool silent = false;
    ASSERT_TRUE(core->setProperty(Setting::kSilentMode, &silent));
    struct Case {
        std::int32_t flags;
        std::uint32_t shown;
        std::int32_t pressed;
        std::int32_t answer;
    };
    const std::vector<Case> cases{{0, 0, Platform::kAnswerOk, 0},
                                  {1 + 16, 4 + 0x20, Platform::kAnswerYes, 2},
                                  {2 + 32, 3 + 0x10, Platform::kAnswerNo, 3},
                                  {3 + 48, 1 + 0x30, Platform::kAnswerCancel, 1},
                                  {7 + 64, 0, Platform::kAnswerOk, 0}};
    for (const Case& each : cases) {
        Platform::Headless::scriptMessageBoxAnswer(each.pressed);
        EXPECT_EQ(door.messageBox("text", "title", each.flags), each.answer) << each.flags;
        EXPECT_EQ(Platform::Headless::messageBoxes().back().flags, each.shown) << each.flags;
    }
}

TEST_F(PluginInstanceTest, SpinnersWithInputBecomeProperties) {
    double size = 1;
    kind->onInit = [&](ScriptedTool& tool) {
        CInterface& door = *tool.getInterface();
        door.addSpinner("Early", "", &size, 0, 1, 1, 4, true, 0, nullptr);
        door.beginPanel();
        door.addSpinner("Size", "", &size, 0, 1, 1, 4, true, 0, nullptr);
        door.addSpinner("Plain", "", &size, 0, 1, 1, 4, false, 0, nullptr);
        EXPECT_NE(door.addCombo("Combo", "", {"a"}, nullptr, nullptr), nullptr);
        door.endPanel();
        EXPECT_EQ(door.addCombo("Late", "", {"a"}, nullptr, nullptr), nullptr);
    };
    PluginInstance& tool = kind->place(*core);
    ASSERT_NE(tool.findProperty("Spinner: Size"), nullptr);
    EXPECT_EQ(tool.findProperty("Spinner: Size")->acceptedKinds, 14);
    EXPECT_EQ(tool.getProperties().count(), 3);
}

TEST(ComboUpdater, ReplacesTheChoices) {
    struct Component final : Util::MessageNode {
        Component() : MessageNode("combo") {}
        void receive(Util::Message& message, bool) override {
            if (message.id == PluginInstance::COREComboUpdater::kClearChoices)
                choices.clear();
            else
                choices.push_back(*reinterpret_cast<const std::string*>(message.lParam));
        }
        std::vector<std::string> choices{"old"};
    } component;
    PluginInstance::COREComboUpdater updater(4);
    updater.update({"lost"});
    updater.setComponent(&component);
    updater.update({"a", "b"});
    EXPECT_THAT(component.choices, ElementsAre("a", "b"));
}

} // namespace
} // namespace MVR::Testing
