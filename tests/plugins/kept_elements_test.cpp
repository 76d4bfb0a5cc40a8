#include "core/contract/core_extensions.h"
#include "instance/instance_inputs.h"
#include "instance/temporary_control.h"
#include "plugins/contract/extension_ids.h"
#include "plugins/tree_test.h"
#include "support/scripted_device.h"
#include "support/scripted_tool.h"
#include "unidevice/sdk/device_handler.h"

#include <functional>
#include <initializer_list>
#include <string>

namespace {

using namespace MVR;
using Testing::ScriptedPlugin;
using Testing::ScriptedTool;

/// Returns the first element at the end of a path of words.
Tag& at(Tag& top, std::initializer_list<const char*> way) {
    Tag* tag = &top;
    for (const char* word : way)
        tag = &tag->child(word);
    return *tag;
}

void clearNames(Tag& tool) {
    tool.child("name").clear();
    for (std::int32_t i = 0; i < tool.childCount(); ++i)
        if (tool.child(i).hasName("MVR_Plugin"))
            clearNames(tool.child(i));
}

struct KeptElementsTest : Testing::TreeTest {
    void SetUp() override {
        TreeTest::SetUp();
        rig = &ScriptedPlugin::add("PRM");
        rig->properties = {"Move", "Turn"};
    }

    Tag saved(std::uint32_t mask) {
        Tag tag;
        (void)find("Rig")->save(tag, mask);
        return tag;
    }
    /// What a tool with a node and a tool below it saves, and elements that can't be applied: at
    /// the end of each parent, if the mask includes that parent.
    Tag withKept(std::uint32_t mask) {
        core->create(
            Tag("<MVR_Plugin><type>PRM</type><name>Rig</name><nodeinfo><node name=\"Body\"/>"
                "</nodeinfo><MVR_Plugin><type>PRM</type><name>Child</name></MVR_Plugin>"
                "</MVR_Plugin>"),
            nullptr, false);
        Tag data = saved(mask);
        core->deleteAllInstances();
        if ((mask & SaveMask::kSelection) != 0)
            at(data, {"nodeinfo"}).addChild(Tag("<select external=\"Gone\">Body</select>"));
        struct {
            std::initializer_list<const char*> parent;
            const char* kept;
        } const cases[] = {
            {{}, "<later kind=\"x\"><a>1</a><b/></later>"},
            {{}, "<about>A rig</about>"},
            {{"MVR_Plugin"}, "<later>of the child</later>"},
            {{"nodeinfo"}, "<group>g</group>"},
            {{"nodeinfo", "node"}, "<material>red</material>"},
            {{"nodeinfo", "node"}, "<material>blue</material>"},
            {{"configprofile", "profile"}, "<panel><value id=\"7\">3</value></panel>"},
            {{"inputprofile", "profile"}, "<property name=\"Zoom\"><offset>2</offset></property>"},
            {{"inputprofile", "profile"}, "<later/>"},
            {{"inputprofile", "profile", "property"},
             "<control device=\"Gone\" type=\"X\"><description>Gone: X</description></control>"},
            {{"inputprofile", "profile", "property"}, "<curve>2</curve>"},
        };
        for (const auto& each : cases)
            at(data, each.parent).addChild(Tag(each.kept));
        return data;
    }

