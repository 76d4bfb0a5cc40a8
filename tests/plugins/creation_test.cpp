#include "plugins/contract/extension_ids.h"
#include "plugins/instanciatable.h"
#include "plugins/libraries/library_manager.h"
#include "plugins/libraries/plugin.h"
#include "plugins/model/instance_loading.h"
#include "plugins/tree_test.h"
#include "support/scripted_tool.h"

namespace {

using namespace MVR;
using testing::ElementsAre;
using Testing::expectInOrder;
using testing::HasSubstr;
using Testing::identifierOf;
using Testing::ScriptedPlugin;
using Testing::ScriptedTool;

struct CreationTest : Testing::TreeTest {
    void SetUp() override {
        TreeTest::SetUp();
        rig = &ScriptedPlugin::add("Rig");
    }

    static Tag wrapped(const std::vector<Tag>& tools) {
        Tag wrapper = Tag::element("MVR");
        for (const Tag& tool : tools)
            wrapper.addChild(tool);
        return wrapper;
    }
    static Tag rigData(const std::string& name, const std::string& more = "") {
        return Tag(rigText(name, more));
    }
    std::int32_t toolCount() const { return LibraryManager::instance()->getInstanceCount(core); }
    ScriptedPlugin* rig = nullptr; // the core's
};

TEST_F(CreationTest, BareAndWrappedDataCreateTheSameTreeInOneUndoStep) {
    place("old");
    adaptor.clearUndo();
    Tag bare = toolData("a", "<MVR_Plugin><pluginname>Empty Plugin</pluginname></MVR_Plugin>");
    bare.attributeRef("path") = "/models";
    InstanceReference* const a = core->create(bare, nullptr, true);
    EXPECT_EQ(tree(), "old a(Empty Plugin_01)");
    EXPECT_THAT(adaptor.undoNames(), ElementsAre("New Template"));
    EXPECT_EQ(core->getRecentEntry(0).attribute("path"), "/models");
    EXPECT_EQ(core->create(core->getRecentEntry(0), a, true)->getInstanceName(), "a_01");
    EXPECT_EQ(tree(), "old a(Empty Plugin_01 a_01(Empty Plugin_02))");
    EXPECT_EQ(core->getRecentCount(), 1) << "the wrapper, once";

    const Tag three = wrapped({toolData("1"), toolData("2"), Tag::element("other"), toolData("3")});
    EXPECT_EQ(core->create(three, find("old"), false)->getInstanceName(), "1");
    EXPECT_EQ(childrenOf(*find("old")), "3 2 1");
    EXPECT_EQ(adaptor.calls.back(), "redraw");
    EXPECT_EQ(core->create(Tag::element("nothing"), nullptr, false), nullptr);
}

TEST_F(CreationTest, ToolsLiveThroughTheirFirstCallsInOrder) {
    rig->onExtend = [this](ScriptedTool& tool, std::int32_t id, std::intptr_t data) {
        if (id == ToolExtension::kDataFolder)
            rig->calls.push_back(tool.getName() + " from " + *reinterpret_cast<std::string*>(data));
        if (id == 45)
            rig->calls.push_back(tool.getName() + " custom " +
                                 reinterpret_cast<Tag*>(data)->value());
        if (id == ToolExtension::kAfterCreate)
            rig->calls.push_back(tool.getName() + " after in " + tree());
        return std::intptr_t{0};
    };
    core->createByType("Rig", "a", false);
    rig->calls.clear();
    Tag data = wrapped({rigData("a", "<customdata>x</customdata>" + rigText("b")), rigData("c")});
    data.attributeRef("path") = "/models";
    core->create(data, nullptr, false);
    EXPECT_THAT(rig->calls,
                ElementsAre("a_01 custom x", "a_01 from /models", "a_01 init", "a_01 create",
                            "b custom ", "b from /models", "b init", "b create", "c custom ",
                            "c from /models", "c init", "c create", "a_01 after in a",
                            "b after in a", "c after in a"));
    EXPECT_EQ(tree(), "a c a_01(b)");

    rig->calls.clear();
    data = rigData("d");
    data.attributeRef("path") = "/models";
    core->loadConfiguration(data);
    EXPECT_EQ(rig->calls.at(1), "d from ") << "a scene names no folder";
}

TEST_F(CreationTest, ACreationIsUndoneRedoneAndDropped) {
    core->create(wrapped({rigData("a", rigText("b")), rigData("c")}), nullptr, false);
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(adaptor.undo());
        EXPECT_EQ(tree(), "");
        EXPECT_EQ(core->getInstances(false).size(), 0U);
        EXPECT_EQ(toolCount(), 4) << "they wait in the host's list";
        EXPECT_TRUE(adaptor.redo());
        EXPECT_EQ(tree(), "c a(b)");
    }
    adaptor.undo();
    rig->calls.clear();
    Log::setThreshold(Log::Notice);
    place("new"); // drops what could be redone
    EXPECT_EQ(toolCount(), 2);
    EXPECT_THAT(rig->calls, ElementsAre("a destroy", "b destroy", "c destroy"));
    EXPECT_THAT(newLog(), HasSubstr("Deleting reference: a - Rig"));
    EXPECT_EQ(tree(), "new");
}

