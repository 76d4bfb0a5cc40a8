#include "stage/scene/scene_file.h"

#include "core/contract/adaptor_interface.h"
#include "platform/temporary_folder.h"
#include "stage/scene/scene.h"
#include "stage/scene/timeline.h"
#include "stage/scene/undo_list.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <memory>
#include <string>

namespace Stage {
namespace {

class SceneFileTest : public testing::Test {
protected:
    void SetUp() override {
        StageNode& hand =
            *scene.create("> odd \"one\" \xff <&amp;", tool, MVR::kNodeCamera, nullptr);
        StageNode& rig = *scene.create("Rig", nullptr, 17, nullptr);
        hand.setParent(&rig);
        auto mesh = std::make_shared<MVR::CMesh>();
        mesh->vertices = {{0.1, 1e-300, 3}, {NAN, 0, 0}, {1, 2, 3}};
        mesh->faces = {0, 1, 2};
        hand.setMesh(mesh);
        hand.getHighPolyNames() = {"Body", "Wheel 2"};
        hand.setLens(0, kFNumber, 0.1 + 0.2);
        rig.hide();
        rig.setTransform(0, {{0.1 + 0.2, -0.0, 5e-324}, {3, 0, 0, -4}, {-1, 1, 1e9}});
        scene.setRecording(true);
        for (int i = 0; i < 100; ++i) {
            hand.setPosition(i / 30.0, {i * 0.1, i == 7 ? NAN : 1e300, -INFINITY});
            hand.setLens(i / 30.0, kFocalLength, 24 + i / 7.0);
        }
        timeline.setRate(29.97);
        timeline.setRange(-1, 3);
        timeline.setTime(0.5);
        configuration.addChild(MVR::Tag::element("MVR_Plugin")).addChild(MVR::Tag::element("x", 1));
    }

