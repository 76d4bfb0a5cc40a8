#include "stage/scene/curve.h"
#include "stage/scene/timeline.h"
#include "stage/scene/transform.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace Stage {
namespace {

TEST(Curve, KeysAreSortedWithOnePerTime) {
    Curve curve;
    EXPECT_EQ(curve.evaluate(3, 7.5), 7.5);
    // Late, early, between, again at the end, and two that differ from a key only by rounding.
    for (const Key& key :
         std::vector<Key>{{2, 20}, {0, 0}, {1, 10}, {3, 30}, {1 + 1e-9, 11}, {3 - 1e-9, 31}})
        curve.setKey(key.time, key.value);
    ASSERT_EQ(curve.getKeys().size(), 4U);
    const std::vector<Key> expected = {{0, 0}, {1, 11}, {2, 20}, {3, 31}};
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_NEAR(curve.getKeys()[i].time, expected[i].time, 1e-8);
        EXPECT_EQ(curve.getKeys()[i].value, expected[i].value);
    }
    struct {
        double time, value;
    } const reads[] = {{-5, 0}, {0, 0}, {0.5, 5.5}, {1.5, 15.5}, {2, 20}, {2.5, 25.5}, {9, 31}};
    for (const auto& read : reads)
        EXPECT_NEAR(curve.evaluate(read.time, 99), read.value, 1e-6) << read.time;
    // A key on the edge, late by a rounding error, is removed too.
    curve.eraseFrom(2 + 1e-9);
    EXPECT_EQ(curve.getKeys().size(), 2U);
    curve.eraseFrom(-1);
    EXPECT_TRUE(curve.isEmpty());
}

TEST(Timeline, TheLastFrameOfATakeLiesInTheRange) {
    // A take's frames are multiples of the step: the last must not be above the end.
    for (const double rate : {23.976, 24.0, 25.0, 29.97, 30.0, 60.0, 120.0}) {
        Timeline timeline;
        timeline.setRate(rate);
        for (int frames = 1; frames < 5000; ++frames) {
            timeline.setRange(0, frames / rate);
            EXPECT_EQ(timeline.getEnd(), frames * timeline.getStep()) << rate << " " << frames;
        }
    }
}

TEST(Transform, SurvivesAMatrixAndItsInverse) {
    const Quaternion turns[] = {{0, 0, 0, 1},          {1, 0, 0, 0},         {0, 1, 0, 0},
                                {0, 0, 1, 0},          {0.5, 0.5, 0.5, 0.5}, {-0.1, 0.7, 0.2, -0.6},
                                {0.9, -0.1, 0.3, 1e-9}};
    for (const Quaternion& turn : turns) {
        const Transform transform = {{1, -2, 3}, normalised(turn), {2, 0.5, 3}};
        const Transform back = toTransform(toMatrix(transform));
        double cosine = 0;
        for (std::size_t i = 0; i < 4; ++i)
            cosine += back.rotation[i] * transform.rotation[i];
        EXPECT_NEAR(std::fabs(cosine), 1, 1e-12);
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_NEAR(back.position[i], transform.position[i], 1e-12);
            EXPECT_NEAR(back.scale[i], transform.scale[i], 1e-12);
        }
        const Matrix one = multiply(toMatrix(transform), inverse(toMatrix(transform)));
        for (std::size_t i = 0; i < one.size(); ++i)
            EXPECT_NEAR(one[i], i % 5 == 0 ? 1 : 0, 1e-12);
    }
    const Matrix mirror = toMatrix({{0, 0, 0}, kNoRotation, {-2, 1, 1}});
    EXPECT_EQ(toMatrix(toTransform(mirror)), mirror);
    EXPECT_EQ(normalised({0, 0, 0, 0}), kNoRotation);
    EXPECT_EQ(normalised({NAN, 0, 0, 1}), kNoRotation);
    // With row vectors a quarter turn about x turns y to z.
    const Matrix quarter = toMatrix({{0, 0, 0}, {std::sqrt(0.5), 0, 0, std::sqrt(0.5)}, {1, 1, 1}});
    EXPECT_NEAR(quarter[6], 1, 1e-12);
}

} // namespace
} // namespace Stage
