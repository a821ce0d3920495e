#include "Tests/Unit/SnapControllerFixture.h"

namespace tarvex {
namespace {

class SnapControllerOverlayTest : public SnapControllerTest {};

TEST_F(SnapControllerOverlayTest, OverlayOfTheSameFrameIsUsedAgain) {
    showZonesAt(inLeftZone);
    desktop_.holdModifiers(command | shift);
    EXPECT_EQ(desktop_.journal().about({"overlay"}), (Lines{"overlay 1 front"}));
    desktop_.releaseModifiers();
    forgetHistory();
    desktop_.holdModifiers(command);
    EXPECT_EQ(desktop_.journal().about({"overlay"}), (Lines{"overlay 1 front"}));
    EXPECT_EQ(picture(), pictureOf(visibleFrame, {leftZone, rightZone}, {leftZone}));
}

TEST_F(SnapControllerOverlayTest, OverlayOutlivesTheDrag) {
    showZonesAt(inLeftZone);
    desktop_.releaseButton();
    desktop_.releaseModifiers();
    ASSERT_EQ(desktop_.windows().open().size(), 1U);
    EXPECT_FALSE(isOverlayShown());
    forgetHistory();
    showZonesAt(inRightZone);
    EXPECT_EQ(desktop_.windows().made().size(), 1U);
    EXPECT_EQ(picture(), pictureOf(visibleFrame, {leftZone, rightZone}, {rightZone}));
}

TEST_F(SnapControllerOverlayTest, AnotherVisibleFrameReplacesTheOverlay) {
    showZonesAt(inLeftZone);
    desktop_.releaseModifiers();
    desktop_.displays().at(101).leftPanel = 40;
    forgetHistory();
    desktop_.holdModifiers(command);
    EXPECT_EQ(desktop_.journal().about({"overlay"}),
              (Lines{"overlay 1 close", "overlay 2 made", "overlay 2 front", "overlay 2 picture"}));
    EXPECT_EQ(overlayFrame(), (Rect{40, 25, 1400, 875}));
    EXPECT_EQ(desktop_.windows().open().size(), 1U);
}

TEST_F(SnapControllerOverlayTest, AnotherScreenReplacesTheOverlay) {
    plugSecondScreen();
    showZonesAt(inLeftZone);
    desktop_.moveTo(onSecondScreen);
    forgetHistory();
    desktop_.holdModifiers(command | shift);
    EXPECT_EQ(desktop_.windows().open().size(), 1U);
    EXPECT_EQ(overlayFrame(), secondScreenFrame);
    EXPECT_EQ(shownNumber(), 2);
}

TEST_F(SnapControllerOverlayTest, OverlayThatCameUpElsewhereIsReplacedNextTime) {
    desktop_.windows().displaceNewWindows(0, 30);
    showZonesAt(inLeftZone);
    desktop_.windows().displaceNewWindows(0, 0);
    desktop_.holdModifiers(command | shift);
    EXPECT_EQ(overlayFrame(), visibleFrame);
    EXPECT_EQ(shownNumber(), 2);
}

TEST_F(SnapControllerOverlayTest, ZonesOfAScreenOffTheOriginLandOnIt) {
    plugSecondScreen();
    showZonesAt(onSecondScreen);
    EXPECT_EQ(picture(), pictureOf(secondScreenFrame, {{1448, -292, 948, 1184}, {2404, -292, 948, 1184}},
                                   {{1448, -292, 948, 1184}}));
}

TEST_F(SnapControllerOverlayTest, MatchedZonesFillOnlyTheirOwnRectangles) {
    showZonesAt(inLeftZone, command | shift);
    desktop_.moveTo(inRightZone);
    const Lines lines = picture();
    ASSERT_EQ(lines.size(), 5U);
    EXPECT_EQ(lines.at(3), "fill 8,8 708x859 accent 0.5");
    EXPECT_EQ(lines.at(4), "fill 724,8 708x859 accent 0.5");
}

TEST_F(SnapControllerOverlayTest, ZoneThatItsMarginSwallowsIsOutlinedButNotFilled) {
    configure([](TarvexConfigFields& fields) { fields.cellMarginPoints = 600; });
    showZonesAt(inLeftZone);
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c0"}));
    EXPECT_EQ(picture(), pictureOf(visibleFrame, {{600, 625, 0, 0}, {1020, 625, 0, 0}}, {}));
}

} // namespace
} // namespace tarvex
