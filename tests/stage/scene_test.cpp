#include "stage/scene/scene.h"

#include "plugins/contract/extension_ids.h"
#include "stage/host/stage_adaptor.h"
#include "stage/scene/timeline.h"
#include "stage/scene/undo_list.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace Stage {
namespace {

class SceneTest : public testing::Test {
protected:
    StageNode& make(const std::string& name, StageNode* parent = nullptr) {
        return *scene.create(name, nullptr, MVR::kNodeHelper, parent);
    }
    std::size_t keyCount(const StageNode& node, std::size_t curve = 0) const {
        return node.getCurves()[curve].getKeys().size();
    }
    /// A take as the core runs it: one undo step, one position per frame.
    void record(StageNode& node, double start, double end, double value) {
        undo.begin("Record");
        scene.setRecording(true);
        node.startRecording(start);
        for (double time = start + 1; time <= end; time += 1) {
            MVR::TransformSnapshot* snapshot = node.getSnapshot(time);
            const double position[3] = {value, value, value};
            snapshot->setPosition(position);
            node.getTransformHandler()->endSnapshot(&node);
        }
        scene.setRecording(false);
        undo.end();
    }

    UndoList undo;
    Scene scene{undo};
    Timeline timeline;
    StageAdaptor adaptor{scene, undo, timeline};
    // Stands for a tool: nothing here looks inside.
    MVR::CInterface* const tool = reinterpret_cast<MVR::CInterface*>(&timeline);
};

TEST_F(SceneTest, ATakeGoesWithOneUndoAndLeavesEarlierKeys) {
    StageNode& node = make("Camera");
    node.setPosition(0, {7, 7, 7});
    record(node, 0, 10, 1);
    EXPECT_EQ(keyCount(node), 11U) << "a key at the start, and one a frame";
    EXPECT_EQ(node.evaluate(0).position[0], 7) << "what stood there";
    const Curves first = node.getCurves();

    record(node, 4.5, 8.5, 2);
    const std::vector<Key> expected = {{0, 7},   {1, 1},   {2, 1},   {3, 1},   {4, 1},
                                       {4.5, 1}, {5.5, 2}, {6.5, 2}, {7.5, 2}, {8.5, 2}};
    EXPECT_EQ(node.getCurves()[0].getKeys(), expected);
    const Curves second = node.getCurves();
    ASSERT_TRUE(undo.undo());
    EXPECT_EQ(node.getCurves(), first);
    ASSERT_TRUE(undo.redo());
    EXPECT_EQ(node.getCurves(), second);
    ASSERT_TRUE(undo.undo());
    ASSERT_TRUE(undo.undo());
    EXPECT_EQ(keyCount(node), 0U);
    EXPECT_EQ(node.evaluate(5).position[0], 7);

    // Outside a take a write sets no key, with or without a curve.
    record(node, 0, 2, 3);
    node.setPosition(1, {9, 9, 9});
    EXPECT_EQ(keyCount(node), 3U);
    EXPECT_EQ(node.evaluate(1).position[0], 3);
}

TEST_F(SceneTest, ACameraHasALensThatToolsReadAndSet) {
    StageNode& camera = *scene.create("Camera", nullptr, MVR::kNodeCamera, nullptr);
    EXPECT_EQ(make("Body").getLensSnapshot(0), 0) << "only cameras have one";
    undo.begin("set the lens");
    MVR::LensSnapshot* lens = MVR::LensSnapshot::fromHandle(camera.getLensSnapshot(0));
    ASSERT_NE(lens, nullptr);
    EXPECT_EQ(camera.getLensSnapshot(0), 0) << "one at a time";
    lens->setFocalLengthMm(50);
    lens->setFocusDistance(2.5);
    lens->setFNumber(1.4);
    for (const double none : {0.0, -1.0, double(NAN), double(INFINITY)})
        lens->setFNumber(none);
    EXPECT_EQ(lens->getFocalLengthMm(), 50);
    EXPECT_EQ(lens->getFocusDistance(), 2.5);
    EXPECT_EQ(lens->getFNumber(), 1.4) << "no lens has 0";
    lens->release();
    undo.end();
    EXPECT_NE(camera.getLensSnapshot(0), 0);
    EXPECT_EQ(keyCount(camera, kFirstLensCurve), 0U) << "no take runs";
    ASSERT_TRUE(undo.undo());
    EXPECT_EQ(camera.evaluateLens(0), kDefaultLens);
}

TEST_F(SceneTest, RotationTakesTheShorterWayWhateverTheSignsAndLengths) {
    StageNode& node = make("Camera");
    const double half = std::sqrt(0.5);
    scene.setRecording(true);
    node.setRotation(0, {0, 0, 0, 2});
    node.setRotation(1, {-half, 0, 0, -half}); // a quarter turn about x, with the other sign
    const Quaternion middle = node.evaluate(0.5).rotation;
    EXPECT_NEAR(std::fabs(middle[0]), std::sin(M_PI / 8), 1e-12);
    EXPECT_NEAR(std::fabs(middle[3]), std::cos(M_PI / 8), 1e-12);
    EXPECT_EQ(node.getCurves()[6].getKeys()[0].value, 2) << "written as given";
    EXPECT_EQ(node.evaluate(0).rotation, kNoRotation) << "evaluated at length 1";
}

TEST_F(SceneTest, GlobalTransformsGoThroughAllParents) {
    StageNode& above = make("Above");
    StageNode& below = make("Below", &above);
    above.setTransform(0, {{10, 0, 0}, {0, 0, 1, 0}, {2, 2, 2}}); // half a turn about z
    MVR::TransformSnapshot* snapshot = below.getSnapshot(0);
    EXPECT_EQ(below.getSnapshot(0), nullptr) << "one at a time";
    Matrix wanted = toMatrix({{6, 0, 0}, kNoRotation, {1, 1, 1}});
    snapshot->setGlobal(wanted.data());
    EXPECT_NEAR(below.getRest().position[0], 2, 1e-12);
    EXPECT_NEAR(below.getRest().scale[0], 0.5, 1e-12);
    Matrix read;
    snapshot->getGlobal(read.data());
    for (std::size_t i = 0; i < read.size(); ++i)
        EXPECT_NEAR(read[i], wanted[i], 1e-12);
    const Transform rest = below.getRest();
    undo.begin("hang");
    below.setParent(nullptr);
    undo.end();
    for (std::size_t i = 0; i < wanted.size(); ++i)
        EXPECT_NEAR(below.evaluateGlobal(0)[i], wanted[i], 1e-12) << "it stays where it is";
    ASSERT_TRUE(undo.undo());
    EXPECT_EQ(below.getRest(), rest);
    above.setParent(&below);
    EXPECT_EQ(above.getParentNode(), nullptr) << "a node can't hang below itself";
}

TEST_F(SceneTest, CreatingMovingAndDeletingCanBeUndone) {
    undo.begin("make");
    StageNode& root = make("Rig");
    StageNode& arm = make("Rig", &root);
    StageNode& hand = make("Hand", &arm);
    arm.setName("Rig");
    undo.end();
    EXPECT_EQ(arm.getSceneName(), "Rig_02") << "names in the scene are unique";

    arm.destroy(1);
    EXPECT_EQ(hand.getParentNode(), &root) << "children go to the parent";
    EXPECT_EQ(scene.findByHostName("Rig_02"), nullptr);
    ASSERT_TRUE(undo.undo());
    EXPECT_EQ(scene.getNodes()[1].get(), &arm) << "back at its place";
    EXPECT_EQ(hand.getParentNode(), &arm);
    EXPECT_EQ(root.getChildren(), std::vector<StageNode*>{&arm});
    ASSERT_TRUE(undo.redo());
    ASSERT_TRUE(undo.undo());

    undo.begin("hang and hide");
    hand.setParent(nullptr);
    hand.hide();
    undo.end();
    ASSERT_TRUE(undo.undo());
    EXPECT_EQ(hand.getParentNode(), &arm);
    EXPECT_TRUE(hand.isShown());
    ASSERT_TRUE(undo.undo());
    EXPECT_TRUE(scene.getNodes().empty());
    ASSERT_TRUE(undo.redo());
    EXPECT_EQ(scene.getNodes().size(), 3U);
    EXPECT_EQ(hand.getParentNode(), &arm);
}

TEST_F(SceneTest, MeshesSelectionAndCopiesCanBeUndone) {
    MVR::CMesh mesh;
    mesh.vertices = {{1, 2, 3}};
    StageNode& plain = make("Body");
    StageNode& other = make("Other");
    StageNode& camera = *scene.create("Camera", nullptr, MVR::kNodeCamera, nullptr);
    EXPECT_EQ(camera.getHelperSnapshot(), nullptr) << "no object whose mesh can be replaced";
    EXPECT_EQ(plain.getMeshSnapshot(0), nullptr) << "it has none";
    other.select();
    undo.begin("give a mesh, select both");
    plain.getHelperSnapshot()->set(mesh);
    plain.getMeshHandler()->endHelperSnapshot(&plain);
    plain.extend(MVR::NodeCommand::kOpenSelection, 0);
    plain.select();
    camera.select();
    camera.extend(MVR::NodeCommand::kCloseSelection, 0);
    undo.end();
    undo.begin("copy");
    auto* copy = static_cast<StageNode*>(plain.duplicate(0));
    copy->setParent(&camera);
    undo.end();
    plain.release(copy);
    EXPECT_EQ(copy->getSceneName(), "Body_02");
    MVR::CMesh read;
    ASSERT_NE(copy->getMeshSnapshot(0), nullptr);
    copy->getMeshSnapshot(0)->get(read);
    EXPECT_EQ(read.vertices, mesh.vertices);

    camera.destroy(1);
    EXPECT_EQ(scene.getSelection(), std::vector<StageNode*>{&plain});
    ASSERT_TRUE(undo.undo());
    EXPECT_EQ(scene.getSelection(), (std::vector<StageNode*>{&plain, &camera}));
    EXPECT_EQ(copy->getParentNode(), &camera);
    ASSERT_TRUE(undo.undo());
    EXPECT_EQ(scene.findByHostName("Body_02"), nullptr);
    ASSERT_TRUE(undo.undo());
    EXPECT_EQ(plain.getMeshSnapshot(0), nullptr);
    EXPECT_EQ(scene.getSelection(), std::vector<StageNode*>{&other});
    ASSERT_TRUE(undo.redo());
    ASSERT_TRUE(undo.redo());
    EXPECT_EQ(scene.findByHostName("Body_02"), copy);
    EXPECT_EQ(copy->getParentNode(), &camera);

    // Cancelling a step inside another undoes only its own part.
    undo.begin("outer");
    other.setName("Body");
    undo.begin("inner");
    other.setName("Gone");
    other.hide();
    undo.cancel();
    undo.end();
    EXPECT_EQ(other.getSceneName(), "Body_03");
    EXPECT_TRUE(other.isShown());
    ASSERT_TRUE(undo.undo());
    EXPECT_EQ(scene.findByHostName("Other"), &other);
    EXPECT_EQ(scene.findByHostName("Gone"), nullptr);
}

TEST_F(SceneTest, ToolsFindTheirNodesAndReleaseThem) {
    auto* node = static_cast<StageNode*>(adaptor.createNode(tool, "Camera", MVR::kNodeCamera, 0));
    EXPECT_EQ(adaptor.createNode(tool, "Camera", MVR::kNodeCamera, 0), node) << "made once";
    EXPECT_EQ(adaptor.createNode(nullptr, "Camera"), nullptr);
    MVR::SceneNode* child =
        adaptor.createNode(tool, "Dolly", MVR::kNodeHelper,
                           reinterpret_cast<std::intptr_t>(static_cast<MVR::SceneNode*>(node)));
    EXPECT_EQ(adaptor.getNodes(tool), (std::vector<MVR::SceneNode*>{node, child}));

    // Releasing a handle leaves the owner; giving up the node itself does not.
    MVR::SceneNode* parent = child->getParent();
    EXPECT_TRUE(parent->isSameNode(node));
    child->release(parent);
    EXPECT_EQ(node->getOwner(), tool);
    node->setName("Cam_01");
    node->release(node);
    EXPECT_EQ(adaptor.getNodes(tool), std::vector<MVR::SceneNode*>{child});

    // A saved scene: the tool finds its object by the names.
    MVR::Tag info = MVR::Tag::element("nodeinfo");
    for (const char* name : {"Camera", "Gone"}) {
        MVR::Tag entry = MVR::Tag::element("node");
        entry.attributeRef("name") = name;
        info.addChild(entry);
    }
    const auto resolved = adaptor.resolveNodes(info, "Cam_01", tool);
    ASSERT_EQ(resolved.size(), 2U);
    EXPECT_EQ(resolved[0], node);
    EXPECT_EQ(resolved[1], nullptr);
    EXPECT_EQ(node->bindTest(tool, "Camera"), 0);
    node->release(resolved[0]);
    EXPECT_EQ(node->getOwner(), tool);
}

} // namespace
} // namespace Stage
