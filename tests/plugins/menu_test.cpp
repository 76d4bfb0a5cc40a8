#include "dialogs/tool_menu.h"
#include "platform/choosers.h"
#include "platform/headless/desktop.h"
#include "plugins/model/model_file.h"
#include "plugins/tree_test.h"
#include "support/scripted_tool.h"

namespace {

using namespace MVR;
using testing::ElementsAre;
using Testing::TestNode;
namespace Headless = Platform::Headless;

struct MenuTest : Testing::TreeTest {
    void SetUp() override {
        TreeTest::SetUp();
        kind = &Testing::ScriptedPlugin::add("Rig");
    }

    InstanceReference& placeRig(const std::string& name) const {
        return *kind->place(*core, name).getReference();
    }
    static void choose(InstanceReference& tool, std::int32_t command) {
        Headless::scriptMenuAnswer(command);
        tool.showMenu();
    }
    void setSilent(bool silent) const { core->setProperty(102, &silent); }
    static std::string belowOf(const TestNode& node) {
        std::string text;
        for (const TestNode* child : node.children) {
            const std::string below = belowOf(*child);
            text += (text.empty() ? "" : " ") + child->getName();
            text += below.empty() ? "" : "(" + below + ")";
        }
        return text;
    }

    Testing::ScriptedPlugin* kind = nullptr;
};

TEST_F(MenuTest, TheMenuShowsWhatCanBeDone) {
    Testing::ScriptedPlugin::add("Boom");
    kind->onInit = [](Testing::ScriptedTool& tool) {
        if (tool.getName() != "rich")
            return;
        tool.getInterface()->addProperty("Pan", 1, nullptr);
        tool.getInterface()->beginPanel();
        tool.getInterface()->addButton("Reset", "", nullptr);
        tool.getInterface()->endPanel();
    };
    core->addRecent(toolData("first"));
    core->addRecent(toolData("second"));
    const auto shown = [](InstanceReference& reference) {
        reference.showMenu();
        std::string text;
        for (const Platform::MenuItem& item : Headless::lastMenu()) {
            text += item.text + (item.isGreyed ? "~" : "") + ";";
            for (const Platform::MenuItem& each : item.items)
                text += " " + each.text + "=" + std::to_string(each.command) + ";";
        }
        return text;
    };
    const std::string rest = "Help documentation;Save;Delete;;Browse...;New tool; Boom=300000; "
                             "Rig=300001;Recent; second=400001; first=400000;";
    EXPECT_EQ(shown(placeRig("rich")), "Configure;Input Settings;" + rest);
    EXPECT_EQ(shown(placeRig("poor")), "Configure~;Input Settings~;" + rest);
}

TEST_F(MenuTest, CommandsCreateBelowTheNodeOrUnderTheRoot) {
    InstanceReference& a = placeRig("a");
    ASSERT_TRUE(a.saveModelFile(home.documents() + "/a.prm"));
    core->addRecent(toolData("again"));
    for (const std::int32_t command : {300000, 300001, 299999, -1, 400000, 400009, 40338})
        choose(a, command);
    EXPECT_EQ(tree(), "a(Rig_01) again");
    EXPECT_EQ(core->getRecentLabel(2), "again") << "the newest";

    Headless::scriptFileAnswer(home.documents() + "/a.prm");
    choose(a, ToolMenu::kBrowse);
    choose(a, ToolMenu::kBrowse); // the user gives up
    EXPECT_EQ(tree(), "a(Rig_01 a_01) again");
    EXPECT_EQ(core->getRecentEntry(3).attribute("path"), home.documents());
    const Headless::ShownFileChooser shown = Headless::fileChoosers().front();
    EXPECT_EQ(shown.chooser.filters[0].text, "Oskel Pre-Rigged Models (*.prm)");
    EXPECT_EQ(shown.chooser.folder, home.documents().substr(0, home.documents().find("/Oskel")) +
                                        "\\Oskelworks\\Mirvane\\PRM");
    EXPECT_FALSE(shown.isSave);

    choose(a, ToolMenu::kDelete);
    choose(*core->getRoot(), ToolMenu::kDelete);
    EXPECT_EQ(tree(), "again");
}

TEST_F(MenuTest, SaveReportsItsResultToTheUser) {
    setSilent(false);
    InstanceReference& a = placeRig("a");
    choose(a, ToolMenu::kSave); // the user gives up
    Headless::scriptFileAnswer(home.documents() + "/saved");
    choose(a, ToolMenu::kSave);
    Headless::scriptFileAnswer(home.documents() + "/none/x.prm");
    choose(a, ToolMenu::kSave);
    const std::vector<Headless::ShownMessageBox> boxes = Headless::messageBoxes();
    ASSERT_EQ(boxes.size(), 2U);
    EXPECT_EQ(boxes[0].title + ": " + boxes[0].text, "Mirvane: PRM saved successfully");
    EXPECT_EQ(boxes[1].text, "Error: Unable to save to the specified file.");
    EXPECT_EQ(boxes[1].flags, Platform::kIconError);
    Tag model;
    ASSERT_TRUE(readModelFile(home.documents() + "/saved.prm", model, nullptr));
    EXPECT_EQ(model.child("name").value(), "a");
    EXPECT_TRUE(model.child("savedata").isEmpty());
}

TEST_F(MenuTest, ACloneBringsTheHostsObjectsAlongInOneUndoStep) {
    // Each tool creates the node "N"; host objects and that of its child hang below that of "a".
    kind->onInit = [](Testing::ScriptedTool& tool) { tool.getInterface()->createNode("N", 0, 0); };
    InstanceReference& a = placeRig("a");
    core->create(Tag(rigText("b")), &a, false);
    TestNode& nodeA = *adaptor.nodes[0];
    TestNode& nodeB = *adaptor.nodes[1];
    TestNode& outer = adaptor.makeNode("outer", nullptr);
    nodeA.setParent(&outer);
    nodeB.setParent(&nodeA);
    TestNode& box = adaptor.makeNode("box", &nodeA);
    adaptor.makeNode("lid", &box);
    adaptor.makeNode("hat", &nodeB);
    adaptor.clearUndo();

    InstanceReference* const copy = a.clone();
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(tree(), "a(b) a_01(b_01)");
    EXPECT_THAT(adaptor.undoNames(), ElementsAre("Clone Oskel Tool"));
    EXPECT_EQ(belowOf(outer), "N(N(hat) box(lid)) N(N(hat copy) box copy(lid copy))");
    for (const auto& node : adaptor.nodes)
        EXPECT_EQ(node->handles, 0) << node->getName();
    EXPECT_EQ(box.handles, 0);
    EXPECT_EQ(core->getRecentCount(), 1);
    adaptor.undo();
    EXPECT_EQ(tree(), "a(b)");
    adaptor.redo();
    EXPECT_EQ(tree(), "a(b) a_01(b_01)");
    EXPECT_EQ(core->getRoot()->clone(), nullptr);

    // A copy with other nodes.
    setSilent(false);
    kind->onInit = [](Testing::ScriptedTool& tool) { tool.getInterface()->createNode("M", 0, 0); };
    const InstanceReference* const odd = a.clone();
    EXPECT_EQ(odd->getInstanceName(), "a_02");
    ASSERT_EQ(Headless::messageBoxes().size(), 1U);
    EXPECT_EQ(Headless::messageBoxes()[0].text, "Primitive node count mismatch!");
    EXPECT_EQ(Headless::messageBoxes()[0].title, "");
    EXPECT_EQ(box.copies.size() + box.handles, 1U) << "no second copy, and nothing kept";
}

TEST_F(MenuTest, TheTreesControlMovesDeletesAndRenames) {
    InstanceReference* const a = place("a");
    InstanceReference* const b = place("b");
    InstanceReference* const a1 = place("a1", a);
    adaptor.clearUndo();
    MVR::TreeControl& control = core->getControl();
    EXPECT_FALSE(control.beginDrag(core->getRoot()));
    control.endDrag(b, false);
    EXPECT_TRUE(control.beginDrag(a));
    EXPECT_TRUE(control.isDragging());
    control.endDrag(a1, false);
    EXPECT_TRUE(control.beginDrag(a));
    control.endDrag(b, true);
    EXPECT_TRUE(control.beginDrag(a));
    control.endDrag(nullptr, false);
    EXPECT_EQ(tree(), "a(a1) b");
    EXPECT_THAT(adaptor.undoNames(), ElementsAre());
    EXPECT_TRUE(control.beginDrag(a));
    control.endDrag(core->getRoot(), false);
    EXPECT_FALSE(control.isDragging());
    EXPECT_EQ(tree(), "b a(a1)");
    EXPECT_THAT(adaptor.undoNames(), ElementsAre("Relocate Oskel Node"));

    EXPECT_TRUE(control.beginDrag(a1));
    a1->remove(false);
    EXPECT_FALSE(control.isDragging()) << "it is gone";
    control.endDrag(b, false);
    EXPECT_TRUE(control.beginDrag(b));
    control.endDrag(a1, false); // as if it were still shown
    EXPECT_EQ(tree(), "b a");
    EXPECT_TRUE(adaptor.undo());

    control.deleteSelected();
    control.select(core->getRoot());
    control.deleteSelected();
    control.select(b);
    control.deleteSelected();
    EXPECT_EQ(tree(), "a(a1)");

    const auto rename = [&](InstanceReference* reference, const std::string& text) {
        adaptor.calls.clear();
        const std::string begun = control.beginLabelEdit(*reference);
        control.endLabelEdit(reference, text.empty() ? nullptr : &text);
        EXPECT_THAT(adaptor.calls, ElementsAre("beginKeyboardCapture", "endKeyboardCapture"));
        return begun + ">" + reference->getInstanceName();
    };
    EXPECT_EQ(rename(a1, "a1"), "a1>a1") << "the present name stays";
    EXPECT_EQ(rename(a1, "a"), "a1>a_01");
    EXPECT_EQ(rename(a1, ""), "a_01>a_01") << "the user gave up";
    EXPECT_EQ(rename(a1, " "), "a_01>a_01") << "no name";
}

} // namespace
