#include "data/sdk/packed_tag.h"
#include "plugins/contract/extension_ids.h"
#include "plugins/libraries/plugin.h"
#include "plugins/model/model_file.h"
#include "plugins/tree_test.h"
#include "support/golden.h"
#include "support/scripted_tool.h"

#include <cstdio>
#include <functional>
#include <map>
#include <set>
#include <utility>

namespace {

using namespace MVR;
using testing::HasSubstr;
using Testing::ScriptedPlugin;
using Testing::ScriptedTool;
using Testing::TestNode;

struct SavingTest : Testing::TreeTest {
    void SetUp() override {
        TreeTest::SetUp();
        rig = &ScriptedPlugin::add("PRM"); // the kind whose selections are saved
        rig->properties = {"Move"};
        rig->onExtend = [](ScriptedTool&, std::int32_t id, std::intptr_t data) {
            if (id == ToolExtension::kGetCustomData)
                *reinterpret_cast<Tag*>(data) = Tag::element("customdata", "own");
            return std::intptr_t{0};
        };
        rig->onSave = [](ScriptedTool& tool) { tool.getInterface()->setSaveData("a\0b", 3); };
    }

    PluginInstance& placeRig(const std::string& name, InstanceReference* parent) {
        Tag data = Plugin::makeData("PRM");
        data.addChild(Tag::element("name", name));
        return *core->create(data, parent, false)->getInstance();
    }
    TestNode& makeNode(PluginInstance& tool, const std::string& name, SceneNode* parent) {
        SceneNode* const node = tool.createNode(name, kNodeHelper, 0);
        node->setParent(parent);
        return *static_cast<TestNode*>(node);
    }
    static void move(TestNode& node, double distance) {
        Matrix matrix = kIdentityMatrix;
        matrix[0] = 0.1; // no decimal text holds it
        matrix[12] = distance;
        node.getSnapshot(0)->setGlobal(matrix.data());
        --node.snapshots;
    }
    static CMesh triangle() {
        CMesh mesh;
        mesh.vertices = {{0, 0, 0}, {1, 0, 0}, {0, 0.1, 0}};
        mesh.faces = {0, 1, 2};
        return mesh;
    }
    static Tag saved(InstanceReference& tool, std::uint32_t mask) {
        Tag tag;
        EXPECT_EQ(tool.save(tag, mask), 0);
        return tag;
    }
    /// Creates a tool with one of each thing that can be saved.
    InstanceReference& placeOneOfEach() {
        TestNode& outer = makeNode(placeRig("Other", nullptr), "Outer", nullptr);
        const Tag data(
            "<MVR_Plugin><type>PRM</type><name>Rig</name><visible>false</visible><expanded>"
            "false</expanded><checked>false</checked><highpoly><option><compatible>None"
            "</compatible><file>detail.obj</file></option></highpoly><nodeinfo>"
            "<node name=\"Body\"><hpnode>shell</hpnode><hpnode>glass</hpnode></node>"
            "<node name=\"Wheel\"/><node name=\"Hook\"/><select>Body</select>"
            "<select>Wheel</select></nodeinfo></MVR_Plugin>");
        InstanceReference& reference = *core->create(data, nullptr, false);
        PluginInstance& tool = *reference.getInstance();
        placeRig("Child", &reference);
        TestNode& body = *adaptor.findNode("Body");
        body.set(triangle());
        move(body, 2);
        body.getHighPolyNames() = {"shell", "", "new"};
        makeNode(tool, "Wheel", &body).hide();
        makeNode(tool, "Hook", &outer);
        tool.findProperty("Move")->multiplier = 2.5;
        tool.getStoredInput().getValues().resize(2);
        tool.getStoredInput().getValues()[0].setKey(0.5, 0.1);
        return reference;
    }
    /// Fifty tools on three levels, all of whose nodes hang below those of others.
    InstanceReference& placeBranch() {
        InstanceReference& top = *placeRig("Rig", nullptr).getReference();
        std::vector<PluginInstance*> tools{top.getInstance()};
        for (std::size_t i = 1; i < 50; ++i) // 7 below the first, 6 below each of those
            tools.push_back(&placeRig("Tool_" + std::to_string(i),
                                      i < 8 ? &top : tools[1 + (i - 8) / 6]->getReference()));
        for (std::size_t i = 0; i < tools.size(); ++i) {
            InstanceReference& reference = *tools[i]->getReference();
            reference.setChecked(i % 3 != 0, false);
            reference.setExpanded(i % 4 != 0);
            reference.setShown(i % 5 != 0);
            tools[i]->findProperty("Move")->multiplier = static_cast<double>(i);
            TestNode& body = makeNode(*tools[i], "Body", nullptr);
            TestNode& arm = makeNode(*tools[i], "Arm", &body);
            move(body, static_cast<double>(i));
            move(arm, -0.1 * static_cast<double>(i));
            if (i % 2 == 0)
                arm.set(triangle());
            if (i % 3 == 0)
                arm.hide();
            body.getHighPolyNames() = {"shell_" + std::to_string(i)};
            if (i > 0) // of a tool above, below or beside
                body.setParent(tools[i * 7 % 50 < i ? i * 7 % 50 : i - 1]->createNode("Arm"));
        }
        return top;
    }

