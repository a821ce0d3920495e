#include "Tests/Unit/SnapControllerFixture.h"

namespace tarvex {
namespace {

class SnapControllerSnapTest : public SnapControllerTest {};

TEST_F(SnapControllerSnapTest, WholeDragPutsTheWindowIntoTheZone) {
    desktop_.grabWindow(window_);
    desktop_.moveTo({460, 650});
    desktop_.holdModifiers(command);
    desktop_.moveTo({900, 500});
    desktop_.moveTo(inRightZone);
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.windowFrame(window_), rightZone);
    expectAtRest();
    desktop_.releaseModifiers();
    EXPECT_EQ(desktop_.windowFrame(window_), rightZone);
}

TEST_F(SnapControllerSnapTest, WholeDragAcrossZonesCoversThemAll) {
    desktop_.grabWindow(window_);
    desktop_.moveTo(inLeftZone);
    desktop_.holdModifiers(command | shift);
    desktop_.moveTo(inRightZone);
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.windowFrame(window_), (Rect{8, 33, 1424, 859}));
    expectAtRest();
}

TEST_F(SnapControllerSnapTest, DragWithoutModifiersMovesTheWindowAndNothingElse) {
    desktop_.grabWindow(window_);
    desktop_.moveTo({550, 600});
    forgetHistory();
    desktop_.releaseButton();
    EXPECT_TRUE(happened().empty());
    EXPECT_EQ(desktop_.windowFrame(window_), homeFrame.translated(100, -89));
    expectAtRest();
}

TEST_F(SnapControllerSnapTest, ReleaseWritesPositionThenSizeThenHidesInThisOrder) {
    showZonesAt(inRightZone);
    desktop_.releaseButton();
    EXPECT_EQ(
        happened(),
        (Lines{
            "config load",
            "file log: SnapController.snapAndHide success cells=1 modifiers=256 frame=(724.0, 33.0, 708.0, "
            "859.0)",
            "window 1 write AXPosition 724,8", "window 1 write AXSize 708x859", "overlay 1 out"}));
}

TEST_F(SnapControllerSnapTest, FrameIsLoggedWithOneFractionalDigitAtLeast) {
    configure([](TarvexConfigFields& fields) { fields.cellMarginPoints = 0; });
    showZonesAt(inLeftZone);
    desktop_.releaseButton();
    EXPECT_EQ(
        desktop_.fileLog().lines(),
        (Lines{"SnapController.snapAndHide success cells=1 modifiers=256 frame=(0.0, 25.0, 720.0, 875.0)"}));
    EXPECT_EQ(desktop_.windowFrame(window_), (Rect{0, 25, 720, 875}));
}

TEST_F(SnapControllerSnapTest, FrameIsLoggedInShortestRoundTripForm) {
    configure([](TarvexConfigFields& fields) {
        fields.cellMarginPoints = 0.5;
        fields.grids = {makeGrid("odd", {0.1})};
    });
    desktop_.displays().at(101).frame = {-1440.125, -900, 1440, 900};
    showZonesAt({-1400, -400});
    desktop_.releaseButton();
    EXPECT_EQ(
        desktop_.fileLog().lines(),
        (Lines{"SnapController.snapAndHide success cells=1 modifiers=256 frame=(-1439.625, -874.5, 143.25, "
               "874.0)"}));
}

TEST_F(SnapControllerSnapTest, SeveralZonesAreJoinedAndCounted) {
    configure([](TarvexConfigFields& fields) {
        fields.grids = {makeGrid("quarters", {0.5}, {0.5})};
        fields.cellMarginPoints = 10;
    });
    showZonesAt({100, 800}, command | shift);
    desktop_.moveTo({1300, 100});
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.fileLog().lines().back(), "SnapController.snapAndHide success cells=2 modifiers=768 "
                                                 "frame=(10.0, 35.0, 1420.0, 855.0)");
    EXPECT_EQ(desktop_.windowFrame(window_), (Rect{10, 35, 1420, 855}));
}

