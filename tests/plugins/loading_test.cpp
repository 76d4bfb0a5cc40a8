#include "data/sdk/base64_buffer.h"
#include "data/sdk/packed_tag.h"
#include "platform/headless/desktop.h"
#include "plugins/libraries/plugin.h"
#include "plugins/tree_test.h"
#include "support/scripted_tool.h"
#include "unidevice/sdk/profile_managers.h"

#include <array>
#include <string>
#include <vector>

namespace {

using namespace MVR;
using testing::HasSubstr;
using testing::Not;
using Testing::ScriptedPlugin;
using Testing::ScriptedTool;
using Testing::TestNode;

struct LoadingTest : Testing::TreeTest {
    void SetUp() override {
        TreeTest::SetUp();
        rig = &ScriptedPlugin::add("Rig");
    }
    static std::string node(const std::string& name, const std::string& more) {
        return "<node name=\"" + name + "\">" + more + "</node>";
    }
    static std::string option(const std::string& host, const std::string& rest) {
        return "<option><compatible>No</compatible><compatible>" + host + "</compatible>" + rest +
               "</option>";
    }
    void expectNoCircle() const {
        for (const auto& made : adaptor.nodes) {
            const TestNode* above = made.get();
            for (int depth = 0; depth < 5 && above != nullptr; ++depth)
                above = above->parent;
            EXPECT_EQ(above, nullptr) << "a circle at " << made->getName();
        }
    }
    void clear() {
        core->getRoot()->remove(true);
        adaptor.clearUndo();
        adaptor.nodes.clear();
    }
    /// The tool "Bad" of the model "Top" has one fault, and the rest is created.
    void expectOneFault(const std::string& more, const std::string& line) {
        newLog();
        Tag data("<MVR>" + rigText("Top", rigText("Bad", more)) + rigText("Good") + "</MVR>");
        data.attributeRef("path") = "/models";
        InstanceReference* const top = core->create(data, nullptr, false);
        ASSERT_NE(top, nullptr) << line;
        EXPECT_EQ(top->getInstanceName(), "Top");
        EXPECT_NE(find("Good"), nullptr) << "the next model of the file";
        const std::string log = newLog();
        EXPECT_THAT(log, HasSubstr("Model Top in /models, " + line + "\n"));
        EXPECT_EQ(log.find("Model Top"), log.rfind("Model Top")) << "one line: " << log;
        expectNoCircle();
        expectNothingOut();
        clear();
    }
    /// Checks that a detailed model was merged below "Body" of the tool and "Leaf" of its child.
    void expectMerged(InstanceReference& car, const std::array<double, 3>& moved) {
        TestNode& body = *adaptor.findNode("Body");
        TestNode& shell = *adaptor.findNode("shell");
        TestNode& glass = *adaptor.findNode("glass");
        EXPECT_EQ(shell.parent, &body);
        EXPECT_EQ(glass.parent, adaptor.findNode("Leaf")) << "that of the tool above";
        EXPECT_EQ(shell.hostName + glass.hostName, "Car_shellCar_glass");
        EXPECT_FALSE(shell.visible || glass.visible);
        double position[3];
        shell.getPosition(position);
        EXPECT_THAT(position, testing::ElementsAreArray(moved));
        glass.getPosition(position);
        EXPECT_THAT(position, testing::Each(0)) << "it goes with its parent";
        EXPECT_EQ(car.findHighPolyNode("shell"), nullptr) << "it has its name";

        adaptor.makeNode("deep", &glass);
        car.setHighPolyVisible(true);
        EXPECT_TRUE(shell.visible && glass.visible && adaptor.findNode("deep")->visible);
        car.setLowPolyVisible(false);
        EXPECT_TRUE(shell.visible);
        EXPECT_FALSE(body.visible || adaptor.findNode("Leaf")->visible);
        shell.isRuled = true;
        car.setHighPolyVisible(false);
        EXPECT_TRUE(shell.visible) << "what controls it is asked instead";
        EXPECT_EQ(shell.rulings, 1);
        EXPECT_FALSE(glass.visible);
    }
    InstanceReference* load(const std::string& more, std::int32_t result) {
        newLog();
        rig->calls.clear();
        adaptor.calls.clear();
        rig->loadResult = result;
        return core->create(Tag(rigText("Saved", more)), nullptr, false);
    }