    ScriptedPlugin* rig = nullptr; // the core's
};

TEST_F(KeptElementsTest, WhatCantBeAppliedIsSavedAsItWasRead) {
    for (const std::uint32_t mask : {SaveMask::kModel, SaveMask::kScene}) {
        const Tag data = withKept(mask);
        InstanceReference* const made = core->create(data, nullptr, false);
        ASSERT_NE(made, nullptr);
        EXPECT_TRUE(saved(mask) == data) << saved(mask).toText("\n", " ", "");
        EXPECT_TRUE(saved(mask) == data) << "once more";
        adaptor.undo();
        EXPECT_EQ(tree(), "");
        adaptor.redo();
        EXPECT_TRUE(saved(mask) == data) << "undone and redone";
        Tag original = saved(mask & SaveMask::kClone);
        Tag copy;
        (void)made->clone()->save(copy, mask & SaveMask::kClone);
        clearNames(original);
        clearNames(copy);
        EXPECT_TRUE(copy == original) << copy.toText("\n", " ", "");
        // A mask without an element also leaves out what is kept in it.
        const std::string bare = saved(SaveMask::kNoChildren).toText("", "", "");
        EXPECT_EQ(bare, "<MVR_Plugin version=\"2.5\"><type>PRM</type><name>Rig</name>"
                        "<later kind=\"x\"><a>1</a><b/></later><about>A rig</about></MVR_Plugin>");
        core->deleteAllInstances();
        adaptor.clearUndo();
        adaptor.nodes.clear();
    }
}

TEST_F(KeptElementsTest, ASceneKeepsWhatIsBetweenItsTools) {
    const Tag scene("<MVR><note>n</note>" + rigText("Rig") +
                    "<MVR_Plugin><type>PRM</type><name>A"
                    "</name></MVR_Plugin><note>m</note></MVR>");
    core->loadConfiguration(scene);
    EXPECT_EQ(core->getConfiguration().childCount("note"), 2);
    EXPECT_EQ(core->getConfiguration().child(2).value(), "m") << "behind the tool";
    core->deleteAllInstances();
    EXPECT_EQ(core->getConfiguration().childCount(), 0) << "the next scene has none of it";
}

TEST_F(KeptElementsTest, KnownElementsThatCantBeReadStayUntilSomethingNewerStandsThere) {
    const Tag data("<MVR_Plugin><type>PRM</type><name>Rig</name><savedata>?</savedata>"
                   "<recordedinputvalues><input>AAAA</input><input/></recordedinputvalues>"
                   "</MVR_Plugin>");
    core->create(data, nullptr, false);
    const std::uint32_t mask = SaveMask::kModel | SaveMask::kScene;
    Tag kept = saved(mask);
    EXPECT_EQ(at(kept, {"savedata"}).value(), "?");
    EXPECT_EQ(at(kept, {"recordedinputvalues", "input"}).value(), "AAAA");

    PluginInstance& tool = *find("Rig")->getInstance();
    tool.setSaveData("own", 3);
    tool.getStoredInput().getValues()[0].setKey(1, 2);
    Tag newer = saved(mask);
    EXPECT_EQ(at(newer, {"savedata"}).value(), "b3du");
    EXPECT_NE(at(newer, {"recordedinputvalues", "input"}).value(), "AAAA");
}

TEST_F(KeptElementsTest, TheUserEndsTheKeepingAndNobodyElse) {
    const Tag data = withKept(SaveMask::kModel);
    core->create(data, nullptr, false);
    PluginInstance& tool = *find("Rig")->getInstance();
    UniDevice::Property& move = *tool.findProperty("Move");
    const auto inputs = [&] { return tool.getInputProfile("").toText("", "", ""); };
    const Tag preset = tool.getInputProfile("Mine");
    const auto property = [&] { return tool.getInputProfile("").child(0); };

    auto* const device = new Testing::ScriptedDevice("Gone");
    UniDevice::Control* const axis = device->add("X");
    EXPECT_EQ(move.control, nullptr);
    EXPECT_EQ(property().childCount("control"), 1) << "the device alone changes nothing";
    move.bind(axis);
    EXPECT_EQ(property().childCount("control"), 1) << "only the binding that it has";
    move.bind(nullptr);
    EXPECT_EQ(property().childCount("control"), 0) << "bound and cleared";
    EXPECT_EQ(property().child("curve").value(), "2");

    EXPECT_EQ(tool.addProperty("Zoom", UniDevice::finite, nullptr)->offset, 2);
    EXPECT_EQ(tool.getInputProfile("").childCount("property"), 3) << "it is the tool's own now";
    (void)tool.applyInputProfile(Tag("<profile name=\"p\"/>"));
    for (const char* kept : {"later", "curve", "control"})
        EXPECT_EQ(inputs().find(kept), std::string::npos) << kept;
    delete device;
    EXPECT_EQ(tool.applyInputProfile(preset), 1) << "a preset holds what is kept";
    EXPECT_NE(inputs().find("Gone: X"), std::string::npos);

    tool.applyConfigProfile(Tag());
    EXPECT_EQ(tool.getConfigProfile("").childCount("panel"), 1);
    tool.applyConfigProfile(Tag("<profile name=\"p\"><panel>new</panel></profile>"));
    EXPECT_EQ(tool.getConfigProfile("").toText("", "", ""),
              "<profile name=\"\"><panel>new</panel></profile>");

    rig->onExtend = [](ScriptedTool&, std::int32_t id, std::intptr_t out) {
        if (id == ToolExtension::kGetCustomData)
            *reinterpret_cast<Tag*>(out) = Tag::element("later", "own");
        return std::intptr_t{0};
    };
    const Tag again = saved(SaveMask::kModel);
    EXPECT_EQ(again.childCount("later"), 1) << "the tool writes an element of that name itself";
    EXPECT_EQ(again.child("later").value(), "own");
}

TEST_F(KeptElementsTest, AParentThatIsMissingIsKeptUntilTheNodeGetsAnother) {
    const auto create = [this](const std::string& parentOfBody) {
        core->deleteAllInstances();
        adaptor.nodes.clear();
        core->create(Tag("<MVR_Plugin><type>PRM</type><name>Rig</name><nodeinfo>"
                         "<node name=\"Body\">" +
                         parentOfBody + "</node></nodeinfo></MVR_Plugin>"),
                     nullptr, false);
    };
    const auto parent = [this] {
        Tag now = saved(SaveMask::kModel);
        return at(now, {"nodeinfo", "node", "parent"}).toText("", "", "");
    };
    const std::string missing[] = {"<parent external=\"Gone\">Base</parent>",
                                   "<parent>Nowhere</parent>", "<parent>Body</parent>"};
    Testing::TestNode stand("Stand", nullptr);
    for (const std::string& each : missing) {
        create(each);
        EXPECT_EQ(parent(), each);
        Testing::TestNode& body = *adaptor.findNode("Body");
        body.setParent(&stand);
        EXPECT_EQ(parent(), "<parent/>") << each;
        body.setParent(nullptr);
        EXPECT_EQ(parent(), each) << "the user's step is undone";
        EXPECT_EQ(find("Rig")->applyAttributes(
                      Tag("<MVR_Plugin><name>Rig</name><nodeinfo><node name=\"Body\"><parent/>"
                          "</node></nodeinfo></MVR_Plugin>"),
                      SaveMask::kParent),
                  0);
        EXPECT_EQ(parent(), "<parent/>") << "a newer one could be applied";
        expectNothingOut();
    }
}

TEST_F(KeptElementsTest, ANodeThatTheHostCantMakeIsKeptUntilItIsThere) {
    adaptor.unmakableNode = "Ghost";
    const std::string ghost = "<node name=\"Ghost\"><visible>false</visible><hpnode>d</hpnode>"
                              "<later/></node>";
    core->create(Tag("<MVR_Plugin><type>PRM</type><name>Rig</name><nodeinfo><group>g</group>" +
                     ghost + "<select external=\"Gone\">Body</select></nodeinfo></MVR_Plugin>"),
                 nullptr, false);
    EXPECT_EQ(getFaults(*core)->list().size(), 2U) << "one for the node, one for the selection";
    const auto nodeInfo = [this](std::uint32_t mask) {
        return saved(mask).child("nodeinfo").toText("", "", "");
    };
    EXPECT_EQ(nodeInfo(SaveMask::kModel), "<nodeinfo><group>g</group>" + ghost +
                                              "<select external=\"Gone\">Body</select></nodeinfo>");
    EXPECT_EQ(
        nodeInfo(SaveMask::kVisible),
        "<nodeinfo><group>g</group><node name=\"Ghost\"><visible>false</visible><later/></node>"
        "</nodeinfo>");
    EXPECT_EQ(nodeInfo(SaveMask::kScene), "<nodeinfo><group>g</group></nodeinfo>")
        << "a scene that asks for the node couldn't make the tool";
    adaptor.unmakableNode.clear();
    find("Rig")->getInstance()->createNode("Ghost", 0, 0);
    EXPECT_EQ(saved(SaveMask::kModel).child("nodeinfo").childCount("node"), 1);
}

/// A property whose profile names the control "Old: X".
struct KeptBindingTest : KeptElementsTest {
    static void lose(const std::string& name) {
        delete UniDevice::DeviceHandler::instance()->findDevice(name, 0);
    }
    std::string savedControl() const {
        const Tag now = inputs.describe("", false);
        return now.child(0).child("control").child("description").value();
    }
    void applyProfile(bool isControlThere) {
        if (isControlThere)
            (new Testing::ScriptedDevice("Old"))->add("X");
        other = (new Testing::ScriptedDevice("New"))->add("X");
        const Tag profile("<profile><property name=\"Move\"><control device=\"Old\" type=\"X\" "
                          "index=\"0\"><description>Old: X</description></control></property>"
                          "</profile>");
        EXPECT_EQ(inputs.apply(profile), isControlThere ? 0 : 1);
    }