TEST_F(CreationTest, AToolThatFailsIsLeftOutAndTheRestIsCreated) {
    struct {
        Tag data;
        const char* identifier;
        const char* line;
        bool isMade;
    } cases[] = {
        {Tag::element("other", "x"), "INVALIDOKFDATASTRUCTURE",
         "Trying to instanciate plugin with invalid data structure", false},
        {Tag("<MVR_Plugin><type>None</type></MVR_Plugin>"), "PLUGINNOTFOUND",
         "Could not find plugin type: None", false},
        {toolData("a",
                  "<MVR_Plugin><type>None</type></MVR_Plugin>" + toolData("b").toText("", "", "")),
         "INSTANCIATOR_COULDNOTCREATESUBPLUGIN",
         "Error detected while instanciating plugins. Trying to continue anyway", true},
        {rigData("r"), "SUCCESS", "instance init returned error: General error", false},
        {Tag("<MVR_Plugin compressed=\"1\">AAAA</MVR_Plugin>"), "PLUGINNOTFOUND",
         "Model (unnamed), tool (unnamed), MVR_Plugin: its packed text can't be read", false},
    };
    rig->initResult = 1024;
    for (auto& each : cases) {
        newLog();
        std::int32_t error = -1;
        std::vector<PlannedTool> planned;
        std::size_t textLeft = 0;
        const Util::Owned<InstanceReference> made = instantiate(
            core->AdaptorManager::getServices(), each.data, error, "", planned, textLeft);
        EXPECT_EQ(identifierOf(error), each.identifier);
        EXPECT_EQ(made != nullptr, each.isMade) << each.line;
        EXPECT_EQ(toolCount(), each.isMade ? 3 : 1) << each.line;
        EXPECT_THAT(newLog(), HasSubstr(each.line));
    }
    EXPECT_EQ(core->create(wrapped({rigData("r"), toolData("a", rigText("s"))}), nullptr, false)
                  ->getInstanceName(),
              "a");
    EXPECT_EQ(tree(), "a");

    rig->initResult = 0;
    rig->createResult = 1024;
    EXPECT_EQ(core->create(rigData("r"), nullptr, false), nullptr);
    EXPECT_THAT(newLog(), HasSubstr("instance create returned error: General error"));
    EXPECT_EQ(tree(), "a");
    EXPECT_EQ(toolCount(), 2) << "the host took the step within its own back, and the tool with it";
    while (adaptor.undo()) {
    }
    EXPECT_EQ(tree(), "");
}

TEST_F(CreationTest, ToolsMayCreateAndRemoveToolsWhileTheyAreCreated) {
    rig->onInit = [this](ScriptedTool& tool) {
        if (tool.getName() == "maker")
            core->create(toolData("made"), nullptr, false);
    };
    rig->onExtend = [](ScriptedTool& tool, std::int32_t id, std::intptr_t) {
        if (id == ToolExtension::kAfterCreate && tool.getName() == "shy")
            tool.getInterface()->extend(43, 0);
        return std::intptr_t{0};
    };
    EXPECT_EQ(
        core->create(wrapped({rigData("maker"), rigData("shy", rigText("x"))}), nullptr, false)
            ->getInstanceName(),
        "maker");
    EXPECT_EQ(tree(), "made maker");
    while (adaptor.undo()) {
    }
    EXPECT_EQ(tree(), "");
}