    ScriptedPlugin* rig = nullptr; // the core's
};

TEST_F(SavingTest, EachBitOfTheMaskWritesOnlyItsElements) {
    InstanceReference& reference = placeOneOfEach();
    TestNode& body = *adaptor.findNode("Body");
    std::vector<std::uint32_t> masks{0x0,   0x1,   0x2,    0x4,    0x8,    0x40,    0x80,   0x100,
                                     0x200, 0x800, 0x1000, 0x2000, 0x8000, 0x10000, 0x30000};
    for (const std::uint32_t all : {SaveMask::kModel, SaveMask::kClone, SaveMask::kScene,
                                    SaveMask::kDetached, SaveMask::kOwnRequest})
        masks.push_back(all);
    for (const std::uint32_t mask : masks) {
        char name[32];
        std::snprintf(name, sizeof name, "save_%05x.xml", mask);
        Testing::expectGolden(std::string(GOLDEN_FOLDER) + "/" + name,
                              saved(reference, mask).toText("\n", "\t", ""));
    }
    Tag packed = saved(reference, SaveMask::kOwnRequest);
    EXPECT_TRUE(unpackTag(packed));
    EXPECT_EQ(packed, saved(reference, SaveMask::kDetached));
    EXPECT_EQ(saved(*core->getRoot(), SaveMask::kScene | SaveMask::kPacked),
              core->getConfiguration());

    rig->saveResult = 1;
    body.getHighPolyNames().clear();
    const Tag none = saved(reference, SaveMask::kScene | SaveMask::kHighPoly);
    EXPECT_TRUE(none.child("savedata").isEmpty());
    EXPECT_EQ(none.child("nodeinfo").child(0).childCount("hpnode"), 2) << "as they were read";
    InstanceReference& other = *find("Other");
    TestNode& outer = *adaptor.findNode("Outer");
    other.remove(false);
    Log::setThreshold(Log::Notice);
    newLog();
    outer.setOwner(other.getInstance()); // it waits in the host's undo list
    EXPECT_EQ(saved(reference, 1).child("nodeinfo").child(2).toText("", "", ""),
              "<node name=\"Hook\"><parent/></node>");
    EXPECT_THAT(newLog(), HasSubstr("node's parent is not included in the list\n"));
    expectNothingOut();
}

/// Renames the tools of the branch as in `original`, of which it is a copy.
void rename(Tag& copy, const Tag& original, std::map<std::string, std::string>& names) {
    for (std::int32_t i = 0; i < copy.childCount(); ++i) {
        Tag& child = copy.child(i);
        if (child.hasName("MVR_Plugin"))
            rename(child, original.child(i), names);
        if (!child.hasName("name"))
            continue;
        names[child.value()] = original.child(i).value();
        child = original.child(i);
    }
}

void renameLinks(Tag& tag, const std::map<std::string, std::string>& names) {
    for (std::int32_t i = 0; i < tag.childCount(); ++i)
        renameLinks(tag.child(i), names);
    if (const auto found = names.find(tag.attribute("external")); found != names.end())
        tag.attributeRef("external") = found->second;
}

TEST_F(SavingTest, CustomDataIsSavedOrTold) {
    const struct {
        std::function<void(Tag&)> fill;
        const char* saved;
        const char* told;
    } cases[] = {
        {[](Tag&) {}, "", ""},
        {[](Tag& tag) { tag = Tag(); }, "", ""},
        {[](Tag& tag) { tag.addChild(Tag::element("a", 1)); }, "<customdata><a>1</a></customdata>",
         ""},
        {[](Tag& tag) { tag.attributeRef("a") = "1"; }, "<customdata a=\"1\"/>", ""},
        {[](Tag& tag) { tag = Tag::element("mine", 1); }, "<mine>1</mine>",
         "the custom data of Rig won't be given back to it"},
        {[](Tag& tag) { tag = Tag::textNode("x"); }, "", "the custom data of Rig is dropped"},
        {[](Tag& tag) { tag.setName("").append("name"); }, "", "is dropped"},
        {[](Tag& tag) { tag = Tag("<MVR_Plugin><type>x</type></MVR_Plugin>"); }, "", "is dropped"},
    };
    PluginInstance& tool = placeRig("Rig", nullptr);
    const std::string path = home.documents() + "/rig.prm";
    for (const auto& each : cases) {
        rig->onExtend = [&each](ScriptedTool&, std::int32_t id, std::intptr_t data) {
            if (id == ToolExtension::kGetCustomData)
                each.fill(*reinterpret_cast<Tag*>(data));
            return std::intptr_t{0};
        };
        const std::string text =
            saved(*tool.getReference(), SaveMask::kCustomData).toText("", "", "");
        EXPECT_EQ(text, "<MVR_Plugin version=\"2.5\"><type>PRM</type><name>Rig</name>" +
                            std::string(each.saved) + "</MVR_Plugin>");
        ASSERT_EQ(getModels(*core)->save("Rig", path), 0);
        const std::vector<CoreFault> faults = getFaults(*core)->list();
        ASSERT_EQ(faults.size(), *each.told == 0 ? 0U : 1U) << each.saved;
        EXPECT_TRUE(faults.empty() || faults[0].text.find(each.told) != std::string::npos);
    }
}

TEST_F(SavingTest, ABranchOfFiftyToolsComesBackTwiceInEachForm) {
    InstanceReference& top = placeBranch();
    // Its selection is read back only from a model.
    Tag original = saved(top, SaveMask::kModel);
    for (const auto& [tool, node] : {std::pair("", "Arm"), {"", "Body"}, {"Tool_20", "Arm"}}) {
        Tag select = Tag::element("select", node);
        select.attributeRef("external") = tool;
        original.child("nodeinfo").addChild(select);
    }
    ASSERT_EQ(original.child("nodeinfo").child(1).child("parent").value(), "Body");
    const std::string file = home.documents() + "/branch.prm";
    ASSERT_TRUE(writeModelFile(file, original, nullptr));

    const std::vector<std::function<void()>> forms{
        [&] { core->create(original, nullptr, false); },
        [&] { core->create(Tag(original.toText("\r\n", "\t", "")), nullptr, false); },
        [&] { core->create(packTag(original, "MVR_Plugin"), nullptr, false); },
        [&] { EXPECT_EQ(getModels(*core)->load(file, ""), 0); },
    };
    std::set<std::string> allNames;
    for (std::size_t form = 0; form < forms.size(); ++form) {
        for (auto& node : adaptor.nodes)
            node->commands.clear();
        newLog();
        forms[form]();
        EXPECT_EQ(newLog().find("Model "), std::string::npos) << "no fault";
        ASSERT_EQ(core->getRoot()->getChildren().size(), form + 2);
        InstanceReference& made = *core->getRoot()->getChildReference(form + 1);
        Tag again = saved(made, SaveMask::kModel);
        std::map<std::string, std::string> names;
        rename(again, original, names);
        renameLinks(again, names);
        EXPECT_EQ(names.size(), 50U);
        EXPECT_TRUE(again == original) << again.toText("\n", " ", "");
        for (const PluginInstance* tool : core->getInstances(false))
            allNames.insert(tool->getName());
        EXPECT_EQ(allNames.size(), 50 * (form + 2)) << "all names are unique";
        std::vector<InstanceReference*> copies;
        made.collectInstances(copies);
        const auto commandsOf = [&](std::size_t place, const char* name) {
            return static_cast<TestNode*>(copies[place]->getInstance()->createNode(name))->commands;
        };
        EXPECT_THAT(commandsOf(0, "Arm"), testing::ElementsAre(10, 0));
        EXPECT_THAT(commandsOf(0, "Body"), testing::ElementsAre(0));
        expectNothingOut();
    }
    while (adaptor.undo()) {
    }
    EXPECT_EQ(tree(), "");
}

} // namespace
