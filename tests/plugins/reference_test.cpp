#include "plugins/tree_test.h"

namespace {

using namespace MVR;
using testing::ElementsAre;
using testing::HasSubstr;

using ReferenceTest = Testing::TreeTest;

TEST_F(ReferenceTest, ALabelSetsTheNameWithOrWithoutThePlugin) {
    InstanceReference* const tool = place("Camera_01");
    place("Rig");
    EXPECT_EQ(tool->getLabel(), "Camera_01 - Empty Plugin");
    struct {
        std::string text;
        const char* label;
    } const cases[] = {{"Boom - Empty Plugin", "Boom - Empty Plugin"},
                       {"Boom", "Boom - Empty Plugin"},
                       {"Rig", "Rig_01 - Empty Plugin"},
                       {"", "Rig_01 - Empty Plugin"},
                       {" \n", "Rig_01 - Empty Plugin"},
                       {" - Empty Plugin", "Rig_01 - Empty Plugin"},
                       {std::string("N\0\x7F>\x1B", 5), "N____ - Empty Plugin"},
                       {"a - Empty Plugin - Empty Plugin", "a - Empty Plugin - Empty Plugin"}};
    for (const auto& each : cases) {
        tool->setLabel(each.text);
        EXPECT_EQ(tool->getLabel(), each.label) << each.text;
    }
}

TEST_F(ReferenceTest, ToolsAreFoundBelowAndWithLookUpBeside) {
    InstanceReference* const a = place("a");
    InstanceReference* const b = place("b", a);
    InstanceReference* const c = place("c", a);
    InstanceReference* const d = place("d", place("x"));
    struct {
        InstanceReference* from;
        const char* name;
        bool lookUp;
        InstanceReference* exclude;
        InstanceReference* found;
    } const cases[] = {
        {a, "a", false, nullptr, a},         {a, "c", false, nullptr, c},
        {a, "c", false, c, nullptr},         {b, "c", false, nullptr, nullptr},
        {b, "c", true, nullptr, c},          {b, "d", true, nullptr, d},
        {b, "d", true, a, nullptr},          {b, "d", true, core->getRoot(), d},
        {b, "none", true, nullptr, nullptr}, {b, "Mirvane", true, nullptr, core->getRoot()}};
    for (const auto& each : cases)
        EXPECT_EQ(each.from->findInstance(each.name, each.lookUp, each.exclude), each.found)
            << each.name;
}

TEST_F(ReferenceTest, RemovalIsOneUndoStepThatRestoresEveryPosition) {
    InstanceReference* const a = place("a");
    InstanceReference* const b = place("b");
    place("c");
    place("b1", b);
    place("b2", b);
    adaptor.clearUndo();
    adaptor.calls.clear();
    newLog();

    b->remove(false);
    EXPECT_EQ(tree(), "a c");
    const std::string child = "beginUndo Delete Oskel Tool|addUndo|beginUndo Delete plugin "
                              "instance|redraw|endUndo|endUndo|";
    std::string calls;
    for (const std::string& call : adaptor.calls)
        calls += call + "|";
    EXPECT_EQ(calls,
              "beginUndo Delete Oskel Tool|" + child + child + child.substr(child.find("addUndo")));
    EXPECT_THAT(adaptor.undoNames(), ElementsAre("Delete Oskel Tool"));

    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(adaptor.undo());
        EXPECT_EQ(tree(), "a b(b1 b2) c");
        EXPECT_TRUE(b->isInTree());
        EXPECT_TRUE(adaptor.redo());
        EXPECT_EQ(tree(), "a c");
    }
    EXPECT_EQ(place("b")->getInstanceName(), "b") << "out of the tree a tool blocks no name";
    b->remove(false); // it is out already
    EXPECT_EQ(tree(), "a c b");

    InstanceReference::Watch watch(b);
    Log::setThreshold(Log::Notice);
    newLog();
    adaptor.clearUndo();
    EXPECT_EQ(watch.get(), nullptr);
    EXPECT_THAT(newLog(), HasSubstr("Deleting reference: b - Empty Plugin"));

    core->getRoot()->remove(false);
    EXPECT_EQ(tree(), "");
    EXPECT_TRUE(adaptor.undo());
    EXPECT_EQ(tree(), "a c b");
    EXPECT_EQ(find("a"), a);
}

TEST_F(ReferenceTest, ToolsMayEndBeforeTheHostsSteps) {
    InstanceReference* const a = place("a");
    InstanceReference* const a1 = place("a1", a);
    place("b");
    adaptor.clearUndo();
    core->relocate(a, a);
    core->relocate(a, a1);
    EXPECT_THAT(adaptor.undoNames(), ElementsAre()) << "not below itself";
    core->relocate(a1, find("b"));
    core->relocate(a, core->getRoot());
    EXPECT_EQ(tree(), "b(a1) a") << "to the end of the same parent";
    core->deleteAllInstances(); // as when it opens another scene
    while (adaptor.undo()) {
    }
    EXPECT_EQ(tree(), "");
}