TEST_F(SnapControllerSnapTest, ReleaseReadsTheConfigurationOnceAndAfresh) {
    showZonesAt(inLeftZone);
    configure([](TarvexConfigFields& fields) { fields.cellMarginPoints = 0; });
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.configFiles().loads(), 1);
    EXPECT_EQ(desktop_.windowFrame(window_), (Rect{0, 25, 720, 875}));
}

TEST_F(SnapControllerSnapTest, ReleaseUsesTheZonesOfTheLastEventNotOfTheNewConfiguration) {
    showZonesAt(inLeftZone);
    configure([](TarvexConfigFields& fields) { fields.grids = {makeGrid("rows", {}, {0.5})}; });
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.windowFrame(window_), leftZone);
}

TEST_F(SnapControllerSnapTest, ReleaseDoesNotLookAtTheModifiers) {
    showZonesAt(inLeftZone);
    desktop_.keyWindow().setTitle("Preferences");
    desktop_.releaseModifiers();
    desktop_.keyWindow().setTitle(std::nullopt);
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.windowFrame(window_), leftZone);
}

TEST_F(SnapControllerSnapTest, ReleaseOverTheGapSnapsToTheLastZone) {
    showZonesAt(inRightZone);
    desktop_.moveTo(onPanel);
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.windowFrame(window_), rightZone);
    expectAtRest();
}

TEST_F(SnapControllerSnapTest, ReleaseWithNothingSelectedEndsWithoutASnap) {
    showZonesAt(onPanel);
    const Rect before = desktop_.windowFrame(window_);
    desktop_.releaseButton();
    EXPECT_EQ(happened(),
              (Lines{"config load", "log: SnapController.snapAndHide: selection rect=nil", "overlay 1 out"}));
    EXPECT_EQ(desktop_.windowFrame(window_), before);
    expectAtRest();
}

TEST_F(SnapControllerSnapTest, ReleaseAfterTheZonesWereHiddenDoesNotSnap) {
    configure([](TarvexConfigFields& fields) { fields.restoreWindowSizeOnUnsnap = false; });
    showZonesAt(inLeftZone);
    desktop_.releaseModifiers();
    const Rect before = desktop_.windowFrame(window_);
    forgetHistory();
    desktop_.releaseButton();
    EXPECT_TRUE(happened().empty());
    EXPECT_EQ(desktop_.windowFrame(window_), before);
    expectAtRest();
}

TEST_F(SnapControllerSnapTest, WindowMissingAtThePressIsLookedUpAtTheRelease) {
    desktop_.moveTo({1300, 850});
    desktop_.pressButton();
    ASSERT_EQ(controller().activeWindow(), nullptr);
    desktop_.moveTo({450, 500});
    desktop_.holdModifiers(command);
    forgetHistory();
    desktop_.releaseButton();
    EXPECT_EQ(
        happened(),
        (Lines{"hit test 450,400", "window 1 read AXWindow", "config load",
               "file log: SnapController.snapAndHide success cells=1 modifiers=256 frame=(8.0, 33.0, 708.0, "
               "859.0)",
               "window 1 write AXPosition 8,8", "window 1 write AXSize 708x859", "overlay 1 out"}));
    EXPECT_EQ(desktop_.windowFrame(window_), leftZone);
    expectAtRest();
}

TEST_F(SnapControllerSnapTest, NoWindowAtPressAndReleaseIsLogged) {
    desktop_.moveTo({1300, 850});
    desktop_.pressButton();
    desktop_.holdModifiers(command);
    forgetHistory();
    desktop_.releaseButton();
    EXPECT_EQ(happened(), (Lines{"hit test 1300,50", "window 0 read AXWindow", "window 0 read AXParent",
                                 "log: SnapController.snapAndHide: activeWindow=nil", "overlay 1 out"}));
    expectAtRest();
}

