#include "tests/stage/command_run.h"

#include "data/sdk/base64_buffer.h"
#include "data/sdk/byte_buffer.h"
#include "data/sdk/packed_tag.h"

#include <algorithm>

namespace Stage {
namespace {

const std::string kStage = STAGE;

/// Scenes and models from one process to the next.
class SceneCommandTest : public CommandRun {
protected:
    /// A scene with half a second of a still object and of a camera that flies.
    void record(const std::string& scene) {
        ASSERT_EQ(run(kStage +
                      " record --documents . --countdown 0 --seconds 0.4"
                      " --tool 'Tracked Object' --name Object --set 'Position X.offset=3'"
                      " --tool 'Free Camera' --name Camera --set 'Move X.offset=5' --scene " +
                      scene),
                  0)
            << read("stderr");
    }
    /// A good scene, "a.scene", and what a user may have in its place.
    void writeBadFiles() {
        record("a.scene");
        const std::string scene = read("a.scene");
        ASSERT_EQ(run(kStage + " model save a.scene m.prm --documents . && " + kStage +
                      " model show m.prm"),
                  0);
        const std::string model = read("stdout");
        folder.add("cut.scene", scene.substr(0, scene.size() / 2));
        folder.add("other.scene", model);
        folder.add("no_tool.scene", change(scene, "Free Camera", "No Such"));
        folder.add("no_node.scene", change(scene, "<toolnode>Camera", "<toolnode>Gone"));
        ASSERT_EQ(run("mkfifo pipe"), 0);
        // The header contradicts itself.
        const std::size_t at = scene.find("<input>") + 7;
        MVR::Base64Buffer block(scene.substr(at, scene.find('<', at) - at));
        std::string bytes(block.size(), 0);
        ASSERT_TRUE(block.copyTo(bytes.data(), bytes.size()));
        ++bytes[4];
        folder.add("input.scene", change(scene, block.toText(),
                                         MVR::Base64Buffer(bytes.data(), bytes.size()).toText()));
        folder.add("cut.prm", model.substr(0, model.size() / 2));
        folder.add("text.prm", "no model");
        folder.add("none.prm", "<MVR/>");
        folder.add("half.prm", change(model, "Free Camera", "No Such"));
        folder.add("link.prm",
                   change(model, "<parent/>", "<parent external=\"Nobody\">Camera</parent>"));
        folder.add("packed.prm", "<MVR>\n<MVR_Plugin compressed=\"1\">?</MVR_Plugin></MVR>");
        const std::string text = "<a>\n<b></c></a>";
        folder.add("deep.prm", "<MVR compressed=\"1\">" +
                                   MVR::Base64Buffer(text.data(), text.size()).toText() + "</MVR>");
    }
    static std::string change(std::string text, const std::string& from, const std::string& to) {
        EXPECT_NE(text.find(from), std::string::npos) << from;
        for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
            text.replace(at, from.size(), to);
        return text;
    }
};

TEST_F(SceneCommandTest, ASavedTakeIsSimulatedAgainInAnotherProcess) {
    folder.add("camera.txt", kBindings);
    ASSERT_EQ(
        run(SENDER " --quiet --loop --port " + port + " & sender=$!; " + kStage +
            " record --documents . --tool 'Tracked Object' --name Camera --bindings camera.txt"
            " --set 'Position X.multiplier=0.123456789012345' --latency-bind"
            " OSC:/camera/sent:0 --seconds 2 --countdown 1 --scene shot.scene"
            " --resimulate --out-curves here.csv;"
            " code=$?; kill $sender; wait $sender; exit $code"),
        0)
        << read("stderr");
    const std::string shot = read("shot.scene");
    EXPECT_EQ(shot.find("Latency Probe"), std::string::npos) << "no part of the scene";

    // Neither sender nor driver: the recorded input is enough.
    const std::string again = kStage + " resimulate shot.scene --documents . --data . ";
    ASSERT_EQ(run(again + "--out-curves there.csv --scene same.scene --out take.gltf --table"), 0)
        << read("stderr");
    EXPECT_TRUE(read("there.csv") == read("here.csv")) << "the same bytes";
    EXPECT_TRUE(read("same.scene") == shot) << "including bindings to missing controls";
    EXPECT_NE(read("stdout").find("the same to the bit"), std::string::npos);
    EXPECT_NE(read("take.gltf").find("\"rotation\""), std::string::npos);

    ASSERT_EQ(run(again + "--set 'Camera/Position Y.multiplier=2' --scene wide.scene"
                          " --out-curves wide.csv"),
              0)
        << read("stderr");
    const auto before = readTable("here.csv");
    const auto wide = readTable("wide.csv");
    ASSERT_EQ(wide.size(), before.size());
    bool isChanged = false;
    for (std::size_t i = 1; i < wide.size(); ++i) {
        for (std::size_t column = 0; column < wide[i].size(); ++column) {
            const double factor = column == 2 ? 2 : 1;
            EXPECT_EQ(wide[i][column], factor * before[i][column]) << i << ", " << column;
        }
        isChanged = isChanged || wide[i][2] != before[i][2];
    }
    EXPECT_TRUE(isChanged) << "the hand-held camera moved";
    // The saved scene differs only in the parameter.
    ASSERT_EQ(run(kStage + " resimulate wide.scene --documents . --out-curves wide_again.csv"), 0);
    EXPECT_TRUE(read("wide_again.csv") == read("wide.csv"));
    const auto withoutKeys = [](const std::string& text) {
        std::string kept;
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);)
            kept += line.find("<curve name=\"ty\">") == std::string::npos ? line + "\n" : "";
        return kept;
    };
    const std::string old = "<property name=\"Position Y\">\n\t\t\t\t\t\t<multiplier>1<";
    EXPECT_TRUE(withoutKeys(read("wide.scene")) ==
                change(withoutKeys(shot), old, change(old, ">1<", ">2<")));
}