TEST_F(ReferenceTest, ASavedTreeComesBackWithStatesBindingsAndScene) {
    InstanceReference* const a = place("a");
    InstanceReference* const b = place("b", a);
    InstanceReference* const c = place("c");
    a->setExpanded(false);
    a->setChecked(false, false);
    c->setShown(false);
    SceneNode* const top = a->getInstance()->createNode("top", kNodeHelper, 0);
    top->hide();
    b->getInstance()->createNode("low", kNodeHelper, 0)->setParent(top);
    b->getInstance()->createNode("loose", kNodeHelper, 0);
    UniDevice::Property* const move = b->getInstance()->addProperty("Mo>ve\1", 8, nullptr);
    EXPECT_EQ(b->getInstance()->findProperty("Mo>ve\1"), move);

    const Tag saved = core->getConfiguration();
    EXPECT_EQ(saved.name(), "MVR");
    EXPECT_EQ(Tag(saved.toText("\n", "\t", "")), saved) << "a file can hold all names";
    Tag withParents;
    a->save(withParents, SaveMask::kParent);
    const Tag& nodes = withParents.child("MVR_Plugin").child("nodeinfo");
    EXPECT_EQ(nodes.child(0).child("parent").toText("", "", ""),
              "<parent external=\"a\">top</parent>");
    EXPECT_EQ(nodes.child(1).child("parent").toText("", "", ""), "<parent/>");

    core->deleteAllInstances();
    adaptor.clearUndo();
    top->show();
    core->loadConfiguration(saved);
    EXPECT_EQ(tree(), "a(b) c");
    EXPECT_EQ(core->getConfiguration(), saved) << "in the same order";
    EXPECT_FALSE(find("a")->isExpanded());
    EXPECT_FALSE(find("a")->isChecked());
    EXPECT_TRUE(find("b")->isChecked()) << "each has its own state";
    EXPECT_FALSE(find("c")->isShown());
    EXPECT_FALSE(adaptor.findNode("top")->visible);
    EXPECT_TRUE(adaptor.findNode("low")->visible);

    core->deleteAllInstances();
    adaptor.nodes.clear();
    core->create(withParents, nullptr, false);
    EXPECT_EQ(adaptor.findNode("low")->parent, adaptor.findNode("top"));

    EXPECT_EQ(core->getDetachedConfiguration().childCount(), 0) << "a has a node";
    place("n");
    place("below", find("n"));
    const Tag detached = core->getDetachedConfiguration();
    ASSERT_EQ(detached.childCount(), 1);
    EXPECT_EQ(detached.child(0).child("name").value(), "n");
    EXPECT_TRUE(detached.child(0).child("MVR_Plugin").isEmpty());
}

TEST_F(ReferenceTest, AttributesOfOtherToolsAreRefused) {
    InstanceReference* const a = place("a");
    const std::int32_t invalid = ErrorCode::instance()->report("INVALIDOKFDATASTRUCTURE");
    struct {
        Tag data;
        std::int32_t code;
        const char* line;
    } const cases[] = {
        {Tag("<other/>"), invalid, "Error: The provided data structure is not a MVR_Plugin tag"},
        {toolData("b"), invalid,
         "Error: The provided data structure is not supposed for this instance"},
        {toolData("a", "<nodeinfo><node name=\"n\"><parent external=\"no\">p</parent></node></"
                       "nodeinfo>"),
         invalid, "Error: External instance name was not found"},
        {toolData("a", "<nodeinfo><node name=\"n\"><parent>p</parent></node></nodeinfo>"), invalid,
         "Error: Unable to find node with name: p"},
        {toolData("a", "<nodeinfo><node name=\"n\"><parent>m</parent></node></nodeinfo>"), 0, ""},
        {toolData("a", "<nodeinfo><node name=\"n\"><parent/></node></nodeinfo>"), 0, ""},
    };
    a->getInstance()->createNode("m", kNodeHelper, 0);
    for (const auto& each : cases) {
        newLog();
        EXPECT_EQ(a->applyAttributes(each.data, SaveMask::kParent), each.code);
        EXPECT_THAT(newLog(), HasSubstr(each.line));
    }
    EXPECT_EQ(a->applyAttributes(toolData("a", "<nodeinfo><select>m</select><select>none</select>"
                                               "<select external=\"no\">m</select></nodeinfo>"),
                                 SaveMask::kSelection),
              0);
    EXPECT_TRUE(adaptor.findNode("m")->selected);
}

TEST_F(ReferenceTest, AChainOfTenThousandToolsNeedsNoStack) {
    Log::setThreshold(Log::Error);
    constexpr int kTools = 10000;
    Tag data = toolData("T0");
    for (int i = 1; i < kTools; ++i) {
        Tag outer = toolData("T" + std::to_string(i));
        outer.addChild(std::move(data));
        data = std::move(outer);
    }
    InstanceReference* const top = core->create(data, nullptr, false);
    EXPECT_EQ(core->getInstances(true).size(), static_cast<std::size_t>(kTools));
    const Tag saved = core->getConfiguration();
    core->loadConfiguration(saved);
    EXPECT_EQ(core->getInstances(true).size(), 2U * kTools);
    adaptor.undo();
    adaptor.undo();
    EXPECT_EQ(tree(), "");
    adaptor.redo();
    top->setChecked(false, true);
    EXPECT_EQ(core->getInstances(true).size(), 0U);
    top->remove(true);
    adaptor.clearUndo();
}

} // namespace