    ScriptedPlugin* rig = nullptr; // the core's
};

TEST_F(LoadingTest, EachFaultOfAModelIsOneLineAndTheRestIsCreated) {
    const std::string minusOneVertex = Base64Buffer(std::string(12, '\xff').data(), 12).toText();
    struct {
        std::string more; // of the tool "Bad" of the model "Top"
        const char* line;
    } const cases[] = {
        {"<MVR_Plugin><type>None</type><name>Gone</name></MVR_Plugin>",
         "tool Gone, type: there is no such kind of tool: None"},
        {"<MVR_Plugin><type>Root</type><name>Gone</name></MVR_Plugin>",
         "tool Gone, type: there is no such kind of tool: Root"},
        {"<MVR_Plugin compressed=\"1\">AAAA</MVR_Plugin>",
         "tool (unnamed), MVR_Plugin: its packed text can't be read"},
        {packTag(Tag("<profile name=\"p\">x</profile>"), "MVR_Plugin").toText("", "", ""),
         "tool (unnamed), MVR_Plugin: its packed text can't be read"},
        {"<nodeinfo>" + node("n", "<parent>gone</parent>") + "</nodeinfo>",
         "tool Bad, parent of node n: the tool Bad has no node gone"},
        {"<nodeinfo>" + node("n", "<parent external=\"None\">p</parent>") + "</nodeinfo>",
         "tool Bad, parent p: there is no tool None"},
        {"<nodeinfo>" + node("n", "<parent>n</parent>") + "</nodeinfo>",
         "tool Bad, parent of node n: the node n hangs below it"},
        {"<nodeinfo>" + node("a", "<parent>b</parent>") + node("b", "<parent>c</parent>") +
             node("c", "<parent>a</parent>") + "</nodeinfo>",
         "tool Bad, parent of node c: the node a hangs below it"},
        {"<nodeinfo>" + node("n", "<transform>AAAA</transform>") + "</nodeinfo>",
         "tool Bad, transform of node n: it can't be read whole"},
        {"<nodeinfo>" + node("n", "<transform>1,2,3</transform>") + "</nodeinfo>",
         "tool Bad, transform of node n: it can't be read whole"},
        {"<nodeinfo>" +
             node("n", "<transform format=\"component\"><scale>1e308,1,1</scale><scale>1e308,1,1"
                       "</scale></transform>") +
             "</nodeinfo>",
         "tool Bad, transform of node n: it can't be read whole"},
        {"<highpoly><postmerge>1,2,3</postmerge><option><compatible>Stage</compatible></option>"
         "</highpoly>",
         "tool Bad, postmerge: it can't be read whole"},
        {"<highpoly><option><compatible>Stage</compatible><file>a.obj</file></option></highpoly>",
         "tool Bad, highpoly: there is no file that it may use: a.obj"},
        {"<nodeinfo>" + node("n", "<CMesh>" + minusOneVertex + "</CMesh>") + "</nodeinfo>",
         "tool Bad, mesh of node n: it can't be read"},
        {"<nodeinfo><select external=\"None\">n</select></nodeinfo>",
         "tool Bad, select n: there is no tool None"},
        {"<nodeinfo><select>n</select></nodeinfo>", "tool Bad, select: the tool Bad has no node n"},
        {"<recordedinputvalues><input>" +
             Base64Buffer("\x10\0\0\0\xff\xff\xff\xff\x64\0\0\0\xff\xff\xff\xff", 16).toText() +
             "</input></recordedinputvalues>",
         "tool Bad, recorded input 0: its values can't be read"},
        {"<savedata>no base64</savedata>", "tool Bad, savedata: it can't be read"},
        {"<savedata/><nodeinfo>" + node("lost\n", "") + "</nodeinfo>",
         "tool Bad, node lost : it isn't in the scene"},
    };
    for (const auto& each : cases)
        expectOneFault(each.more, each.line);
}

TEST_F(LoadingTest, AToolResumesWithItsNodesAndBlock) {
    std::string block;
    rig->onLoad = [&block](ScriptedTool& tool) { block = "block " + tool.readSaveData(); };
    const std::string nodes = "<nodeinfo>" + node("a", "") + node("b", "") + "</nodeinfo>";
    for (const char* name : {"a", "b"})
        adaptor.makeNode(name, nullptr).lastTool = "Saved";
    place("Saved"); // the scene has this name, the data still finds its own nodes

    InstanceReference* const made = load("<savedata>YQBi</savedata>" + nodes, 0);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(block, std::string("block a\0b", 9));
    EXPECT_EQ(made->getInstanceName(), "Saved_01");
    EXPECT_THAT(rig->calls, testing::ElementsAre("Saved_01 init", "Saved_01 load"));
    EXPECT_EQ(adaptor.getNodes(made->getInstance()).size(), 2U);
    EXPECT_EQ(adaptor.nodes.size(), 2U);
    EXPECT_EQ(made->getInstance()->getConfigProfiles().findElement(kFactorySettings), nullptr)
        << "those are a new tool's";
    expectNothingOut();
    core->deleteAllInstances();
    adaptor.clearUndo();

    ASSERT_NE(load("<savedata/>", 0), nullptr) << "an empty block is a block";
    EXPECT_EQ(block, "block ");
}

TEST_F(LoadingTest, PackedToolsAreReadAtAnyDepthAndUpToTheirDamage) {
    const auto pack = [](const std::string& tool) {
        return packTag(Tag(tool), "MVR_Plugin").toText("", "", "");
    };
    Tag cut = Tag::element("MVR_Plugin", Base64Buffer(rigText("Cut").data(), 40).toText());
    cut.attributeRef("compressed") = "1";
    const std::string deepest = pack(rigText("D"));
    struct {
        std::string data;
        const char* made;
        const char* line;
    } const cases[] = {
        {pack(rigText("A", pack(rigText("B", rigText("C", deepest))) + rigText("E"))),
         "A(B(C(D)) E)", ""},
        {pack(deepest), "D", ""},
        {rigText("A", cut.toText("", "", "")), "A(Rig_01)", "its packed text can't be read whole"},
    };
    for (const auto& each : cases) {
        newLog();
        core->create(Tag(each.data), nullptr, false);
        EXPECT_EQ(tree(), each.made);
        EXPECT_THAT(newLog(), HasSubstr(each.line));
        EXPECT_EQ(getFaults(*core)->list().size(), *each.line == 0 ? 0U : 1U);
        core->deleteAllInstances();
    }
}

TEST_F(LoadingTest, AToolThatCannotResumeIsLeftOutAndReported) {
    place("Saved");
    adaptor.makeNode("a", nullptr).lastTool = "Saved";
    adaptor.makeNode("b", nullptr).lastTool = "Other";
    bool silent = false;
    core->setProperty(102, &silent);
    EXPECT_EQ(load("<savedata/><nodeinfo>" + node("a", "") + node("b", "") + node("c", "") +
                       "</nodeinfo>",
                   0),
              nullptr);
    const std::string message =
        "Some nodes required for this plugin was not found in the scene. Please make sure all "
        "required nodes are present.\nThe following nodes were not found:\n\nSaved_b\nSaved_c\n";
    ASSERT_EQ(Platform::Headless::messageBoxes().size(), 1U);
    EXPECT_EQ(Platform::Headless::messageBoxes()[0].title, "Error loading plugin");
    EXPECT_EQ(Platform::Headless::messageBoxes()[0].text, message);
    EXPECT_THAT(newLog(), HasSubstr(message));
    EXPECT_EQ(adaptor.nodes[0]->getOwner(), nullptr);
    EXPECT_THAT(adaptor.calls, testing::Contains("cancelUndo"));
    EXPECT_THAT(rig->calls, Not(testing::Contains(HasSubstr(" load"))));
    expectNothingOut();

    EXPECT_EQ(load("<savedata>YQ==</savedata>", 1024), nullptr);
    EXPECT_THAT(newLog(), HasSubstr("instance load returned error: General error"));
    EXPECT_EQ(tree(), "Saved");
    EXPECT_EQ(place("Saved_01")->getInstanceName(), "Saved_01") << "those outside block no name";
    while (adaptor.undo()) {
    }
    while (adaptor.redo()) {
    }
    EXPECT_EQ(tree(), "Saved Saved_01") << "nothing of the failures comes with the host's steps";
}

TEST_F(LoadingTest, ANewToolGetsItsStartProfiles) {
    rig->properties = {"Move"};
    PluginInstance& first = rig->place(*core, "First");
    const ConfigProfileManager& configs = first.getConfigProfiles();
    ASSERT_NE(configs.findElement("Factory Settings"), nullptr) << "past the reserved names";
    EXPECT_EQ(configs.elementFile("Factory Settings"), "");
    first.findProperty("Move")->multiplier = 7;
    EXPECT_EQ(
        first.getInputProfiles().addElement(first.getInputProfile("Start Profile"), false, false),
        0);
    EXPECT_EQ(rig->place(*core).findProperty("Move")->multiplier, 7);
    first.findProperty("Move")->multiplier = 3;
    Tag own;
    (void)first.getReference()->save(own, SaveMask::kInputProfile);
    EXPECT_EQ(core->create(own, nullptr, false)->getInstance()->findProperty("Move")->multiplier, 3)
        << "the model's own come first";
}

TEST_F(LoadingTest, TheFirstDetailedModelForThisHostIsMergedHiddenAndNamed) {
    const std::string folder = home.install().substr(0, home.install().rfind('/')) + "/model";
    for (const char* file : {"model/a.obj", "model/b.obj", "secret.obj"})
        home.write(file, "x");
    const std::string fileA = "<file>a.obj</file>";
    const std::string local = "<postmerge><translate>0,5,0</translate></postmerge>";
    const std::string global = "<postmerge><translate>3,0,0</translate></postmerge>";
    const struct {
        std::string highPoly;
        const char* file; // "" for none
        std::array<double, 3> moved;
    } cases[] = {
        {"", "", {}},
        {global, "", {}},
        {option("Other", fileA), "", {}},
        {option("stage", fileA), "", {}},
        {"<option>" + fileA + "</option>", "", {}},
        {option("Stage", fileA), "a.obj", {}},
        {option("Stage", fileA) + global, "a.obj", {3, 0, 0}},
        {global + option("Stage", fileA + local), "a.obj", {0, 5, 0}},
        {global + option("Stage", "<file>none.obj</file>" + local) +
             option("Stage", "<file>b.obj</file>"),
         "b.obj",
         {3, 0, 0}},
        {option("Stage", "<file>..\\secret.obj</file>"), "", {}},
        {option("Stage", "<file/>") + option("Stage", "<noload/>" + fileA) + option("Stage", fileA),
         "",
         {}},
    };
    std::string merged;
    adaptor.onMerge = [&](const std::string& path) {
        merged = path.substr(path.rfind('/') + 1);
        TestNode& shell = adaptor.makeNode("shell", nullptr);
        TestNode& glass = adaptor.makeNode("glass", &shell);
        return std::vector<TestNode*>{&shell, &glass};
    };
    for (const auto& each : cases) {
        merged.clear();
        Tag data = Tag(rigText(
            "Car", "<highpoly>" + each.highPoly + "</highpoly><nodeinfo>" +
                       node("Body", "<hpnode>shell</hpnode><hpnode>none</hpnode>") + "</nodeinfo>" +
                       rigText("Door", "<nodeinfo>" + node("Leaf", "<hpnode>glass</hpnode>") +
                                           "</nodeinfo>")));
        data.attributeRef("path") = folder;
        InstanceReference& car = *core->create(data, nullptr, false);
        EXPECT_EQ(merged, each.file) << each.highPoly;
        EXPECT_THAT(adaptor.findNode("Body")->getHighPolyNames(),
                    testing::ElementsAre("shell", "none"));
        Tag saved;
        (void)car.save(saved, SaveMask::kModel);
        EXPECT_EQ(saved.child("highpoly"), data.child("highpoly"));
        EXPECT_EQ(saved.child("nodeinfo").child(0).childCount("hpnode"), 2);
        if (!merged.empty())
            expectMerged(car, each.moved);
        expectNothingOut();
        clear();
    }
}

} // namespace
