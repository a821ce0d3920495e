#include "Tests/Unit/GridEditorOverlayViewFixture.h"

namespace tarvex {

namespace {

constexpr auto horizontal = GridLineOrientation::horizontal;
constexpr auto vertical = GridLineOrientation::vertical;

// A distance whose difference from 0.5 is exactly itself.
constexpr double hitThreshold = 0.015;

TEST_F(GridEditorOverlayViewTest, StartsWithTheGridAndNothingElse) {
    EXPECT_EQ(view().grid(), start_);
    EXPECT_FALSE(view().pendingSplit());
    EXPECT_FALSE(view().hoveredSplit());
    EXPECT_FALSE(view().flashSplit());
    EXPECT_FALSE(view().draggedSplit());
    EXPECT_FALSE(view().dragBaseOrientation());
    EXPECT_EQ(view().visibleFrame(), visibleFrame);
}

TEST_F(GridEditorOverlayViewTest, ClickOnFreeSpaceAddsAHorizontalLine) {
    click(0.25, 0.75);
    EXPECT_EQ(horizontals(), Splits{0.75});
    EXPECT_TRUE(verticals().empty());
}

TEST_F(GridEditorOverlayViewTest, ShiftClickAddsAVerticalLine) {
    click(0.25, 0.75, shift);
    EXPECT_EQ(verticals(), Splits{0.25});
    EXPECT_TRUE(horizontals().empty());
}

TEST_F(GridEditorOverlayViewTest, OtherModifiersDoNotTurnTheLine) {
    click(0.25, 0.75, event_flag::command | event_flag::option | event_flag::control | event_flag::capsLock);
    EXPECT_EQ(horizontals(), Splits{0.75});
    EXPECT_TRUE(verticals().empty());
}

TEST_F(GridEditorOverlayViewTest, LineFollowsThePointerUntilTheRelease) {
    press(0.25, 0.75);
    EXPECT_EQ(view().pendingSplit(), (PendingSplit{horizontal, 0.75}));
    EXPECT_EQ(view().dragBaseOrientation(), horizontal);
    drag(0.5, 0.25);
    EXPECT_EQ(view().pendingSplit(), (PendingSplit{horizontal, 0.25}));
    EXPECT_EQ(view().grid(), start_);
    release(0.125, 0.5);
    // Where the pointer was last seen during the drag, not where it was let go of.
    EXPECT_EQ(horizontals(), Splits{0.25});
    EXPECT_FALSE(view().pendingSplit());
    EXPECT_FALSE(view().dragBaseOrientation());
}

TEST_F(GridEditorOverlayViewTest, ShiftTurnsTheLineDuringTheDrag) {
    press(0.25, 0.75);
    drag(0.25, 0.75, shift);
    EXPECT_EQ(view().pendingSplit(), (PendingSplit{vertical, 0.25}));
    drag(0.25, 0.75);
    EXPECT_EQ(view().pendingSplit(), (PendingSplit{horizontal, 0.75}));
    drag(0.375, 0.75, shift);
    release(0.375, 0.75);
    EXPECT_EQ(verticals(), Splits{0.375});
}

TEST_F(GridEditorOverlayViewTest, PressOnALinePicksItUpWithItsOrientation) {
    useGrid({0.5}, {0.25});
    press(0.5, 0.75);
    EXPECT_TRUE(verticals().empty());
    EXPECT_EQ(horizontals(), Splits{0.25});
    ASSERT_TRUE(view().draggedSplit().has_value());
    EXPECT_EQ(*view().draggedSplit(), (NearestSplit{vertical, 0.5, 0, 0.0001}));
    EXPECT_EQ(view().pendingSplit(), (PendingSplit{vertical, 0.5}));
    drag(0.625, 0.75);
    release(0.625, 0.75);
    EXPECT_EQ(verticals(), Splits{0.625});
    EXPECT_FALSE(view().draggedSplit());
}

TEST_F(GridEditorOverlayViewTest, ShiftTurnsALineThatWasPickedUp) {
    useGrid({0.5}, {});
    click(0.5, 0.75, shift);
    EXPECT_TRUE(verticals().empty());
    EXPECT_EQ(horizontals(), Splits{0.75});
}

TEST_F(GridEditorOverlayViewTest, ClickOnALinePutsItWhereThePointerIs) {
    useGrid({}, {0.5});
    click(0.25, 0.5078125);
    EXPECT_EQ(horizontals(), Splits{0.5078125});
}

TEST_F(GridEditorOverlayViewTest, PickingUpLeavesTheOtherListAsItIsStored) {
    useGrid({0.9, 0.2, 0.5}, {0.7, 0.3});
    press(0.5, 0.1);
    EXPECT_EQ(verticals(), (Splits{0.9, 0.2}));
    EXPECT_EQ(horizontals(), (Splits{0.7, 0.3}));
    useGrid({0.7, 0.3}, {0.9, 0.2, 0.5});
    press(0.1, 0.5);
    EXPECT_EQ(horizontals(), (Splits{0.9, 0.2}));
    EXPECT_EQ(verticals(), (Splits{0.7, 0.3}));
}

TEST_F(GridEditorOverlayViewTest, NearDuplicatesArePickedUpTogether) {
    useGrid({0.5, 0.50005, 0.6}, {});
    press(0.5, 0.1);
    EXPECT_EQ(verticals(), Splits{0.6});
}

TEST_F(GridEditorOverlayViewTest, LineDroppedOnAnotherMergesWithIt) {
    useGrid({0.25, 0.5}, {});
    press(0.5, 0.1);
    drag(0.25003, 0.1);
    release(0.25003, 0.1);
    EXPECT_EQ(verticals(), Splits{0.25});
}

TEST_F(GridEditorOverlayViewTest, OfEquallyNearLinesTheHorizontalOneIsHoveredAndPickedUp) {
    useGrid({0.5}, {0.5});
    view().mouseMoved(at(0.5078125, 0.5078125));
    ASSERT_TRUE(view().hoveredSplit().has_value());
    EXPECT_EQ(view().hoveredSplit()->orientation, horizontal);
    press(0.5078125, 0.5078125);
    EXPECT_TRUE(horizontals().empty());
    EXPECT_EQ(verticals(), Splits{0.5});
}

TEST_F(GridEditorOverlayViewTest, LinesAreFoundWithinTheHitThreshold) {
    useGrid({0.5}, {});
    for (const double distance : {0.0149, -0.0149}) {
        view().mouseMoved(at(0.5 + distance, 0.2));
        ASSERT_TRUE(view().hoveredSplit().has_value()) << distance;
        EXPECT_EQ(view().hoveredSplit()->value, 0.5);
        EXPECT_NEAR(view().hoveredSplit()->distance, 0.0149, 1e-12);
        EXPECT_EQ(view().hoveredSplit()->epsilon, 0.0001);
    }
    for (const double distance : {hitThreshold + 0.0001, -hitThreshold - 0.0001}) {
        view().mouseMoved(at(0.5 + distance, 0.2));
        EXPECT_FALSE(view().hoveredSplit()) << distance;
    }
}

TEST_F(GridEditorOverlayViewTest, PressBesideTheHitThresholdStartsANewLine) {
    useGrid({0.5}, {});
    press(0.5151, 0.2);
    EXPECT_EQ(verticals(), Splits{0.5});
    EXPECT_EQ(view().pendingSplit(), (PendingSplit{horizontal, 0.2}));
    EXPECT_FALSE(view().draggedSplit());
}

TEST_F(GridEditorOverlayViewTest, PointerOutsideHoversNothing) {
    useGrid({0.5}, {});
    view().mouseMoved(at(0.5, 0.2));
    EXPECT_EQ(redrawsDuring([this] { view().mouseMoved(outside()); }), 1);
    EXPECT_FALSE(view().hoveredSplit());
}

TEST_F(GridEditorOverlayViewTest, EdgesAreHalfOpen) {
    press(0, 1);
    EXPECT_EQ(view().pendingSplit(), (PendingSplit{horizontal, 1}));
    release(0, 1);
    EXPECT_TRUE(horizontals().empty());
    view().mouseDown({{1000, 100}, 0});
    EXPECT_FALSE(view().pendingSplit());
    view().mouseDown({{100, 500}, 0});
    EXPECT_FALSE(view().pendingSplit());
}

TEST_F(GridEditorOverlayViewTest, NothingBeginsOutside) {
    useGrid({0.5}, {});
    const auto everythingOutside = [this] {
        view().mouseDown(outside());
        view().mouseDragged(outside());
        view().mouseUp(outside());
        view().rightMouseDown(outside());
    };
    EXPECT_EQ(redrawsDuring(everythingOutside), 0);
    EXPECT_EQ(view().grid(), start_);
    EXPECT_FALSE(view().dragBaseOrientation());
    EXPECT_TRUE(mainLoop_.timerIntervals().empty());
}

TEST_F(GridEditorOverlayViewTest, LineLetGoOfOutsideIsThrownAway) {
    useGrid({0.5}, {});
    press(0.5, 0.2);
    drag(0.1, 0.2);
    view().mouseDragged(outside());
    EXPECT_EQ(view().pendingSplit(), (PendingSplit{vertical, 0.1}));
    EXPECT_EQ(redrawsDuring([this] { view().mouseUp(outside()); }), 0);
    EXPECT_TRUE(verticals().empty());
    EXPECT_EQ(view().pendingSplit(), (PendingSplit{vertical, 0.1}));
    EXPECT_TRUE(view().draggedSplit().has_value());
    EXPECT_EQ(view().dragBaseOrientation(), vertical);
    // Until the next press inside, which begins anew but for what was lifted.
    click(0.75, 0.75);
    EXPECT_TRUE(verticals().empty());
    EXPECT_EQ(horizontals(), Splits{0.75});
    EXPECT_FALSE(view().draggedSplit());
}

TEST_F(GridEditorOverlayViewTest, PressOnFreeSpaceLeavesTheLiftedLineOfALostPress) {
    useGrid({0.5}, {});
    press(0.5, 0.2);
    view().mouseUp(outside());
    press(0.9, 0.9);
    ASSERT_TRUE(view().draggedSplit().has_value());
    EXPECT_EQ(view().draggedSplit()->value, 0.5);
    EXPECT_EQ(view().pendingSplit(), (PendingSplit{horizontal, 0.9}));
}

TEST_F(GridEditorOverlayViewTest, DragFromOutsideMovesAPendingLineOfALostPressAlong) {
    useGrid({0.5}, {});
    drag(0.25, 0.75);
    EXPECT_FALSE(view().pendingSplit());
    release(0.25, 0.75);
    EXPECT_EQ(verticals(), Splits{0.5});
    press(0.5, 0.2);
    view().mouseUp(outside());
    drag(0.25, 0.75);
    EXPECT_EQ(view().pendingSplit(), (PendingSplit{vertical, 0.25}));
}

TEST_F(GridEditorOverlayViewTest, RightClickFlashesAndDeletesTheLine) {
    useGrid({}, {0.5});
    view().rightMouseDown(at(0.25, 0.508));
    ASSERT_TRUE(view().flashSplit().has_value());
    EXPECT_EQ(view().flashSplit()->value, 0.5);
    EXPECT_TRUE(horizontals().empty());
}

TEST_F(GridEditorOverlayViewTest, RightClickFartherOffOnlyFlashes) {
    useGrid({}, {0.5});
    view().rightMouseDown(at(0.25, 0.512));
    EXPECT_TRUE(view().flashSplit().has_value());
    EXPECT_EQ(view().grid(), start_);
    mainLoop_.advance(0.149);
    EXPECT_TRUE(view().flashSplit().has_value());
    EXPECT_EQ(redrawsDuring([this] { mainLoop_.advance(0.002); }), 1);
    EXPECT_FALSE(view().flashSplit());
}

TEST_F(GridEditorOverlayViewTest, RightClickOnNothingFlashesNothing) {
    useGrid({}, {0.5});
    view().rightMouseDown(at(0.25, 0.512));
    EXPECT_EQ(redrawsDuring([this] { view().rightMouseDown(at(0.25, 0.75)); }), 1);
    EXPECT_FALSE(view().flashSplit());
    EXPECT_EQ(view().grid(), start_);
    EXPECT_EQ(mainLoop_.timerIntervals(), std::vector<double>{0.15});
}

TEST_F(GridEditorOverlayViewTest, SecondRightClickRestartsTheFlash) {
    useGrid({}, {0.25, 0.5});
    view().rightMouseDown(at(0.25, 0.512));
    mainLoop_.advance(0.1);
    view().rightMouseDown(at(0.25, 0.262));
    EXPECT_EQ(view().flashSplit()->value, 0.25);
    mainLoop_.advance(0.1);
    EXPECT_TRUE(view().flashSplit().has_value());
    mainLoop_.advance(0.06);
    EXPECT_FALSE(view().flashSplit());
    EXPECT_TRUE(mainLoop_.timerIntervals().empty());
}

TEST_F(GridEditorOverlayViewTest, FlashEndsWithTheView) {
    useGrid({}, {0.5});
    view().rightMouseDown(at(0.25, 0.512));
    view_.reset();
    EXPECT_TRUE(mainLoop_.timerIntervals().empty());
}

TEST_F(GridEditorOverlayViewTest, EscapeAndCancelCancel) {
    EXPECT_TRUE(view().keyDown({53, 0}));
    view().controlActivated("cancel");
    view().screensChanged();
    EXPECT_EQ(cancels_, 3);
    EXPECT_TRUE(accepted_.empty());
}

TEST_F(GridEditorOverlayViewTest, ReturnEnterAndOkAcceptTheGrid) {
    click(0.25, 0.75);
    EXPECT_TRUE(view().keyDown({36, 0}));
    EXPECT_TRUE(view().keyDown({76, 0}));
    EXPECT_TRUE(view().keyDown({36, shift}));
    view().controlActivated("ok");
    ASSERT_EQ(accepted_.size(), 4U);
    for (const auto& grid : accepted_) {
        EXPECT_EQ(grid, view().grid());
    }
    EXPECT_EQ(cancels_, 0);
}

TEST_F(GridEditorOverlayViewTest, OtherKeysAndControlsArePassedOn) {
    for (const std::uint16_t key : std::vector<std::uint16_t>{0, 35, 37, 48, 49, 52, 54, 75, 77}) {
        EXPECT_FALSE(view().keyDown({key, 0})) << key;
    }
    view().controlActivated("help");
    EXPECT_EQ(cancels_, 0);
    EXPECT_TRUE(accepted_.empty());
}

TEST_F(GridEditorOverlayViewTest, ReturnDuringAPressLeavesThePendingLineOut) {
    press(0.25, 0.75);
    EXPECT_TRUE(view().keyDown({36, 0}));
    ASSERT_EQ(accepted_.size(), 1U);
    EXPECT_EQ(accepted_[0], start_);
}

TEST_F(GridEditorOverlayViewTest, CallbacksMayDestroyTheView) {
    for (const std::uint16_t key : std::vector<std::uint16_t>{53, 36}) {
        std::unique_ptr<GridEditorOverlayView> doomed;
        const auto end = [&doomed] { doomed.reset(); };
        doomed = std::make_unique<GridEditorOverlayView>(
            start_, visibleFrame, 8, end, [end](const GridDefinitionRef& /*grid*/) { end(); },
            GridEditorSurroundings{mainLoop_, textMeasurer_});
        EXPECT_TRUE(doomed->keyDown({key, 0}));
        EXPECT_EQ(doomed, nullptr);
    }
}

TEST_F(GridEditorOverlayViewTest, EveryChangeAsksForOneRedraw) {
    useGrid({0.5}, {});
    EXPECT_EQ(redrawsDuring([this] { view().mouseMoved(at(0.5, 0.2)); }), 1);
    EXPECT_EQ(redrawsDuring([this] { press(0.5, 0.2); }), 1);
    EXPECT_EQ(redrawsDuring([this] { drag(0.6, 0.2); }), 1);
    EXPECT_EQ(redrawsDuring([this] { release(0.6, 0.2); }), 1);
    EXPECT_EQ(redrawsDuring([this] { view().rightMouseDown(at(0.6, 0.2)); }), 1);
}

} // namespace

} // namespace tarvex
