#include "Core/Grid/CoordinateTransformer.h"

#include "Tests/Support/RandomSource.h"

#include <gtest/gtest.h>

#include <cmath>

namespace tarvex {

namespace {

class CoordinateTransformerTest : public testing::Test {
protected:
    [[nodiscard]] const CoordinateTransformer& transformer() const { return transformer_; }

private:
    CoordinateTransformer transformer_;
};

TEST_F(CoordinateTransformerTest, TheLeftHalf) {
    EXPECT_EQ(transformer().toFrame({0, 0, 0.5, 1}, {0, 25, 1000, 800}), (Rect{0, 25, 500, 800}));
}

TEST_F(CoordinateTransformerTest, TheBottomRightQuarter) {
    EXPECT_EQ(transformer().toFrame({0.5, 0.5, 0.5, 0.5}, {0, 25, 1000, 800}), (Rect{500, 25, 500, 400}));
}

TEST_F(CoordinateTransformerTest, TheTopLeftQuarterLiesAboveInScreenSpace) {
    EXPECT_EQ(transformer().toFrame({0, 0, 0.5, 0.5}, {0, 25, 1000, 800}), (Rect{0, 425, 500, 400}));
}

TEST_F(CoordinateTransformerTest, ADisplayLeftOfAndBelowThePrimaryOne) {
    EXPECT_EQ(transformer().toFrame({0.25, 0, 0.5, 1}, {-1600, -900, 1600, 900}),
              (Rect{-1200, -900, 800, 900}));
}

TEST_F(CoordinateTransformerTest, NothingIsRounded) {
    const Rect frame = transformer().toFrame({0, 0, 0.25, 0.125}, {0, 0, 1001, 801});
    EXPECT_EQ(frame.width, 250.25);
    EXPECT_EQ(frame.height, 100.125);
    EXPECT_EQ(frame.y, 801 - 100.125);
}

TEST_F(CoordinateTransformerTest, TheBottomLeftCornerIsInside) {
    EXPECT_EQ(transformer().toNormalizedPoint({0, 0}, {0, 0, 1000, 800}), NormalizedPoint(0, 1));
}

TEST_F(CoordinateTransformerTest, TheRightEdgeIsOutside) {
    EXPECT_EQ(transformer().toNormalizedPoint({1000, 400}, {0, 0, 1000, 800}), std::nullopt);
    EXPECT_TRUE(transformer().toNormalizedPoint({std::nextafter(1000.0, 0.0), 400}, {0, 0, 1000, 800}));
}

TEST_F(CoordinateTransformerTest, TheTopEdgeIsOutside) {
    EXPECT_EQ(transformer().toNormalizedPoint({500, 800}, {0, 0, 1000, 800}), std::nullopt);
    EXPECT_TRUE(transformer().toNormalizedPoint({500, std::nextafter(800.0, 0.0)}, {0, 0, 1000, 800}));
}

TEST_F(CoordinateTransformerTest, PointsBeyondTheLeftAndBottomEdgesAreOutside) {
    EXPECT_EQ(transformer().toNormalizedPoint({-0.5, 400}, {0, 0, 1000, 800}), std::nullopt);
    EXPECT_EQ(transformer().toNormalizedPoint({500, -0.5}, {0, 0, 1000, 800}), std::nullopt);
}

TEST_F(CoordinateTransformerTest, YGrowsDownwards) {
    EXPECT_EQ(transformer().toNormalizedPoint({-1350, 675}, {-1600, 75, 1000, 800}),
              NormalizedPoint(0.25, 0.25));
}

TEST_F(CoordinateTransformerTest, AnEmptyVisibleFrameHoldsNoPoint) {
    EXPECT_EQ(transformer().toNormalizedPoint({10, 10}, {10, 10, 0, 0}), std::nullopt);
    EXPECT_EQ(transformer().toNormalizedPoint({10, 10}, {10, 10, 100, 0}), std::nullopt);
}

TEST_F(CoordinateTransformerTest, AnUndefinedPointIsOutside) {
    EXPECT_EQ(transformer().toNormalizedPoint({std::nan(""), 10}, {0, 0, 100, 100}), std::nullopt);
    EXPECT_EQ(transformer().toNormalizedPoint({10, std::nan("")}, {0, 0, 100, 100}), std::nullopt);
}

TEST_F(CoordinateTransformerTest, RandomPointsLieInTheUnitSquareAndComeBack) {
    for (std::uint32_t seed = 1; seed <= 5000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomSource random(seed);
        const Rect visible{static_cast<double>(random.integer(-4000, 4000)),
                           static_cast<double>(random.integer(-4000, 4000)),
                           static_cast<double>(random.integer(1, 8000)),
                           static_cast<double>(random.integer(1, 8000))};
        // Pointer positions are whole or half points.
        const Point point{visible.x + random.integer(0, 2 * static_cast<int>(visible.width) - 1) * 0.5,
                          visible.y + random.integer(0, 2 * static_cast<int>(visible.height) - 1) * 0.5};
        const std::optional<NormalizedPoint> normalized = transformer().toNormalizedPoint(point, visible);
        ASSERT_TRUE(normalized);
        ASSERT_GE(normalized->x(), 0);
        ASSERT_LT(normalized->x(), 1);
        ASSERT_GT(normalized->y(), 0);
        ASSERT_LE(normalized->y(), 1);
        const Rect back = transformer().toFrame({normalized->x(), normalized->y(), 0, 0}, visible);
        ASSERT_NEAR(back.x, point.x, 1e-9);
        ASSERT_NEAR(back.y, point.y, 1e-9);
    }
}

} // namespace

} // namespace tarvex