TEST_F(SceneCommandTest, ATakeGoesOnFromASavedScene) {
    record("a.scene");
    const auto countKeys = [this](const std::string& table) {
        const auto rows = readTable(table);
        return std::count_if(rows.begin(), rows.end(),
                             [](const auto& row) { return row[0] < 0.2; });
    };
    ASSERT_EQ(run(kStage + " resimulate a.scene --documents . --out-curves a.csv"), 0);
    ASSERT_EQ(run(kStage +
                  " record --open a.scene --documents . --countdown 0 --start 0.2 --seconds 0.4"
                  " --tool 'Free Camera' --scene b.scene --out-curves b.csv"
                  " --resimulate --set 'Object/Position X.offset=9' --out-curves c.csv"
                  " --scene c.scene"),
              0)
        << read("stderr");
    EXPECT_EQ(countKeys("a.csv"), 2 * 5);
    EXPECT_EQ(countKeys("b.csv"), 2 * 5) << "keys before the start stay";
    EXPECT_EQ(readTable("b.csv").size(), 2 * 16 + 11U) << "two longer takes, a new camera";
    EXPECT_NE(read("c.csv").find("\"Object\",0.6,9,"), std::string::npos) << read("c.csv");
    // A scene has the keys and the parameters of one pass.
    for (const char* pass : {"b", "c"}) {
        const std::string table = std::string(pass) + ".csv";
        ASSERT_EQ(run(kStage + " resimulate " + pass + ".scene --documents . --out-curves again"),
                  0);
        EXPECT_EQ(read("again"), read(table)) << pass;
    }
    EXPECT_NE(read("b.scene").find("<name>Free Camera_02</name>"), std::string::npos);
    EXPECT_NE(read("b.scene").find("<start>0.2</start>"), std::string::npos);
    // One that was cut short ends where its input ends.
    const auto countAll = [this] { return readTable("again").size(); };
    folder.add("cut.scene", change(read("a.scene"), "<end>0.4<", "<end>10<"));
    ASSERT_EQ(run(kStage + " resimulate cut.scene --documents . --out-curves again"), 0);
    EXPECT_EQ(countAll(), 2 * 11U);
    ASSERT_EQ(run(kStage + " resimulate cut.scene --documents . --out-curves again --end 0.8"), 0);
    EXPECT_EQ(countAll(), 2 * 21U);
}

