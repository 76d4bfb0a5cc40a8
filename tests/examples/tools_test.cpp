#include "plugins/contract/c_interface.h"
#include "stage/scene/curve_copy.h"
#include "stage/takes/resimulation.h"
#include "tests/stage/session_test.h"
#include "unidevice/sdk/control.h"
#include "unidevice/sdk/property.h"

#include <cmath>
#include <vector>

namespace Stage {
namespace {

/// The example tools in a real take of ten frames, 0.4 seconds.
class ExampleTools : public SessionTest {
protected:
    void expectEnd(const char* name, const Vector3& position, const Quaternion& rotation) {
        const StageNode* node = session.scene.findByHostName(name);
        ASSERT_NE(node, nullptr) << name;
        const Transform end = node->evaluate(0.4);
        for (std::size_t i = 0; i < 3; ++i)
            EXPECT_NEAR(end.position[i], position[i], 1e-9) << name;
        for (std::size_t i = 0; i < 4; ++i)
            EXPECT_NEAR(end.rotation[i], rotation[i], 1e-9) << name;
    }

    const double half = std::sqrt(0.5);
};

TEST_F(ExampleTools, MoveTheirObjectsByTheirInputs) {
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
    for (const auto& tool : cases)
        place(tool.tool, tool.name, tool.settings);
    take(0, 0.4);
    for (const auto& tool : cases)
        expectEnd(tool.name, tool.position, tool.rotation);
}

TEST_F(ExampleTools, ATrackersSignDoesNotTurnTheObject) {
    place("Tracked Object", "jumps", {});
    UniDevice::Control side(nullptr, UniDevice::infinite, 0);
    for (const char* name : {"Rotation Z", "Rotation W"}) {
        UniDevice::Property* property =
            MVR::getTools(session.getCore())->find("jumps")->findProperty(name);
        ASSERT_NE(property, nullptr);
        property->bind(&side);
        property->deadzone = 0;
    }
    session.timeline.setRange(0, 0.4);
    TakePlan plan;
    plan.countdownSeconds = 0;
    plan.autoExpand = false;
    plan.onFrame = [&side, this](double) { side.setValue(side.value > 0 ? -half : half); };
    side.setValue(-half);
    ASSERT_TRUE(runTake(session, plan, nullptr, {}, error)) << error;
    const Curves& curves = session.scene.findByHostName("jumps")->getCurves();
    ASSERT_EQ(curves[6].getKeys().size(), 11U);
    for (std::size_t i = 1; i < 11; ++i)
        EXPECT_EQ(curves[6].getKeys()[i].value, half) << i;
    const CurveCopy original(session.scene);
    ASSERT_TRUE(resimulate(session, 0, 0.4, {}, error)) << error;
    EXPECT_EQ(CurveCopy(session.scene).compare(original).largest, 0);
}

TEST_F(ExampleTools, TheFreeCameraStartsAtItsPresentPose) {
    place("Free Camera", "turned", {{"", "Move Z", "offset", -10}});
    StageNode* turned = session.scene.findByHostName("turned");
    ASSERT_NE(turned, nullptr);
    turned->setTransform(0, {{0, 5, 0}, {0, half, 0, half}, kNoScale});
    take(0, 0.4);
    expectEnd("turned", {-4, 5, 0}, {0, half, 0, half}); // to the left is forward
}

} // namespace
} // namespace Stage