TEST_F(SnapControllerSnapTest, WindowOfThePressIsNotLookedUpAgain) {
    const int other = desktop_.openWindow({900, 100, 500, 700});
    showZonesAt(inRightZone);
    desktop_.accessibility().raise(other);
    desktop_.releaseButton();
    EXPECT_TRUE(desktop_.journal().about({"hit test"}).empty());
    EXPECT_EQ(desktop_.windowFrame(window_), rightZone);
    EXPECT_EQ(desktop_.windowFrame(other), (Rect{900, 100, 500, 700}));
}

TEST_F(SnapControllerSnapTest, NoScreenUnderTheReleaseIsLogged) {
    showZonesAt(inRightZone);
    desktop_.moveTo(nowhere);
    forgetHistory();
    desktop_.releaseButton();
    EXPECT_EQ(happened(),
              (Lines{"config load", "log: SnapController.snapAndHide: visibleFrame=nil", "overlay 1 out"}));
    expectAtRest();
}

TEST_F(SnapControllerSnapTest, ReleaseOnAnotherScreenLaysTheStoredZonesOutThere) {
    plugSecondScreen();
    configure([](TarvexConfigFields& fields) {
        fields.grids = {makeGrid("columns", {0.5}), makeGrid("rows", {}, {0.5})};
        fields.defaultGridByDisplayId = {{"v4369-p13107-sno-serial", "rows"}};
    });
    showZonesAt(inRightZone);
    desktop_.input().releaseButton();
    // The pointer is on the other screen by the time the release is handled; no motion says so.
    desktop_.input().moveTo(onSecondScreen);
    desktop_.mainLoop().runPosted();
    EXPECT_EQ(desktop_.windowFrame(window_), (Rect{2404, -292, 948, 1184}));
    expectAtRest();
}

TEST_F(SnapControllerSnapTest, DragAcrossScreensSnapsOnTheSecond) {
    plugSecondScreen();
    showZonesAt(inLeftZone);
    desktop_.moveTo(onSecondScreen);
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.windowFrame(window_), (Rect{1448, -292, 948, 1184}));
    expectAtRest();
}

TEST_F(SnapControllerSnapTest, OriginIsConvertedAgainstTheTallestScreen) {
    plugSecondScreen();
    desktop_.displays().at(202).frame = {1440, 0, 1920, 1300};
    showZonesAt(inLeftZone);
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.journal().about({"window 1 write AXPosition"}),
              (Lines{"window 1 write AXPosition 8,408"}));
    EXPECT_EQ(desktop_.windowFrame(window_), leftZone);
}

TEST_F(SnapControllerSnapTest, SnappedWindowKeepsItsMinimumSize) {
    desktop_.accessibility().at(window_).minimumSize = {800, 300};
    showZonesAt(inLeftZone);
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.accessibility().at(window_).frame, (Rect{8, 8, 800, 859}));
    EXPECT_EQ(desktop_.journal().about({"window 1 write"}).size(), 2U);
}

TEST_F(SnapControllerSnapTest, EmptyRectanglesStillJoinAtTheRelease) {
    configure([](TarvexConfigFields& fields) { fields.cellMarginPoints = 600; });
    showZonesAt(inLeftZone, command | shift);
    desktop_.moveTo(inRightZone);
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.fileLog().lines().back(),
              "SnapController.snapAndHide success cells=2 modifiers=768 frame=(600.0, 625.0, 420.0, 0.0)");
}

TEST_F(SnapControllerSnapTest, TwoHundredSnapsInARowDoNotDrift) {
    for (int round = 0; round < 200; ++round) {
        const bool isLeft = round % 2 == 0;
        desktop_.grabWindow(window_);
        desktop_.moveTo(isLeft ? inLeftZone : inRightZone);
        desktop_.holdModifiers(command);
        desktop_.releaseButton();
        desktop_.releaseModifiers();
        ASSERT_EQ(desktop_.windowFrame(window_), isLeft ? leftZone : rightZone) << round;
        expectAtRest();
    }
    EXPECT_EQ(desktop_.windows().made().size(), 1U);
}

} // namespace
} // namespace tarvex
