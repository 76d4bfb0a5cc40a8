#include "core/contract/core_interface.h"
#include "plugins/contract/c_interface.h"
#include "plugins/contract/extension_ids.h"
#include "tests/stage/session_test.h"

#include <functional>
#include <string>

namespace Stage {
namespace {

/// A rig with a mesh, a camera below it, and a detailed body from a file.
constexpr const char* kRig = R"(<MVR_Plugin version="2.5">
  <type>Tracked Object</type><name>Rig</name>
  <highpoly><option><compatible>Stage</compatible><file>body.obj</file></option></highpoly>
  <nodeinfo><node name="Object"><parent/><visible>true</visible>
    <CMesh><vertexdata><vertex>0,0,0</vertex><vertex>1,0,0</vertex><vertex>0,1,0</vertex>
    </vertexdata><texcoorddata/><facedata><face>0</face><face>1</face><face>2</face></facedata>
    <tfacedata/></CMesh><hpnode>Body</hpnode></node></nodeinfo>
  <MVR_Plugin version="2.5"><type>Free Camera</type><name>Camera</name><checked>false</checked>
    <nodeinfo><node name="Camera"><transform><translate>1,2,3</translate></transform>
      <parent external="Rig">Object</parent><visible>false</visible></node></nodeinfo>
  </MVR_Plugin></MVR_Plugin>)";

class ModelTest : public SessionTest {
protected:
    void SetUp() override {
        SessionTest::SetUp();
        folder.add("body.obj", "o Body\nv 0 0 0\nv 5 0 0\nv 0 5 0\nf 1 2 3\n"
                               "o Loose\nv 0 0 9\nf 1 2 4\n");
    }
    /// Returns all that a scene's file would hold now.
    std::string getState() {
        EXPECT_TRUE(session.saveScene(folder.path + "state.scene", error)) << error;
        return folder.read("state.scene");
    }
    StageNode* find(const std::string& name) { return session.scene.findByHostName(name); }

    const std::string rig = folder.add("rig.prm", kRig);
};

TEST_F(ModelTest, LoadingAndDeletingGoWithOneUndoAndComeBackWithOneRedo) {
    const std::string empty = getState();
    ASSERT_EQ(session.getModels().load(rig, ""), 0);
    const auto tools = session.adoptTools();
    ASSERT_EQ(tools.size(), 2U);
    ASSERT_NE(find("Rig"), nullptr);
    ASSERT_NE(find("Camera"), nullptr);
    EXPECT_EQ(find("Camera")->getParentNode(), find("Rig"));
    EXPECT_EQ(find("Camera")->evaluateGlobal(0)[14], 3);
    EXPECT_FALSE(find("Camera")->isShown());
    EXPECT_EQ(find("Rig")->getMesh()->faces.size(), 3U);
    ASSERT_NE(find("Rig_Body"), nullptr) << "named after the tool";
    EXPECT_EQ(find("Rig_Body")->getParentNode(), find("Rig"));
    EXPECT_FALSE(find("Rig_Body")->isShown());
    const std::string loaded = getState();

    EXPECT_EQ(session.undo.getUndoCount(), 1U);
    ASSERT_TRUE(session.undo.undo());
    EXPECT_EQ(getState(), empty);
    ASSERT_TRUE(session.undo.redo());
    EXPECT_EQ(getState(), loaded);

    // The tools with their objects, and the objects below those.
    tools[0]->access->extend(MVR::InterfaceExtension::kUnplug, 0);
    EXPECT_EQ(session.undo.getUndoCount(), 2U);
    const std::string deleted = getState();
    EXPECT_EQ(find("Rig"), nullptr);
    EXPECT_EQ(find("Rig_Body"), nullptr);
    EXPECT_EQ(find("Camera"), nullptr);
    ASSERT_TRUE(session.undo.undo());
    EXPECT_EQ(getState(), loaded);
    ASSERT_TRUE(session.undo.redo());
    EXPECT_EQ(getState(), deleted);
    ASSERT_TRUE(session.undo.undo());
    ASSERT_TRUE(session.undo.undo());
    EXPECT_EQ(getState(), empty);
    ASSERT_TRUE(session.undo.redo());
    EXPECT_EQ(getState(), loaded);
}

TEST_F(ModelTest, TheUndoListCanBeDroppedInEachState) {
    // The remaining objects: all four, none, or the one from the file without a tool above.
    const struct {
        std::function<void()> way;
        std::size_t loaded;
        std::size_t deleted;
    } cases[] = {
        {[] {}, 4, 1},
        {[this] { (void)session.undo.undo(); }, 0, 4},
        {[this] { (void)(session.undo.undo() && session.undo.redo()); }, 4, 1},
        {[this] { (void)(session.undo.undo() && session.undo.undo()); }, 0, 0},
    };
    for (const bool isDeleted : {false, true}) {
        for (const auto& state : cases) {
            ASSERT_EQ(session.getModels().load(rig, ""), 0);
            const auto tools = session.adoptTools();
            ASSERT_EQ(tools.size(), 2U);
            if (isDeleted)
                tools[0]->access->extend(MVR::InterfaceExtension::kUnplug, 0);
            state.way();
            session.undo.clear();
            (void)getState();
            EXPECT_EQ(session.scene.getNodes().size(), isDeleted ? state.deleted : state.loaded);
            session.close();
            while (!session.scene.getNodes().empty())
                session.scene.remove(*session.scene.getNodes().back());
            session.undo.clear();
            open(session);
        }
    }
}

TEST_F(ModelTest, ASceneGoesOnAsIfItHadNeverBeenClosed) {
    place("Free Camera", "First", {});
    ASSERT_EQ(session.getModels().load(rig, ""), 0);
    session.timeline.setRange(0, 0.4);
    ASSERT_EQ(session.getCore().resimulate(0, 0.4), 0);
    const std::string saved = getState();
    SceneData data;
    ASSERT_TRUE(readSceneFile(folder.path + "state.scene", data, error)) << error;

    Session other;
    session.close();
    open(other);
    other.openScene(data);
    EXPECT_TRUE(other.getFaults().empty());
    EXPECT_EQ(other.undo.getUndoCount(), 0U);
    EXPECT_EQ(other.getTools().size(), 3U);
    EXPECT_NE(other.scene.findByHostName("Rig")->getOwner(), nullptr) << "found again";
    ASSERT_TRUE(other.saveScene(folder.path + "again.scene", error)) << error;
    EXPECT_EQ(folder.read("again.scene"), saved);
}

} // namespace
} // namespace Stage
