#include "tests/stage/command_run.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <string>
#include <vector>

namespace Stage {
namespace {

class CommandTest : public CommandRun {
protected:
    /// Checks that each key after the first is the device's value at that frame in "input.csv".
    void expectKeysOfInput(const std::vector<std::vector<double>>& take) const {
        const auto input = readTable("input.csv");
        ASSERT_EQ(input.size() + 1, take.size()) << "each frame, and the start isn't one";
        for (std::size_t i = 0; i < input.size(); ++i) {
            // Four zeros, before the first packet arrives, aren't a rotation.
            const std::size_t columns = input[i] == std::vector<double>(7, 0.0) ? 6 : 7;
            for (std::size_t column = 0; column < columns; ++column)
                EXPECT_EQ(take[i + 1][column + 1], input[i][column]) << "frame " << i + 1;
        }
    }
};

TEST_F(CommandTest, ATakeFromTheNetworkIsRecordedAndSimulatedAgain) {
    folder.add("camera.txt", kBindings);
    const int code =
        run(SENDER " --quiet --loop --port " + port +
            " & sender=$!; " STAGE " record --documents . --tool 'Tracked Object' --name Camera"
            " --bindings camera.txt --seconds 2 --countdown 1 --undo-redo"
            " --latency-bind OSC:/camera/sent:0 --report report.json --log-input input.csv"
            " --out take.gltf --out-curves take.csv"
            " --resimulate --out-curves again.csv"
            " --resimulate --set 'Camera/*.multiplier=2' --out-curves twice.csv;"
            " code=$?; kill $sender; wait $sender; exit $code");
    ASSERT_EQ(code, 0) << read("stderr");
    EXPECT_EQ(read("stdout"), "") << "silence in a pipe";
    EXPECT_EQ(readMessages(), "");

    const auto take = readTable("take.csv");
    const auto again = readTable("again.csv");
    const auto twice = readTable("twice.csv");
    ASSERT_EQ(take.size(), 51U);
    ASSERT_EQ(again.size(), 51U);
    ASSERT_EQ(twice.size(), 51U);
    expectKeysOfInput(take);
    double way = 0;
    for (std::size_t i = 0; i < take.size(); ++i) {
        EXPECT_EQ(take[i][0], static_cast<double>(i) * 0.04);
        for (std::size_t column = 0; column < take[i].size(); ++column) {
            EXPECT_NEAR(again[i][column], take[i][column], 1e-9);
            // Until the first packet arrives, the object neither moves nor turns.
            const bool isMoving = i > 0 && take[i][1] != 0;
            if (!isMoving || column == 0)
                continue;
            EXPECT_NEAR(twice[i][column], 2 * take[i][column], 1e-9);
        }
        way += i > 1 ? std::fabs(take[i][1] - take[i - 1][1]) : 0;
    }
    EXPECT_GT(way, 0) << "the hand-held camera moved";

    const auto report = nlohmann::json::parse(read("report.json"));
    EXPECT_EQ(report["frames"], 50);
    EXPECT_EQ(report["undo_redo"], true);
    EXPECT_EQ(report["keys"], (nlohmann::json{{"Camera",
                                               {{"tx", 51},
                                                {"ty", 51},
                                                {"tz", 51},
                                                {"qx", 51},
                                                {"qy", 51},
                                                {"qz", 51},
                                                {"qw", 51}}}}))
        << "the probe isn't part of the written scene";
    EXPECT_GT(report["latency_ms"]["packets"], 0);
    EXPECT_GE(report["latency_ms"]["p50"], 0.0);
    EXPECT_EQ(report["resimulations"].size(), 2U);
    EXPECT_EQ(report["resimulations"][0]["same_bits"], true);
    EXPECT_LE(report["resimulations"][0]["largest_difference"], 1e-9);
    EXPECT_LT(report["resimulations"][1]["largest_difference"], 100) << "the probe is left out";
    EXPECT_NE(read("take.gltf").find("\"rotation\""), std::string::npos);
}

// over 60 lines because of its table
TEST_F(CommandTest, FailuresHaveTheirOwnMessageAndCode) {
    const std::string record = STAGE " record --documents . --countdown 0 --seconds 0.1 ";
    const struct {
        std::string command;
        int code;
        const char* words;
    } cases[] = {
        {STAGE, 1, "usage: mirvane-stage COMMAND"},
        {STAGE " rekord", 1, "no command named \"rekord\"; did you mean record?"},
        {record + "--tool 'Tracked Object' --as light", 1, "must be camera or camera:OBJECT"},
        {record + "--tool 'Tracked Object' --name Stick --as camera:Stikc", 3, "mean Stick?"},
        {record + "--tol x", 1, "did you mean --tool?"},
        {record + "--tool x --core /nowhere.so", 2, "no core library at /nowhere.so"},
        {record + "--tool x --core osc.xml", 2, "osc.xml"},
        {record + "--tool 'No Such Tool'", 2, "\"No Such Tool\" can't be created"},
        {record + "--tool 'tracked objetc'", 2, "did you mean Tracked Object? ("},
        {record + "--tool 'Tracked Object' --bind 'Spin=OSC:/a'", 3, "no property \"Spin\"\n"},
        {record + "--tool 'Tracked Object' --bind 'Positon X=OSC:/a'", 3, "mean Position X?"},
        {record + "--tool 'Tracked Object' --bind 'Position X=Pad:x'", 3, "Pad:x:0"},
        {record + "--tool 'Tracked Object' --bind 'Position X=Keybord:Q'", 3, "mean Keyboard:"},
        {record + "--tool 'Tracked Object' --name A --resimulate --set 'A/Rotation.offset=1'", 3,
         "did you mean A/Rotation X?"},
        {record + "--tool 'Tracked Object' --resimulate --set Spin.offset=1", 3, "Spin.offset=1"},
        {record + "--tool 'Tracked Object' --out no/such/take.gltf", 4, "no folder no/such"},
        {record + "--tool 'Tracked Object' --out .", 4, "it is a folder"},
        {record + "--tool 'Tracked Object' --out /dev/full", 4, "No space left on device"},
        {record + "--tool 'Tracked Object' --out ''", 1, "--out must not be empty"},
        {record + "--tool 'Tracked Object' --name ' '", 1, "--name must not be blank"},
        {record + "--tool 'Tracked Object' --out one --scene ./one", 1, "would be written twice"},
        {STAGE " model save a.scene ./a.scene", 1, "is read here"},
        {STAGE " model save a.scene ''", 1, "MODEL must not be empty"},
        {STAGE " tools --documents . >/dev/full", 4, "can't write the output"},
        {STAGE " tools --documents . --plugins .", 2, "no tools in"},
        {STAGE " devices --documents . --data .", 2, "no devices"},
        {"HOME=$PWD XDG_CONFIG_HOME=$PWD " STAGE " devices --documents osc.xml/new --data .", 2,
         "osc.xml/new can't be made (Not a directory), so "},
    };
    for (const auto& failure : cases) {
        expectFailure(failure.command, failure.code, failure.words);
        EXPECT_EQ(read("stdout"), "") << failure.command;
    }
    // Ctrl+C, once the program handles it: signal 2 is among those that it catches.
    EXPECT_EQ(run(record +
                  "--seconds 60 --tool 'Tracked Object' --out-curves short.csv & pid=$!;"
                  " until grep -q '^SigCgt:.*[2367abef]$' /proc/$pid/status; do sleep 0.05; done;"
                  " sleep 0.5; kill -INT $pid; wait $pid"),
              5);
    EXPECT_NE(read("short.csv"), "");
    folder.add("kept.csv", "an earlier take");
    EXPECT_EQ(run("timeout -s HUP 1.5 " + record +
                  "--countdown 30 --tool 'Tracked Object' --out-curves kept.csv; test $? = 124 && "
                  "cat kept.csv"),
              0);
    EXPECT_EQ(read("stdout"), "an earlier take");
    for (const std::string command : {"", "record", "tools", "devices", "resimulate", "model",
                                      "model save", "model load", "model list", "model show"}) {
        EXPECT_EQ(run(std::string(STAGE) + " " + command + " --help"), 0);
        EXPECT_EQ(read("stdout").rfind("usage: mirvane-stage ", 0), 0U) << command;
        EXPECT_EQ(run(std::string(STAGE) + " " + command + " --version"), 0);
        EXPECT_EQ(read("stdout").rfind("mirvane-stage ", 0), 0U) << command;
    }
}

TEST_F(CommandTest, ToolsAndDevicesAreListed) {
    // A bad library must not hide the others.
    folder.add("plugins/a_text.so", "no library");
    ASSERT_EQ(run("mkfifo plugins/a_pipe.so"), 0);
    for (const char* name : {"tracked_object.so", "free_camera.so"}) {
        std::filesystem::create_symlink(std::filesystem::path(CORE).parent_path() / "plugins" /
                                            name,
                                        folder.path + "plugins/" + name);
    }
    ASSERT_EQ(run(STAGE " tools --documents . --plugins plugins"), 0) << read("stderr");
    EXPECT_EQ(read("stdout"),
              "Free Camera 0.1.0\n  A camera that is flown by velocities, and zooms\n"
              "  category Cameras;Examples, by Mirvane\n  " +
                  folder.path +
                  "plugins/free_camera.so\n"
                  "Tracked Object 0.1.0\n  An object that follows a tracking device\n"
                  "  category Objects;Examples, by Mirvane\n  " +
                  folder.path + "plugins/tracked_object.so\n");
    EXPECT_NE(read("stderr").find("plugins/a_text.so: it can't be loaded: "), std::string::npos);

    ASSERT_EQ(
        run(SENDER " --quiet --loop --port " + port +
            " & sender=$!; " STAGE
            " devices --documents . --seconds 2; code=$?; kill $sender; wait $sender; exit $code"),
        0)
        << read("stderr");
    EXPECT_EQ(read("stdout").rfind("OSC: ", 0), 0U) << "no keyboard\n" << read("stdout");
    EXPECT_NE(read("stdout").find("OSC:/camera/position:0"), std::string::npos) << read("stdout");
    EXPECT_EQ(read("stderr"), "");

    folder.add("osc.xml", "<osc><port>many</port></osc>");
    for (const char* command : {" devices --documents . --seconds 0",
                                " record --documents . --tool 'Tracked Object' --countdown 0 "
                                "--seconds 0.1"}) {
        EXPECT_EQ(run(std::string(STAGE) + command), 0);
        EXPECT_EQ(read("stderr").rfind("mirvane-stage: OSC: port is not a number", 0), 0U)
            << read("stderr");
    }
}

} // namespace
} // namespace Stage
