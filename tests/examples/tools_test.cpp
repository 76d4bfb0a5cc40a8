#include "stage/session.h"
#include "stage/take.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

namespace Stage {
namespace {

/// The example tools in a real take of ten frames, 0.4 seconds. Nothing is bound: an unbound
/// property reads its offset.
TEST(ExampleTools, MoveTheirObjectsAsTheyTell) {
    const std::string home = testing::TempDir() + "/example_tools_test";
    std::filesystem::create_directories(home);
    setenv("MIRVANE_OSC_CONFIG", (home + "/none.xml").c_str(), 1);
    InstallValues values;
    values.core = CORE;
    values.documents = home;
    Session session;
    std::string error;
    ASSERT_TRUE(session.open(values, error)) << error;

    const double half = std::sqrt(0.5);
    const struct {
        const char* tool;
        const char* name;
        std::vector<Setting> settings;
        Vector3 position;
        Quaternion rotation; ///< after 0.4 s
    } cases[] = {
        {"Tracked Object", "unbound", {}, {0, 0, 0}, {0, 0, 0, 1}},
        {"Tracked Object",
         "as given",
         {{"", "Position Y", "offset", -4}, {"", "Rotation Z", "offset", 1}},
         {0, -4, 0},
         {0, 0, 1, 0}},
        {"Free Camera", "at rest", {}, {0, 0, 0}, {0, 0, 0, 1}},
        {"Free Camera",
         "along its axes",
         {{"", "Move X", "offset", 1}, {"", "Move Y", "offset", 2}, {"", "Move Z", "offset", -10}},
         {0.4, 0.8, -4},
         {0, 0, 0, 1}},
        {"Free Camera", "pan", {{"", "Pan", "offset", 225}}, {0, 0, 0}, {0, half, 0, half}},
        {"Free Camera", "tilt", {{"", "Tilt", "offset", 225}}, {0, 0, 0}, {half, 0, 0, half}},
        {"Free Camera", "roll", {{"", "Roll", "offset", -225}}, {0, 0, 0}, {0, 0, -half, half}},
    };
    for (const auto& tool : cases) {
        ASSERT_NE(session.place({tool.tool, tool.name, {}, tool.settings}, error), nullptr)
            << error;
    }
    // This one starts where it stands: turned to the left, so that forward is to the left.
    ASSERT_NE(session.place({"Free Camera", "turned", {}, {{"", "Move Z", "offset", -10}}}, error),
              nullptr);
    StageNode* turned = session.scene.findByHostName("turned");
    ASSERT_NE(turned, nullptr);
    turned->setTransform(0, {{0, 5, 0}, {0, half, 0, half}, kNoScale});

    session.timeline.setRange(0, 0.4);
    TakePlan plan;
    plan.countdownSeconds = 0;
    plan.autoExpand = false;
    ASSERT_TRUE(runTake(session, plan, nullptr, {}, error)) << error;

    for (const auto& tool : cases) {
        const StageNode* node = session.scene.findByHostName(tool.name);
        ASSERT_NE(node, nullptr) << tool.name;
        const Transform end = node->evaluate(0.4);
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_NEAR(end.position[i], tool.position[i], 1e-9) << tool.name;
        }
        for (std::size_t i = 0; i < 4; ++i) {
            EXPECT_NEAR(end.rotation[i], tool.rotation[i], 1e-9) << tool.name;
        }
    }
    const Vector3 end = turned->evaluate(0.4).position;
    EXPECT_NEAR(end[0], -4, 1e-9);
    EXPECT_NEAR(end[1], 5, 1e-9);
    EXPECT_NEAR(end[2], 0, 1e-9);
}

} // namespace
} // namespace Stage