TEST_F(CreationTest, TheRecentListKeepsTheNewestWithoutDuplicates) {
    std::int32_t limit = 3;
    core->setProperty(103, &limit);
    for (const char* name : {"a", "b", "c", "d", "b"})
        core->addRecent(toolData(name));
    const auto labels = [this] {
        std::string text;
        for (std::int32_t i = 0; i < core->getRecentCount(); ++i)
            text += core->getRecentLabel(i) + ";";
        return text;
    };
    EXPECT_EQ(labels(), "c;d;b;");
    core->addRecent(
        wrapped({toolData("x"), Tag("<MVR_Plugin><type>T</type></MVR_Plugin>"), toolData("")}));
    EXPECT_EQ(core->getRecentLabel(2), "x, T, Empty Plugin");
    EXPECT_EQ(core->getRecentLabel(3) + core->getRecentLabel(-1), "");
    EXPECT_TRUE(core->getRecentEntry(-1).isEmpty());
    const Tag saved = core->getRecent();
    limit = 2;
    core->setProperty(103, &limit);
    core->setRecent(saved);
    EXPECT_EQ(labels(), "b;x, T, Empty Plugin;");
    limit = -1;
    core->setProperty(103, &limit);
    core->addRecent(toolData("a"));
    EXPECT_EQ(labels(), "");
    core->setRecent(Tag::element("Other"));
    EXPECT_EQ(core->getRecent().childCount(), 0);
}

TEST_F(CreationTest, DetachDestroysChildrenBeforeTheirParentAndWhateverWasLost) {
    core->create(wrapped({rigData("a", rigText("b") + rigText("c")), rigData("d")}), nullptr,
                 false);
    adaptor.clearUndo();
    PluginInstance* const lost =
        LibraryManager::instance()->findPlugin("Rig")->createInstance(core, "lost");
    EXPECT_FALSE(lost->isInTree());
    rig->calls.clear();
    Log::setThreshold(Log::Notice);
    newLog();
    core->destroyRoot();
    EXPECT_THAT(rig->calls, ElementsAre("d destroy", "b destroy", "c destroy", "a destroy"));
    expectInOrder(newLog(),
                  {"\tDestroying InstanceReference\n", "name: Mirvane\n", "Destroying children\n",
                   "\t\tDestroying InstanceReference\n", "name: d\n",
                   "Notifying parent of destruction\n", "Unregistering reference\n", "target: d\n",
                   "Destroying PluginInstance: d\n", "name: a\n", "name: b\n", "target: b\n",
                   "target: c\n", "target: a\n", "target: Mirvane\n"});
    LibraryManager::instance()->destroyInstances(core);
    EXPECT_EQ(toolCount(), 0);
}

TEST_F(CreationTest, ARigPlacedTwiceDrivesItsOwnTools) {
    ScriptedPlugin& rig = ScriptedPlugin::add("Wheel");
    rig.properties = {"Turn"};
    rig.onInit = [](ScriptedTool& each) {
        CInterface::VirtualControlRecord speed{"Speed", 0, UniDevice::infinite};
        each.getInterface()->extend(InterfaceExtension::kAddVirtualControl,
                                    reinterpret_cast<std::intptr_t>(&speed));
    };
    const auto wheel = [](const std::string& name, const std::string& from,
                          const std::string& below) {
        return "<MVR_Plugin><type>Wheel</type><name>" + name +
               "</name><inputprofile><profile><property name=\"Turn\"><control device=\"" + from +
               "\" type=\"Speed\" index=\"0\"/></property></profile></inputprofile>" + below +
               "</MVR_Plugin>";
    };
    // Each turns with the other; the second time both have other names.
    const Tag model(wheel("Front", "Back", wheel("Back", "Front", "")));
    for (int i = 0; i < 3; ++i) {
        InstanceReference* const front = i < 2 ? core->create(model, nullptr, false)
                                               : core->getRoot()->getChildReference(0)->clone();
        ASSERT_NE(front, nullptr);
        PluginInstance& above = *front->getInstance();
        PluginInstance& below = *front->getChildReference(0)->getInstance();
        EXPECT_EQ(above.findProperty("Turn")->control, below.control(0)) << i;
        EXPECT_EQ(below.findProperty("Turn")->control, above.control(0)) << i;
    }
}

} // namespace