    UndoList undo;
    Scene scene{undo};
    Timeline timeline;
    MVR::CInterface* const tool = reinterpret_cast<MVR::CInterface*>(&timeline);
    MVR::Tag configuration = MVR::Tag::element("MVR");
    TemporaryFolder folder;
    const std::string path = folder.path + "a.scene";
    std::string error;
};

TEST_F(SceneFileTest, AllOfASceneComesBackToTheLastBit) {
    ASSERT_TRUE(
        writeSceneFile(path, takeScene(scene, timeline, {{tool, "Hand"}}, configuration), error))
        << error;
    const std::string first = folder.read("a.scene");
    SceneData data;
    ASSERT_TRUE(readSceneFile(path, data, error)) << error;
    EXPECT_EQ(data.configuration, configuration);

    UndoList otherUndo;
    Scene other{otherUndo};
    Timeline otherTime;
    bringScene(data, other, otherTime);
    ASSERT_EQ(other.getNodes().size(), 2U);
    const StageNode& hand = *other.getNodes()[0];
    EXPECT_EQ(hand.getSavedOwner(), "Hand");
    EXPECT_EQ(hand.getParentNode(), other.getNodes()[1].get());
    EXPECT_EQ(hand.getMesh()->faces.size(), 3U);
    EXPECT_EQ(hand.evaluateLens(1), scene.getNodes()[0]->evaluateLens(1));
    EXPECT_TRUE(std::isnan(hand.getCurves()[1].getKeys()[7].value));
    EXPECT_EQ(other.getNodes()[1]->getRest(), scene.getNodes()[1]->getRest());
    EXPECT_FALSE(other.getNodes()[1]->isShown());
    EXPECT_EQ(otherTime.getEnd(), timeline.getEnd());

    // Once the tool is found again, the same file is written.
    other.getNodes()[0]->setOwner(tool);
    ASSERT_TRUE(writeSceneFile(
        path, takeScene(other, otherTime, {{tool, "Hand"}}, data.configuration), error));
    EXPECT_EQ(folder.read("a.scene"), first);
}

TEST_F(SceneFileTest, ABadFileIsRefusedWithThePosition) {
    ASSERT_TRUE(
        writeSceneFile(path, takeScene(scene, timeline, {{tool, "Hand"}}, configuration), error));
    const std::string good = folder.read("a.scene");
    const struct {
        const char* from;
        const char* to;
        const char* reason;
    } cases[] = {
        {"</node>", "</nod>", "a.scene:25:4: a close tag of another element"},
        {"<MirvaneScene version=\"1\">", "<Mesh/>", "isn't a scene but \"Mesh\""},
        {"version=\"1\">", "version=\"2\">", "version \"2\"; this stage reads version 1"},
        {"<rate>29.97", "<rate>0", "a rate of 0"},
        {"<rate>29.97", "<rate>nan", "\"rate\" must hold 1 number, not \"nan\""},
        {"<time>0.5", "<time>1e300", "too far from 0"},
        {"<start>-", "<start>4", "the range ends before"},
        {"<time>0.5</time>", "", "it has no \"time\""},
        {"<kind>camera", "<kind>tree", "there is no kind \"tree\""},
        {"<kind>camera", "<kind>4294967296", "there is no kind"},
        {"<parent>Rig", "<parent>Rag", "\"Rag\", isn't there"},
        {"<name>Rig</name>", "<name>Rig</name><parent>Rig</parent>", "hangs below itself"},
        {"<visible>false", "<visible>no", "node 2 \"Rig\": \"visible\""},
        {"<scale>-1 1 1e+09", "<scale>-1 1", "\"scale\" must hold 3 numbers"},
        {"<scale>-1 1 1e+09", "<scale>1 1 1 1", "holds \"1\" after its numbers"},
        {"<lens>35", "<lens>0", "\"lens\" must hold numbers above 0, not \"0 10 "},
        {"<lens>35", "<lens>", "\"lens\" must hold 3 numbers"},
        {"<curve name=\"tx\">", "<curve name=\"zoom\">", "no curve \"zoom\""},
        {"<curve name=\"ty\">", "<curve name=\"tx\">", "\"tx\" appears twice"},
        {"<curve name=\"tx\">0 0 ", "<curve name=\"tx\">9 0 ", "key 2: the time doesn't rise"},
        {"<curve name=\"tx\">0 0 ", "<curve name=\"tx\">inf 0 ", "key 1: the time is not finite"},
        {"<curve name=\"tx\">0 0 ", "<curve name=\"tx\">0 0 x ", "key 2: a time and a value"},
        {"<CMesh>", "<CMesh>!", "the mesh can't be read"},
    };
    SceneData data;
    data.rate = 7;
    for (const auto& bad : cases) {
        std::string text = good;
        ASSERT_NE(text.find(bad.from), std::string::npos) << bad.from;
        text.replace(text.find(bad.from), std::string(bad.from).size(), bad.to);
        folder.add("a.scene", text);
        EXPECT_FALSE(readSceneFile(path, data, error)) << bad.to;
        EXPECT_NE(error.find(bad.reason), std::string::npos) << bad.to << "\n" << error;
        EXPECT_EQ(error.find(path), 0U) << error;
    }
    // Older files have no lens.
    const std::size_t lens = good.find("<lens>");
    folder.add("a.scene",
               std::string(good).erase(lens, good.find("</lens>") + std::strlen("</lens>") - lens));
    SceneData old;
    ASSERT_TRUE(readSceneFile(path, old, error)) << error;
    EXPECT_EQ(old.nodes[0].record.lens, kDefaultLens);

    for (std::size_t i = 0; i + 1 < good.size(); i += 1 + good.size() / 500) {
        folder.add("a.scene", good.substr(0, i));
        EXPECT_FALSE(readSceneFile(path, data, error)) << i;
    }
    EXPECT_FALSE(readSceneFile(folder.path + "none.scene", data, error));
    EXPECT_TRUE(data.rate == 7 && data.nodes.empty()) << "as it was";
}

TEST_F(SceneFileTest, AFailedSaveLeavesTheOldFile) {
    folder.add("a.scene", "old");
    // An attribute with ">" can't be read back.
    configuration.child(0).attributeRef("name") = "a > b";
    EXPECT_FALSE(writeSceneFile(path, takeScene(scene, timeline, {}, configuration), error));
    EXPECT_NE(error.find("could not be read again"), std::string::npos) << error;
    EXPECT_EQ(folder.read("a.scene"), "old");
    configuration.child(0).attributeRef("name") = "";
    EXPECT_FALSE(writeSceneFile("/dev/full", takeScene(scene, timeline, {}, configuration), error));
    EXPECT_NE(error.find("No space left"), std::string::npos) << error;
}

} // namespace
} // namespace Stage