TEST_F(SceneCommandTest, ModelsGoFromSceneToScene) {
    record("a.scene");
    ASSERT_EQ(run(kStage + " model save a.scene m.prm --tool Camera --documents ."), 0);
    EXPECT_EQ(read("stderr"), "");
    ASSERT_EQ(run(kStage + " model load m.prm --open a.scene --scene b.scene --out b.gltf"
                           " --documents ."),
              0);
    EXPECT_EQ(read("stdout"), "m.prm: 1 tool created, 0 faults\n  Camera_01 (Free Camera)\n");
    EXPECT_EQ(read("stderr"), "");
    ASSERT_EQ(run(kStage + " model save b.scene all.prm --documents ."), 0) << read("stderr");
    ASSERT_EQ(run(kStage + " model show all.prm"), 0) << read("stderr");
    MVR::Tag all;
    ASSERT_EQ(all.parse(read("stdout")), 0);
    EXPECT_EQ(all.childCount("MVR_Plugin"), 3);

    // A model, and packed elements in it, are shown alike whatever their packing.
    ASSERT_EQ(run(kStage + " model show m.prm"), 0);
    const std::string text = read("stdout");
    MVR::Tag model;
    ASSERT_EQ(model.parse(text), 0);
    folder.add("plain.prm", model.toText("\r\n", "\t", ""));
    MVR::Tag outer = MVR::Tag::element("MVR");
    outer.addChild(MVR::packTag(MVR::packTag(model, "MVR_Plugin"), "MVR_Plugin"));
    folder.add("packed.xml", outer.toText("", "", ""));
    ASSERT_EQ(run(kStage + " model show plain.prm"), 0);
    EXPECT_EQ(read("stdout"), text);
    ASSERT_EQ(run(kStage + " model show packed.xml"), 0);
    MVR::Tag shown;
    ASSERT_EQ(shown.parse(read("stdout")), 0);
    EXPECT_EQ(shown.child(0), model);

    // The user's folder of models is part of the list.
    std::filesystem::create_directories(folder.path + "documents");
    ASSERT_EQ(run(kStage + " model list --documents documents"), 0) << read("stderr");
    EXPECT_NE(read("stdout").find("Free Camera 0.1.0\n"), std::string::npos) << read("stdout");
    EXPECT_NE(read("stdout").find("  category Objects, Examples\n"), std::string::npos);
    run("cp m.prm \"$(find documents -type d -iname prm)/mine.prm\"");
    ASSERT_EQ(run(kStage + " model list --documents documents"), 0) << read("stderr");
    EXPECT_NE(read("stdout").find("PRM/mine.prm\n"), std::string::npos) << read("stdout");
    EXPECT_EQ(read("stdout").find('\\'), std::string::npos) << "paths of this system";
    EXPECT_EQ(read("stderr"), "");
    ASSERT_EQ(run(kStage + " model list --documents documents --verbose"), 0);
    EXPECT_NE(read("stderr").find("(NOTICE): "), std::string::npos) << "the core's log";
    EXPECT_EQ(run(kStage + " model show m.prm --documents ."), 0);
}

