#include "motion.h"

#include "osc_device.h"

#include "core/util/sdk/singleton.h"
#include "platform/temporary_folder.h"

#include <gmock/gmock.h>

#include <cmath>
#include <sys/wait.h>

namespace {

using testing::HasSubstr;

int run(const std::string& options) {
    const std::string command = OSC_SENDER " " + options + " >/dev/null 2>&1";
    return WEXITSTATUS(std::system(command.c_str()));
}

TEST(OscSenderTest, TheGeneratedMovementIsSmoothAndRepeats) {
    const Motion motion = makeHandheldMotion();
    ASSERT_EQ(motion.size(), 3000u);
    double reach = 0.0;
    for (std::size_t i = 0; i < motion.size(); ++i) {
        const MotionSample& a = motion[i];
        const MotionSample& b = motion[(i + 1) % motion.size()];
        double length = 0.0, turn = 0.0, step = 0.0;
        for (int k = 0; k < 4; ++k) {
            length += a.rotation[k] * a.rotation[k];
            turn += a.rotation[k] * b.rotation[k];
        }
        for (int k = 0; k < 3; ++k)
            step = std::max(step, std::abs(a.position[k] - b.position[k]));
        EXPECT_NEAR(length, 1.0, 1e-12) << i;
        EXPECT_GT(turn, 0.9999) << i;
        EXPECT_LT(step, 0.02) << i;
        reach = std::max(reach, std::abs(a.position[0]));
    }
    EXPECT_GT(reach, 0.1) << "it moves";
}

TEST(OscSenderTest, BadMotionFilesAreNamedWithTheirLine) {
    TemporaryFolder folder;
    const std::string blanks(992, ' ');
    struct Case {
        std::string text;
        const char* error;
    };
    const Case cases[] = {
        {"1 0 0 0" + blanks + "\n", ":1: expected 8 numbers"},
        {"#\n1 0 0 0" + blanks + " 0 0 0 1\n", ":2: the line has more than 1000 bytes"},
        {"# only a comment\n\n", "holds no samples"},
        {"#\n1 0 0 0 0 0 0 1\n2 0 0 0 0 0 1\n", ":3: expected 8 numbers"},
        {"1 0 0 0 0 0 0 1 9\n", ":1: expected 8 numbers"},
        {"1 0 x 0 0 0 0 1\n", ":1: not a number: x"},
        {"1 0 0 0 0 0 0 1\ninf 0 0 0 0 0 0 1\n", ":2: the time is out of range"},
        {"1 0 nan 0 0 0 0 1\n2 0 0 0 0 0 0 0\n", "holds no samples"},
        {"1 0 0 0 0 0 0 2\n", ":1: the quaternion's length"},
    };
    for (const Case& c : cases) {
        Motion motion;
        MotionNotes notes;
        std::string error;
        EXPECT_FALSE(readMotion(folder.add("m.txt", c.text), motion, notes, error));
        EXPECT_THAT(error, HasSubstr(c.error));
        EXPECT_TRUE(motion.empty());
    }
    Motion motion;
    MotionNotes notes;
    std::string error;
    EXPECT_FALSE(readMotion(folder.path, motion, notes, error));
    EXPECT_THAT(error, HasSubstr("can't be read"));
}

TEST(OscSenderTest, ARealSessionIsAcceptedAsItIs) {
    TemporaryFolder folder;
    const std::string pose = " 0 0 0 0 0 0 1\n";
    std::string text;
    // A late packet, an equal time, a gap, a clock that begins anew, and two lost poses.
    for (const char* time :
         {"10", "10.01", "10.02", "10.01", "10.03", "10.03", "10.5", "2", "2.01"})
        text += time + pose;
    text += "2.02 nan 0 0 0 0 0 1\n2.03 0 0 0 0 0 0 0\n2.04" + pose;
    Motion motion;
    MotionNotes notes;
    std::string error;
    ASSERT_TRUE(readMotion(folder.add("m.txt", text), motion, notes, error)) << error;
    const double moments[] = {10, 10.01, 10.02, 10.02, 10.03, 10.03, 10.5, 10.5, 10.51, 10.54};
    ASSERT_EQ(motion.size(), std::size(moments));
    for (std::size_t i = 0; i < motion.size(); ++i)
        EXPECT_NEAR(motion[i].timeSeconds, moments[i], 1e-9) << i;
    EXPECT_EQ(notes.toText(),
              "equal times 1, falling times 2, gaps 1 (longest 0.47 s), samples without a pose 2");
}

TEST(OscSenderTest, SendsAFileAtItsOwnPaceAndExactly) {
    TemporaryFolder folder;
    std::string text = "# time x y z qx qy qz qw\n";
    for (int i = 0; i < 20; ++i) {
        text += std::to_string(1305031098.5 + i * 0.01) + " 0.1 " + std::to_string(i) +
                " 3\t0 0 0 1\r\n";
    }
    auto* device = new OscDevice({"127.0.0.1", 0, ""}, [](const std::string&) {});
    const std::string port = " --port " + std::to_string(device->port());
    const std::string file = " --file " + folder.add("m.txt", text);

    EXPECT_EQ(run("--quiet" + port + file), 0);
    device->update(0);
    ASSERT_EQ(device->controlCount(), 9);
    EXPECT_EQ(device->control(0)->type, "/camera/position");
    EXPECT_EQ(device->control(0)->value, 0.1);
    EXPECT_EQ(device->control(1)->value, 19.0);
    EXPECT_EQ(device->control(6)->value, 1.0);
    EXPECT_EQ(device->control(7)->type, "/camera/sent");
    EXPECT_EQ(device->control(8)->value, 19.0);

    EXPECT_EQ(run("--loop --seconds 0.055 --speed 10 --prefix /b" + port + file), 0);
    device->update(0);
    EXPECT_EQ(device->control(9)->type, "/b/position");
    EXPECT_EQ(device->control(17)->value, 54.0) << "goes on behind the end, at ten times the pace";

    EXPECT_EQ(run("--help"), 0);
    EXPECT_EQ(run("--version"), 0);
    for (const char* wrong : {"--port 0", "--port 1.5", "--speed 0", "--prefix x", "--unknown",
                              "--seconds", "--seconds nan"})
        EXPECT_EQ(run(wrong), 2) << wrong;
    EXPECT_EQ(run("--file " + folder.path + "none"), 3);
    MVR::Util::SingletonCollector::destroyAll();
}

} // namespace
