#include "Tests/Unit/SnapControllerFixture.h"

namespace tarvex {
namespace {

class SnapControllerDragTest : public SnapControllerTest {};

TEST_F(SnapControllerDragTest, MotionIntoAnotherZoneSelectsItInThisOrder) {
    showZonesAt(inLeftZone);
    desktop_.moveTo(inRightZone);
    EXPECT_EQ(happened(),
              (Lines{"config load", "file log: SnapController.snapDragStart modifiers=256 mode=single",
                     "config load", "overlay 1 picture"}));
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c1"}));
    EXPECT_EQ(picture(), pictureOf(visibleFrame, {leftZone, rightZone}, {rightZone}));
}

TEST_F(SnapControllerDragTest, MotionWithinAZoneReadsTwiceAndDrawsNothing) {
    showZonesAt(inLeftZone);
    desktop_.moveTo({301, 450});
    forgetHistory();
    desktop_.moveTo({302, 451});
    EXPECT_EQ(happened(), (Lines{"config load", "config load"}));
}

TEST_F(SnapControllerDragTest, MotionNeverTouchesTheWindow) {
    showZonesAt(inLeftZone);
    desktop_.moveTo(inRightZone);
    desktop_.moveTo(onPanel);
    desktop_.moveTo(nowhere);
    EXPECT_TRUE(desktop_.journal().about({"hit test", "window"}).empty());
}

TEST_F(SnapControllerDragTest, MotionBeforeTheZonesShowReadsNothing) {
    dragWindowTo(inLeftZone);
    forgetHistory();
    desktop_.moveTo(inRightZone);
    EXPECT_TRUE(happened().empty());
    EXPECT_TRUE(selectedKeys().empty());
    EXPECT_EQ(controller().activeModifiers(), 0U);
}

TEST_F(SnapControllerDragTest, MotionWithoutTheButtonDoesNothing) {
    desktop_.moveTo(inLeftZone);
    desktop_.holdModifiers(command);
    desktop_.send(EventType::leftMouseDragged);
    EXPECT_TRUE(happened().empty());
    expectAtRest();
}

TEST_F(SnapControllerDragTest, SingleModeHoldsExactlyTheZoneUnderThePointer) {
    configure([](TarvexConfigFields& fields) { fields.grids = {makeGrid("quarters", {0.5}, {0.5})}; });
    showZonesAt(inLeftZone);
    for (const auto& [point, key] : std::vector<std::pair<Point, std::string>>{
             {{100, 800}, "r0-c0"}, {{1300, 800}, "r0-c1"}, {{1300, 100}, "r1-c1"}, {{100, 100}, "r1-c0"}}) {
        desktop_.moveTo(point);
        EXPECT_EQ(selectedKeys(), (Lines{key}));
    }
}

TEST_F(SnapControllerDragTest, MultiModeGathersEveryZonePassedOver) {
    configure([](TarvexConfigFields& fields) { fields.grids = {makeGrid("quarters", {0.5}, {0.5})}; });
    showZonesAt({100, 800}, command | shift);
    desktop_.moveTo({1300, 800});
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c0", "r0-c1"}));
    desktop_.moveTo({1300, 100});
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c0", "r0-c1", "r1-c1"}));
    desktop_.moveTo({1300, 800});
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c0", "r0-c1", "r1-c1"}));
}

TEST_F(SnapControllerDragTest, SelectionIsDrawnInTheOrderOfTheZones) {
    showZonesAt(inRightZone, command | shift);
    desktop_.moveTo(inLeftZone);
    const Lines lines = picture();
    ASSERT_EQ(lines.size(), 5U);
    EXPECT_EQ(lines.at(3), "fill 8,8 708x859 accent 0.5");
    EXPECT_EQ(lines.at(4), "fill 724,8 708x859 accent 0.5");
}

TEST_F(SnapControllerDragTest, SharedEdgeBelongsToTheZoneOnItsLeft) {
    showZonesAt(inRightZone);
    desktop_.moveTo({720, 450});
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c0"}));
    desktop_.moveTo({720.5, 450});
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c1"}));
}

TEST_F(SnapControllerDragTest, MarginBetweenZonesStillBelongsToOne) {
    showZonesAt(inRightZone);
    desktop_.moveTo({718, 450});
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c0"}));
    desktop_.moveTo({2, 27});
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c0"}));
}

TEST_F(SnapControllerDragTest, PointerOverAPanelKeepsTheSelection) {
    showZonesAt(inRightZone);
    desktop_.moveTo(onPanel);
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c1"}));
    EXPECT_EQ(desktop_.journal().about({"overlay"}), Lines());
}

TEST_F(SnapControllerDragTest, PointerOffEveryScreenKeepsEverything) {
    showZonesAt(inRightZone);
    const GridDefinitionRef grid = controller().activeGrid();
    desktop_.moveTo(nowhere);
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c1"}));
    EXPECT_EQ(controller().activeGrid(), grid);
    EXPECT_EQ(controller().activeCells().size(), 2U);
    EXPECT_EQ(desktop_.configFiles().loads(), 2);
}

TEST_F(SnapControllerDragTest, DragStartIsLoggedOncePerDrag) {
    showZonesAt(inLeftZone);
    desktop_.moveTo({310, 450});
    desktop_.moveTo({320, 450});
    desktop_.releaseModifiers();
    desktop_.holdModifiers(command);
    desktop_.moveTo({330, 450});
    EXPECT_EQ(desktop_.fileLog().lines(),
              (Lines{"SnapController.snapDragStart modifiers=256 mode=single",
                     "SnapController.updateOverlayState noMatch modifiers=0",
                     "SnapController.updateOverlayState match modifiers=256 mode=single"}));
    desktop_.releaseButton();
    desktop_.releaseModifiers();
    showZonesAt(inLeftZone);
    desktop_.moveTo({310, 450});
    EXPECT_EQ(desktop_.fileLog().lines(), (Lines{"SnapController.snapDragStart modifiers=256 mode=single"}));
}

TEST_F(SnapControllerDragTest, MotionWithOtherModifiersHidesNothingAndIsNotLogged) {
    showZonesAt(inLeftZone);
    // The change itself goes past the controller, as it does while a shortcut is recorded.
    desktop_.keyWindow().setTitle("Preferences");
    desktop_.holdModifiers(option);
    desktop_.keyWindow().setTitle(std::nullopt);
    forgetHistory();
    desktop_.moveTo(inRightZone);
    EXPECT_TRUE(controller().isOverlayActive());
    EXPECT_TRUE(isOverlayShown());
    EXPECT_EQ(controller().activeModifiers(), 2048U);
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c1"}));
    EXPECT_TRUE(desktop_.fileLog().lines().empty());
}

TEST_F(SnapControllerDragTest, ModeFollowsTheModifiersOfTheMotionItself) {
    showZonesAt(inLeftZone);
    desktop_.keyWindow().setTitle("Preferences");
    desktop_.holdModifiers(command | shift);
    desktop_.keyWindow().setTitle(std::nullopt);
    forgetHistory();
    desktop_.moveTo(inRightZone);
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c0", "r0-c1"}));
    EXPECT_EQ(controller().activeModifiers(), 768U);
    EXPECT_EQ(desktop_.fileLog().lines(), (Lines{"SnapController.snapDragStart modifiers=768 mode=multi"}));
}

TEST_F(SnapControllerDragTest, ConfigurationChangedDuringTheDragCountsAtOnce) {
    showZonesAt(inLeftZone);
    configure([](TarvexConfigFields& fields) {
        fields.grids = {makeGrid("rows", {}, {0.5})};
        fields.cellMarginPoints = 0;
    });
    desktop_.moveTo({310, 200});
    EXPECT_EQ(activeGridId(), "rows");
    EXPECT_EQ(selectedKeys(), (Lines{"r1-c0"}));
    EXPECT_EQ(picture(), pictureOf(visibleFrame, {{0, 462.5, 1440, 437.5}, {0, 25, 1440, 437.5}},
                                   {{0, 25, 1440, 437.5}}));
}

TEST_F(SnapControllerDragTest, ZonesAreRecomputedWhileTheSelectionKeepsItsKeys) {
    showZonesAt(inLeftZone, command | shift);
    configure([](TarvexConfigFields& fields) { fields.grids = {makeGrid("thirds", {0.25, 0.75})}; });
    desktop_.moveTo({1430, 450});
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c0", "r0-c2"}));
    EXPECT_EQ(controller().activeCells().size(), 3U);
}

TEST_F(SnapControllerDragTest, SelectionOfZonesThatNoLongerExistIsPassedOver) {
    showZonesAt(inRightZone, command | shift);
    configure([](TarvexConfigFields& fields) { fields.grids = {makeGrid("one", {})}; });
    desktop_.moveTo(inLeftZone);
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c0", "r0-c1"}));
    EXPECT_EQ(picture(), pictureOf(visibleFrame, {{8, 33, 1424, 859}}, {{8, 33, 1424, 859}}));
}

TEST_F(SnapControllerDragTest, PointerIsReadWhenTheMotionIsHandled) {
    showZonesAt(inLeftZone);
    desktop_.input().moveTo(inRightZone);
    desktop_.input().moveTo(inLeftZone);
    desktop_.mainLoop().runPosted();
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c0"}));
    EXPECT_EQ(desktop_.configFiles().loads(), 2);
}

TEST_F(SnapControllerDragTest, MotionAcrossScreensTakesTheGridOfTheScreenUnderThePointer) {
    plugSecondScreen();
    configure([](TarvexConfigFields& fields) {
        fields.grids = {makeGrid("columns", {0.5}), makeGrid("rows", {}, {0.5})};
        fields.defaultGridByDisplayId = {{"v4369-p13107-sno-serial", "rows"}};
    });
    showZonesAt(inLeftZone);
    desktop_.moveTo(onSecondScreen);
    EXPECT_EQ(activeGridId(), "rows");
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c0"}));
    // The overlay stays where it is until a modifier changes.
    EXPECT_EQ(overlayFrame(), visibleFrame);
    EXPECT_EQ(desktop_.journal().about({"overlay"}), (Lines{"overlay 1 picture"}));
}

TEST_F(SnapControllerDragTest, ScreenUnpluggedDuringTheDragKeepsTheSelection) {
    showZonesAt(inRightZone);
    desktop_.unplugScreen(101);
    desktop_.moveTo(inLeftZone);
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c1"}));
    EXPECT_TRUE(controller().isOverlayActive());
}

} // namespace
} // namespace tarvex
