#include "stage/takes/take.h"

#include "plugins/contract/c_interface.h"
#include "stage/export/curve_table.h"
#include "stage/scene/curve_copy.h"
#include "stage/takes/resimulation.h"
#include "tests/stage/session_test.h"
#include "unidevice/sdk/control.h"
#include "unidevice/sdk/property.h"

#include <csignal>
#include <cstdlib>
#include <string>
#include <vector>

namespace Stage {
namespace {

/// A tracked object and a camera that flies.
class TakeTest : public SessionTest {
protected:
    void SetUp() override {
        SessionTest::SetUp();
        place("Tracked Object", "Object", {{"", "Position X", "offset", 3}});
        place("Free Camera", "Camera", {{"", "Move X", "offset", 5}, {"", "Pan", "offset", 90}});
        ASSERT_EQ(session.scene.getNodes().size(), 2U);
        object = session.scene.findByHostName("Object");
        camera = session.scene.findByHostName("Camera");
        ASSERT_NE(object, nullptr);
        ASSERT_NE(camera, nullptr);
    }

    std::string table() const { return toCurveTable({object, camera}); }

    StageNode* object = nullptr;
    StageNode* camera = nullptr;
};

TEST_F(TakeTest, OneKeyPerFrameOnTheGridAndOneAtTheStart) {
    const TakeFigures figures = take(0, 0.4);
    EXPECT_EQ(figures.frames, 10);
    EXPECT_EQ(figures.endTime, 10 * 0.04);
    EXPECT_FALSE(figures.isCutShort);
    for (const StageNode* node : {object, camera}) {
        for (std::size_t curve = 0; curve < kCurveCount; ++curve) {
            const std::vector<Key>& keys = node->getCurves()[curve].getKeys();
            ASSERT_EQ(keys.size(), curve < kFirstLensCurve ? 11U : 0U) << "nobody zoomed";
            for (std::size_t i = 0; i < keys.size(); ++i)
                EXPECT_EQ(keys[i].time, static_cast<double>(i) * 0.04);
        }
    }
    EXPECT_EQ(object->getCurves()[0].getKeys().front().value, 0) << "what stood there";
    EXPECT_EQ(object->getCurves()[0].getKeys()[1].value, 3);
    EXPECT_EQ(object->getCurves()[6].getKeys()[1].value, 1) << "no rotation is the identity";
    // The camera flew an arc: 36 degrees to the left in 0.4 s, and 2 units long.
    EXPECT_NEAR(camera->evaluate(0.4).rotation[1], 0.30901699, 1e-6);
    const Vector3 place = camera->evaluate(0.4).position;
    EXPECT_LT(place[2], -0.5);
    EXPECT_GT(place[0], 1.5);
    EXPECT_EQ(session.undo.getUndoName(), "Record");
    EXPECT_EQ(session.undo.getUndoCount(), 3U) << "two tools and one take";
}

TEST_F(TakeTest, ALaterTakeLeavesEarlierKeysAloneAndGoesWithOneUndo) {
    take(0, 0.4);
    const std::string first = table();
    const CurveCopy before(session.scene);
    const std::vector<Key> early(camera->getCurves()[0].getKeys().begin(),
                                 camera->getCurves()[0].getKeys().begin() + 6);
    take(0.2, 0.6);
    const std::vector<Key>& keys = camera->getCurves()[0].getKeys();
    EXPECT_EQ(keys.size(), 16U);
    EXPECT_EQ(std::vector<Key>(keys.begin(), keys.begin() + 6), early);
    EXPECT_TRUE(checkUndo(session, before, error)) << error;
    const std::string second = table();
    ASSERT_TRUE(session.undo.undo());
    EXPECT_EQ(table(), first);
    // A resimulation after the undo uses the values of the first take.
    ASSERT_TRUE(resimulate(session, 0, 0.4, {}, error)) << error;
    EXPECT_LE(CurveCopy(session.scene).compare(before).largest, 1e-9);
    ASSERT_TRUE(session.undo.undo());
    EXPECT_FALSE(session.undo.redo() && table() == second) << "a new entry dropped it";
}

TEST_F(TakeTest, AResimulationRepeatsTheTakeAndFollowsAChangedParameter) {
    take(1, 1.4);
    const CurveCopy original(session.scene);
    ASSERT_TRUE(resimulate(session, 1, 1.4, {}, error)) << error;
    const CurveCopy::Difference same = CurveCopy(session.scene).compare(original);
    EXPECT_TRUE(same.isSameBits);
    const std::string again = table();
    ASSERT_TRUE(resimulate(session, 1, 1.4, {}, error)) << error;
    EXPECT_EQ(table(), again) << "the same bytes each time";

    ASSERT_TRUE(resimulate(session, 1, 1.4, {{"Object", "Position X", "offset", 6}}, error));
    EXPECT_EQ(object->evaluate(1.2).position[0], 6);
    EXPECT_NEAR(CurveCopy(session.scene).compare(original).largest, 3, 1e-12);
    // The parameter was only for that resimulation.
    ASSERT_TRUE(resimulate(session, 1, 1.4, {}, error)) << error;
    EXPECT_EQ(table(), again);

    // A stopped one keeps its frames, as one undo step.
    const std::vector<Key>& keys = object->getCurves()[0].getKeys();
    const auto run = resimulate(session, 1, 1.4, {}, error, [&keys] { return keys.size() >= 6; });
    ASSERT_TRUE(run && run->isCutShort) << error;
    EXPECT_EQ(keys.size(), 6U);
    EXPECT_EQ(camera->getCurves()[6].getKeys().size(), 6U) << "the last frame is whole";
    EXPECT_FALSE(session.getCore().isRecording());
    ASSERT_TRUE(session.undo.undo());
    EXPECT_EQ(table(), again);
}

TEST_F(TakeTest, AZoomSetsKeysWhereTheLensMovesAndIsSimulatedToTheSame) {
    UniDevice::Control wheel(nullptr, UniDevice::infinite, 0);
    UniDevice::Property* zoom =
        MVR::getTools(session.getCore())->find("Camera")->findProperty("Zoom");
    ASSERT_NE(zoom, nullptr);
    zoom->bind(&wheel);
    zoom->deadzone = 0;
    session.timeline.setRange(0, 0.4);
    TakePlan plan;
    plan.countdownSeconds = 0;
    plan.autoExpand = false;
    // Two movements: over the frames at 0.12 and 0.16, and in the one at 0.28. Each frame reads
    // what the wheel had when it began.
    plan.onFrame = [&wheel](double time) {
        wheel.setValue((time > 0.06 && time < 0.14) || (time > 0.22 && time < 0.26) ? 50 : 0);
    };
    ASSERT_TRUE(runTake(session, plan, nullptr, {}, error)) << error;
    const std::vector<Key>& keys = camera->getCurves()[kFirstLensCurve].getKeys();
    const double expected[][2] = {{0.08, 35}, {0.12, 37}, {0.16, 39}, {0.24, 39}, {0.28, 41}};
    ASSERT_EQ(keys.size(), std::size(expected)) << table();
    for (std::size_t i = 0; i < keys.size(); ++i) {
        EXPECT_NEAR(keys[i].time, expected[i][0], 1e-9);
        EXPECT_NEAR(keys[i].value, expected[i][1], 1e-9);
    }
    const CurveCopy original(session.scene);
    for (const double start : {0.0, 0.04, 0.08, 0.12, 0.16, 0.2, 0.24, 0.28, 0.32}) {
        ASSERT_TRUE(resimulate(session, start, 0.4, {}, error)) << error;
        const CurveCopy::Difference difference = CurveCopy(session.scene).compare(original);
        EXPECT_TRUE(difference.isSameFrames && difference.largest < 1e-9) << start << '\n'
                                                                          << table();
    }
    // A take without zoom leaves the lens as it was at its start, and one undo restores all.
    const CurveCopy before(session.scene);
    plan.onFrame = {};
    session.timeline.setTime(0.2);
    ASSERT_TRUE(runTake(session, plan, nullptr, {}, error)) << error;
    EXPECT_EQ(keys.size(), 3U);
    EXPECT_EQ(camera->evaluateLens(0.4)[kFocalLength], keys.back().value);
    ASSERT_TRUE(session.undo.undo());
    EXPECT_EQ(CurveCopy(session.scene), before);
}

TEST_F(TakeTest, CtrlCStopsATakeWithoutEndAndKeepsIt) {
    const auto run = [this] {
        catchStopRequests();
        session.timeline.setRange(0, 0.2);
        TakePlan plan;
        plan.countdownSeconds = 0;
        bool raised = false;
        const auto figures = runTake(
            session, plan, nullptr,
            [&raised](double, const TakeFigures& state) {
                if (state.frames >= 10 && !raised) {
                    raised = true;
                    std::raise(SIGINT);
                }
            },
            error);
        const bool isKept = figures && figures->isCutShort && figures->frames >= 10 &&
                            object->getCurves()[0].getKeys().size() ==
                                static_cast<std::size_t>(figures->frames) + 1;
        const bool isGrown = session.timeline.getEnd() >= 0.4;
        session.close();
        return isKept && isGrown ? 0 : 1;
    };
    EXPECT_EXIT(std::exit(run()), testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace Stage
