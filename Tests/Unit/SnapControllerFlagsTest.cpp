#include "Tests/Unit/SnapControllerFixture.h"

namespace tarvex {
namespace {

class SnapControllerFlagsTest : public SnapControllerTest {};

TEST_F(SnapControllerFlagsTest, MatchingModifiersShowTheZonesInThisOrder) {
    dragWindowTo(inLeftZone);
    forgetHistory();
    desktop_.holdModifiers(command);
    EXPECT_EQ(
        happened(),
        (Lines{"config load", "file log: SnapController.updateOverlayState match modifiers=256 mode=single",
               "overlay 1 made", "overlay 1 front", "config load", "overlay 1 picture"}));
    EXPECT_TRUE(controller().isOverlayActive());
    EXPECT_EQ(controller().activeModifiers(), 256U);
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c0"}));
    EXPECT_EQ(overlayFrame(), visibleFrame);
    EXPECT_EQ(picture(), pictureOf(visibleFrame, {leftZone, rightZone}, {leftZone}));
}

TEST_F(SnapControllerFlagsTest, OtherModifiersHideTheZonesInThisOrder) {
    showZonesAt(inLeftZone);
    desktop_.releaseModifiers();
    EXPECT_EQ(happened(),
              (Lines{"config load", "file log: SnapController.updateOverlayState noMatch modifiers=0",
                     "window 1 write AXPosition 200,200", "window 1 write AXSize 500x400", "overlay 1 out"}));
    EXPECT_TRUE(controller().isDragging());
    EXPECT_FALSE(controller().isOverlayActive());
    EXPECT_EQ(controller().activeModifiers(), 0U);
    EXPECT_TRUE(selectedKeys().empty());
}

TEST_F(SnapControllerFlagsTest, OtherModifiersWithoutAnOverlayOnlyLog) {
    dragWindowTo(inLeftZone);
    forgetHistory();
    desktop_.holdModifiers(option);
    EXPECT_EQ(happened(),
              (Lines{"config load", "file log: SnapController.updateOverlayState noMatch modifiers=2048"}));
    EXPECT_EQ(controller().activeModifiers(), 2048U);
}

TEST_F(SnapControllerFlagsTest, ModifiersOutsideADragDoNothing) {
    desktop_.moveTo(inLeftZone);
    desktop_.holdModifiers(command);
    desktop_.holdModifiers(command | shift);
    desktop_.releaseModifiers();
    EXPECT_TRUE(happened().empty());
    expectAtRest();
}

TEST_F(SnapControllerFlagsTest, ModifiersPressedBeforeTheButtonShowNothingUntilOneChanges) {
    desktop_.holdModifiers(command);
    dragWindowTo(inLeftZone);
    desktop_.moveTo(inRightZone);
    EXPECT_FALSE(controller().isOverlayActive());
    EXPECT_FALSE(isOverlayShown());
    EXPECT_EQ(desktop_.configFiles().loads(), 0);
    desktop_.holdModifiers(command | shift);
    EXPECT_TRUE(controller().isOverlayActive());
    EXPECT_EQ(desktop_.fileLog().lines(),
              (Lines{"SnapController.updateOverlayState match modifiers=768 mode=multi"}));
}

TEST_F(SnapControllerFlagsTest, ExtraModifierIsNoMatch) {
    const std::vector<std::pair<std::uint64_t, std::uint32_t>> masks = {
        {command | option, 2304},
        {command | control, 4352},
        {command | shift | option, 2816},
        {command | shift | control, 4864},
        {shift, 512},
        {command | shift | option | control, 6912},
    };
    for (const auto& [flags, mask] : masks) {
        showZonesAt(inLeftZone);
        desktop_.holdModifiers(flags);
        EXPECT_FALSE(controller().isOverlayActive()) << mask;
        EXPECT_FALSE(isOverlayShown()) << mask;
        EXPECT_EQ(desktop_.fileLog().lines(),
                  (Lines{"SnapController.updateOverlayState noMatch modifiers=" + std::to_string(mask)}));
        desktop_.releaseButton();
        desktop_.releaseModifiers();
    }
}

TEST_F(SnapControllerFlagsTest, CapsLockAndOtherFlagsDoNotCount) {
    dragWindowTo(inLeftZone);
    forgetHistory();
    desktop_.holdModifiers(command | event_flag::capsLock | 0x800000 | 0x100 | 0x8);
    EXPECT_EQ(desktop_.fileLog().lines(),
              (Lines{"SnapController.updateOverlayState match modifiers=256 mode=single"}));
    EXPECT_TRUE(controller().isOverlayActive());
}

TEST_F(SnapControllerFlagsTest, ConfiguredMasksReplaceTheBuiltInOnes) {
    configure([](TarvexConfigFields& fields) {
        fields.singleSnapModifiers = ModifierDefinition{modifier_mask::option};
        fields.multiSnapModifiers = ModifierDefinition{modifier_mask::control | modifier_mask::option};
    });
    dragWindowTo(inLeftZone);
    forgetHistory();
    desktop_.holdModifiers(command);
    desktop_.holdModifiers(option);
    desktop_.holdModifiers(option | control);
    EXPECT_EQ(desktop_.fileLog().lines(),
              (Lines{"SnapController.updateOverlayState noMatch modifiers=256",
                     "SnapController.updateOverlayState match modifiers=2048 mode=single",
                     "SnapController.updateOverlayState match modifiers=6144 mode=multi"}));
}

TEST_F(SnapControllerFlagsTest, AbsentMasksAreTheBuiltInOnes) {
    configure([](TarvexConfigFields& fields) {
        fields.singleSnapModifiers.reset();
        fields.multiSnapModifiers.reset();
    });
    dragWindowTo(inLeftZone);
    forgetHistory();
    desktop_.holdModifiers(command);
    desktop_.holdModifiers(command | shift);
    EXPECT_EQ(desktop_.fileLog().lines(),
              (Lines{"SnapController.updateOverlayState match modifiers=256 mode=single",
                     "SnapController.updateOverlayState match modifiers=768 mode=multi"}));
}

TEST_F(SnapControllerFlagsTest, EqualMasksAreAlwaysMulti) {
    configure([](TarvexConfigFields& fields) {
        fields.singleSnapModifiers = ModifierDefinition{modifier_mask::command};
        fields.multiSnapModifiers = ModifierDefinition{modifier_mask::command};
    });
    dragWindowTo(inLeftZone);
    forgetHistory();
    desktop_.holdModifiers(command);
    desktop_.moveTo(inRightZone);
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c0", "r0-c1"}));
    EXPECT_EQ(desktop_.fileLog().lines(),
              (Lines{"SnapController.updateOverlayState match modifiers=256 mode=multi",
                     "SnapController.snapDragStart modifiers=256 mode=multi"}));
}

TEST_F(SnapControllerFlagsTest, MaskOfNoModifiersMatchesWhenTheyAreReleased) {
    configure([](TarvexConfigFields& fields) { fields.singleSnapModifiers = ModifierDefinition{0}; });
    dragWindowTo(inLeftZone);
    EXPECT_FALSE(controller().isOverlayActive());
    desktop_.holdModifiers(option);
    EXPECT_FALSE(controller().isOverlayActive());
    desktop_.releaseModifiers();
    EXPECT_TRUE(controller().isOverlayActive());
}

TEST_F(SnapControllerFlagsTest, ShiftAddedToCommandTurnsToMultiAndKeepsTheZone) {
    showZonesAt(inLeftZone);
    desktop_.holdModifiers(command | shift);
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c0"}));
    desktop_.moveTo(inRightZone);
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c0", "r0-c1"}));
    EXPECT_EQ(picture(), pictureOf(visibleFrame, {leftZone, rightZone}, {leftZone, rightZone}));
}

TEST_F(SnapControllerFlagsTest, ShiftLetGoTurnsToSingleAndKeepsOnlyTheZoneUnderThePointer) {
    showZonesAt(inLeftZone, command | shift);
    desktop_.moveTo(inRightZone);
    desktop_.holdModifiers(command);
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c1"}));
    EXPECT_EQ(picture(), pictureOf(visibleFrame, {leftZone, rightZone}, {rightZone}));
}

TEST_F(SnapControllerFlagsTest, MatchWithNoScreenUnderThePointerOnlyLogs) {
    dragWindowTo(nowhere);
    forgetHistory();
    desktop_.holdModifiers(command);
    EXPECT_EQ(happened(),
              (Lines{"config load",
                     "file log: SnapController.updateOverlayState match modifiers=256 mode=single"}));
    EXPECT_FALSE(controller().isOverlayActive());
    EXPECT_EQ(controller().activeModifiers(), 256U);
    EXPECT_EQ(controller().overlayWindow(), nullptr);
}

TEST_F(SnapControllerFlagsTest, MatchWithNoScreenUnderThePointerLeavesAShownOverlay) {
    showZonesAt(inLeftZone);
    desktop_.moveTo(nowhere);
    desktop_.holdModifiers(command | shift);
    EXPECT_TRUE(controller().isOverlayActive());
    EXPECT_TRUE(isOverlayShown());
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c0"}));
}

TEST_F(SnapControllerFlagsTest, ScreenContainmentIsHalfOpen) {
    const std::vector<std::pair<Point, bool>> corners = {
        {{0, 25}, true}, {{1439.5, 899.5}, true}, {{1440, 450}, false}, {{700, 900}, false}, {{0, 0}, true}};
    for (const auto& [point, isInside] : corners) {
        dragWindowTo(point);
        desktop_.holdModifiers(command);
        EXPECT_EQ(controller().isOverlayActive(), isInside) << point.x << "," << point.y;
        desktop_.releaseButton();
        desktop_.releaseModifiers();
    }
}

TEST_F(SnapControllerFlagsTest, FirstOfOverlappingScreensWins) {
    desktop_.plugScreen({.number = 202, .frame = {0, 0, 1440, 900}});
    showZonesAt(inLeftZone);
    EXPECT_EQ(overlayFrame(), visibleFrame);
}

TEST_F(SnapControllerFlagsTest, MatchOverAPanelShowsZonesAndSelectsNone) {
    dragWindowTo(onPanel);
    forgetHistory();
    desktop_.holdModifiers(command);
    EXPECT_TRUE(controller().isOverlayActive());
    EXPECT_TRUE(selectedKeys().empty());
    EXPECT_EQ(controller().activeCells().size(), 2U);
    EXPECT_EQ(
        happened(),
        (Lines{"config load", "file log: SnapController.updateOverlayState match modifiers=256 mode=single",
               "overlay 1 made", "overlay 1 front", "config load", "overlay 1 picture"}));
    EXPECT_EQ(picture(), pictureOf(visibleFrame, {leftZone, rightZone}, {}));
}

TEST_F(SnapControllerFlagsTest, ConfigurationIsReadTwiceForAMatchAndOnceOtherwise) {
    dragWindowTo(inLeftZone);
    forgetHistory();
    desktop_.holdModifiers(command);
    EXPECT_EQ(desktop_.configFiles().loads(), 2);
    desktop_.configFiles().resetLoads();
    desktop_.holdModifiers(command | shift);
    EXPECT_EQ(desktop_.configFiles().loads(), 2);
    desktop_.configFiles().resetLoads();
    desktop_.releaseModifiers();
    EXPECT_EQ(desktop_.configFiles().loads(), 1);
    desktop_.moveTo(nowhere);
    desktop_.configFiles().resetLoads();
    desktop_.holdModifiers(command);
    EXPECT_EQ(desktop_.configFiles().loads(), 1);
}

TEST_F(SnapControllerFlagsTest, ConfigurationIsReadAfreshForEveryEvent) {
    showZonesAt(inLeftZone);
    configure([](TarvexConfigFields& fields) { fields.cellMarginPoints = 0; });
    desktop_.holdModifiers(command | shift);
    EXPECT_EQ(picture(),
              pictureOf(visibleFrame, {{0, 25, 720, 875}, {720, 25, 720, 875}}, {{0, 25, 720, 875}}));
}

// The first reading decides whether there is a match and how the last picture looks, the second one which
// zones there are and whether they add up.
TEST_F(SnapControllerFlagsTest, EachReadingGovernsItsOwnStep) {
    dragWindowTo(inLeftZone);
    desktop_.configFiles().put(configText([](TarvexConfigFields& fields) { fields.cellMarginPoints = 0; }));
    desktop_.configFiles().resetLoads();
    desktop_.configFiles().onLoad([this](int load) {
        if (load == 1) {
            configure([](TarvexConfigFields& fields) {
                fields.grids = {makeGrid("thirds", {0.25, 0.5})};
                fields.cellMarginPoints = 100;
            });
        }
    });
    desktop_.holdModifiers(command);
    EXPECT_EQ(activeGridId(), "thirds");
    EXPECT_EQ(picture(),
              pictureOf(visibleFrame, {{0, 25, 360, 875}, {360, 25, 360, 875}, {720, 25, 720, 875}},
                        {{0, 25, 360, 875}}));
    desktop_.configFiles().onLoad(nullptr);
}

TEST_F(SnapControllerFlagsTest, ModeOfTheSelectionIsThatOfTheSecondReading) {
    showZonesAt(inLeftZone);
    desktop_.moveTo({1100, 450});
    ASSERT_EQ(selectedKeys(), (Lines{"r0-c1"}));
    desktop_.input().moveTo(inLeftZone);
    desktop_.input().setModifiers(command | shift);
    desktop_.configFiles().resetLoads();
    desktop_.configFiles().onLoad([this](int load) {
        // The motion reads twice; the third reading is the first one of the modifiers.
        if (load == 3) {
            configure([](TarvexConfigFields& fields) { fields.multiSnapModifiers = ModifierDefinition{1}; });
        }
    });
    desktop_.mainLoop().runPosted();
    EXPECT_EQ(desktop_.configFiles().loads(), 4);
    EXPECT_EQ(desktop_.fileLog().lines().back(),
              "SnapController.updateOverlayState match modifiers=768 mode=multi");
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c0"}));
    desktop_.configFiles().onLoad(nullptr);
}

} // namespace
} // namespace tarvex