    InstanceInputs inputs;
    UniDevice::Property& move = *inputs.add("Move", UniDevice::finite);
    TemporaryControl standIn{0};
    UniDevice::Control* other = nullptr;
};

TEST_F(KeptBindingTest, OutlivesItsControlUntilThePropertyIsBoundAnew) {
    const struct {
        const char* name;
        bool isThere; // when the profile is applied
        std::function<void()> act;
        const char* expected;
    } cases[] = {
        {"it goes", true, [] { lose("Old"); }, "Old: X"},
        {"it goes in a simulated take", true,
         [this] {
             standIn.standIn(move);
             EXPECT_EQ(savedControl(), "Old: X");
             lose("Old");
             EXPECT_EQ(savedControl(), "Old: X");
             standIn.giveBack(move);
         },
         "Old: X"},
        {"it isn't there in a simulated take", false,
         [this] {
             standIn.standIn(move);
             standIn.giveBack(move);
         },
         "Old: X"},
        {"bound to another, which goes", true,
         [this] {
             move.bind(other);
             lose("New");
         },
         "New: X"},
        {"cleared, and gone", true,
         [this] {
             move.bind(nullptr);
             lose("Old");
         },
         ""},
        {"bound and cleared while it isn't there", false,
         [this] {
             move.bind(other);
             move.bind(nullptr);
         },
         ""},
        {"bound to what nobody can find again, which goes", false,
         [this] {
             UniDevice::Control loose(nullptr, UniDevice::finite, 0);
             move.bind(&loose);
         },
         ""},
    };
    for (const auto& each : cases) {
        applyProfile(each.isThere);
        each.act();
        EXPECT_EQ(savedControl(), each.expected) << each.name;
        lose("Old");
        lose("New");
    }
}

} // namespace