TEST_F(SceneCommandTest, BadScenesAndModelsHaveAMessageAndACode) {
    writeBadFiles();
    const std::string scene = read("a.scene");
    const std::string resimulate = kStage + " resimulate --documents . ";
    const std::string load = kStage + " model load --documents . --scene out.scene ";
    const std::string save = kStage + " model save --documents . ";
    const std::string show = kStage + " model show ";
    const struct {
        std::string command;
        int code;
        const char* words;
    } cases[] = {
        {resimulate, 1, "SCENE is missing"},
        {resimulate + "a.scene b.scene", 1, "\"b.scene\" doesn't belong to an option"},
        {resimulate + "a.scene --set Spin=1", 1, "is not of the form"},
        {resimulate + "a.scene --start 3 --end 2", 1, "ends before its first frame"},
        {resimulate + "a.scene --set Camera/Spin.offset=1", 3, "Camera/Spin.offset=1"},
        {resimulate + "a.scene --scene no/such.scene", 4, "no folder no"},
        {resimulate + "a.scene --scene /dev/full", 4, "No space left"},
        {resimulate + "a.scene --scene pipe", 4, "it is a pipe"},
        {resimulate + "input.scene", 8, "recorded input 0: its values can't be read"},
        {resimulate + "none.scene", 7, "can't read none.scene"},
        {resimulate + "cut.scene", 7, "cut.scene:"},
        {resimulate + "other.scene", 7, "other.scene: it isn't a scene but"},
        {resimulate + "no_node.scene", 8, "tool Camera, node Camera: it isn't in the scene"},
        {kStage + " record --documents . --open cut.scene --seconds 1", 7, "cut.scene:"},
        {kStage + " model", 1, "usage: mirvane-stage model"},
        {kStage + " model sow", 1, "\"model sow\"; did you mean show? (mirvane-stage model"},
        {save + "a.scene x.prm --tool Nobody", 3, "no tool named \"Nobody\"\n"},
        {save + "a.scene x.prm --tool Camra", 3, "did you mean Camera?"},
        {save + "a.scene /dev/full", 4, "/dev/full"},
        {save + "cut.scene x.prm", 7, "cut.scene:"},
        {load + "none_there.prm", 7, "none_there.prm"},
        {load + "cut.prm", 7, "line "},
        {load + "text.prm", 7, "line 1, column 1"},
        {load + "none.prm", 8, "none.prm"},
        {load + "half.prm", 8, "tool Camera, type: there is no such kind of tool: No Such"},
        {load + "link.prm", 8, "tool Object, parent Camera: there is no tool Nobody"},
        {show + "cut.prm", 7, "cut.prm: line "},
        {show + "text.prm", 7, "text.prm: line 1, column 1: "},
        {show + "packed.prm", 7, "packed element 1: its text isn't base64"},
        {show + "deep.prm", 7,
         "packed element 1: line 2, column 6: a close tag of another element"},
    };
    for (const auto& bad : cases)
        expectFailure(bad.command, bad.code, bad.words);
    EXPECT_TRUE(read("a.scene") == scene) << "as it was";
    // Whatever can be created is created, saved and summed up.
    ASSERT_EQ(run(load + "half.prm"), 8);
    EXPECT_EQ(read("stdout"), "half.prm: 1 tool created, 1 fault\n  Object (Tracked Object)\n");
    EXPECT_EQ(run(resimulate + "out.scene"), 0);
}

TEST_F(SceneCommandTest, ASceneIsNotSavedOverWithoutItsTools) {
    writeBadFiles();
    const std::string scene = read("no_tool.scene");
    const std::string resimulate = kStage + " resimulate --documents . no_tool.scene ";
    const std::string open = " --documents . --open no_tool.scene --scene ./no_tool.scene ";
    expectFailure(resimulate + "--scene no_tool.scene", 2,
                  "these tools of the scene can't be created: \"Camera\"");
    expectFailure(kStage + " record --seconds 9" + open, 2, "would be saved without them");
    expectFailure(kStage + " model load m.prm" + open, 2, "or give --force");
    expectFailure(kStage + " model save --documents . no_tool.scene m.prm", 2,
                  "there is no such kind of tool: No Such");
    EXPECT_TRUE(read("no_tool.scene") == scene);
    EXPECT_EQ(run(resimulate + "--scene new.scene"), 8) << "nothing is lost by that";
    EXPECT_EQ(run(resimulate + "--scene no_tool.scene --force"), 8);
    EXPECT_TRUE(read("no_tool.scene") == read("new.scene"));
    EXPECT_EQ(run(resimulate), 0) << "whole, with less";
}

TEST_F(SceneCommandTest, ASaveThatIsKilledLeavesTheOldScene) {
    const std::string resimulate = kStage + " resimulate --documents . ";
    // If it is killed while it writes, as by a limit on the size of files, the old scene stays.
    ASSERT_EQ(run("yes '<node>' | head -c 300000 >big.scene && cp big.scene old.scene"), 0);
    ASSERT_EQ(run(kStage + " record --documents . --countdown 0 --seconds 1.5 --rate 1000"
                           " --tool 'Free Camera' --scene long.scene"),
              0)
        << read("stderr");
    EXPECT_NE(run("ulimit -f 200; " + resimulate + "long.scene --scene old.scene"), 0);
    EXPECT_TRUE(read("old.scene") == read("big.scene"));
    EXPECT_EQ(run("test -s \"$(ls -d .mvr-*.tmp)\""), 0) << "it was not killed while it wrote";
}

} // namespace
} // namespace Stage
