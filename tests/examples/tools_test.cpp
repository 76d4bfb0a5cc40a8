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
class ExampleTools : public testing::Test {
protected:
    void SetUp() override {
        const std::string home = testing::TempDir() + "/example_tools_test";
        std::filesystem::create_directories(home);
        setenv("MIRVANE_OSC_CONFIG", (home + "/none.xml").c_str(), 1);
        InstallValues values;
        values.core = CORE;
        values.documents = home;
        ASSERT_TRUE(session.open(values, error)) << error;
    }

    void place(const char* type, const char* name, const std::vector<Setting>& settings) {
        ASSERT_NE(session.place({type, name, {}, settings}, error), nullptr) << error;
    }
    void record() {
        session.timeline.setRange(0, 0.4);
        TakePlan plan;
        plan.countdownSeconds = 0;
        plan.autoExpand = false;
        ASSERT_TRUE(runTake(session, plan, nullptr, {}, error)) << error;
    }
    void expectEnd(const char* name, const Vector3& position, const Quaternion& rotation) {
        const StageNode* node = session.scene.findByHostName(name);
        ASSERT_NE(node, nullptr) << name;
        const Transform end = node->evaluate(0.4);
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_NEAR(end.position[i], position[i], 1e-9) << name;
        }
        for (std::size_t i = 0; i < 4; ++i) {
            EXPECT_NEAR(end.rotation[i], rotation[i], 1e-9) << name;
        }
    }

    const double half = std::sqrt(0.5);
    Session session;
    std::string error;
};

TEST_F(ExampleTools, MoveTheirObjectsAsTheyTell) {
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
        place(tool.tool, tool.name, tool.settings);
    }
    record();
    for (const auto& tool : cases) {
        expectEnd(tool.name, tool.position, tool.rotation);
    }
}

TEST_F(ExampleTools, TheFreeCameraStartsWhereItStands) {
    place("Free Camera", "turned", {{"", "Move Z", "offset", -10}});
    StageNode* turned = session.scene.findByHostName("turned");
    ASSERT_NE(turned, nullptr);
    turned->setTransform(0, {{0, 5, 0}, {0, half, 0, half}, kNoScale});
    record();
    expectEnd("turned", {-4, 5, 0}, {0, half, 0, half}); // to the left is forward
}

} // namespace
} // namespace Stage
