#include "Tests/Unit/GridEditorOverlayViewFixture.h"

#include <cmath>

namespace tarvex {

namespace {

constexpr double hitThreshold = 0.015;
constexpr double removalThreshold = 0.01;

// The next larger number.
double justBeyond(double threshold) {
    return std::nextafter(threshold, 1.0);
}

// How near is near enough, to the last bit: distances from a pointer at 0 are exact.
class GridEditorThresholdTest : public GridEditorOverlayViewTest {};

TEST_F(GridEditorThresholdTest, HitThresholdItselfIsNearEnough) {
    useGrid({hitThreshold}, {});
    view().mouseMoved(at(0, 0.5));
    EXPECT_EQ(view().hoveredSplit(),
              (NearestSplit{GridLineOrientation::vertical, hitThreshold, hitThreshold, 0.0001}));
    press(0, 0.5);
    EXPECT_EQ(view().draggedSplit(), view().hoveredSplit());
}

TEST_F(GridEditorThresholdTest, NothingBeyondTheHitThresholdIsMeant) {
    useGrid({justBeyond(hitThreshold)}, {});
    view().mouseMoved(at(0, 0.5));
    EXPECT_FALSE(view().hoveredSplit());
    view().rightMouseDown(at(0, 0.5));
    EXPECT_FALSE(view().flashSplit());
    press(0, 0.5);
    EXPECT_FALSE(view().draggedSplit());
}

TEST_F(GridEditorThresholdTest, RightClickDeletesUpToTheRemovalThresholdAndNoFarther) {
    useGrid({removalThreshold}, {});
    view().rightMouseDown(at(0, 0.5));
    EXPECT_TRUE(verticals().empty());
    useGrid({justBeyond(removalThreshold)}, {});
    view().rightMouseDown(at(0, 0.5));
    EXPECT_EQ(view().grid(), start_);
    EXPECT_TRUE(view().flashSplit().has_value());
}

} // namespace

} // namespace tarvex
