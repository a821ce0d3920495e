#include "Tests/Unit/SnapControllerFixture.h"

namespace tarvex {
namespace {

class SnapControllerRestoreTest : public SnapControllerTest {
protected:
    Lines writes() { return desktop_.journal().about({"window 1 write"}); }

    const Lines restoring_ = {"window 1 write AXPosition 200,200", "window 1 write AXSize 500x400"};
};

TEST_F(SnapControllerRestoreTest, LettingGoMidDragPutsTheWindowBack) {
    showZonesAt(inRightZone);
    ASSERT_NE(desktop_.windowFrame(window_), homeFrame);
    desktop_.releaseModifiers();
    EXPECT_EQ(desktop_.windowFrame(window_), homeFrame);
    EXPECT_EQ(writes(), restoring_);
    EXPECT_FALSE(isOverlayShown());
}

TEST_F(SnapControllerRestoreTest, SizeIsPutBackToo) {
    showZonesAt(inRightZone);
    desktop_.moveWindow(window_, {300, 300, 111, 99});
    desktop_.releaseModifiers();
    EXPECT_EQ(desktop_.windowFrame(window_), homeFrame);
}

TEST_F(SnapControllerRestoreTest, PressingThemAgainShowsAFreshSelection) {
    showZonesAt(inLeftZone, command | shift);
    desktop_.moveTo(inRightZone);
    ASSERT_EQ(selectedKeys().size(), 2U);
    desktop_.releaseModifiers();
    EXPECT_TRUE(selectedKeys().empty());
    desktop_.holdModifiers(command | shift);
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c1"}));
    EXPECT_EQ(picture(), pictureOf(visibleFrame, {leftZone, rightZone}, {rightZone}));
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.windowFrame(window_), rightZone);
}

TEST_F(SnapControllerRestoreTest, AnotherCombinationRestoresAsWell) {
    showZonesAt(inLeftZone);
    desktop_.holdModifiers(command | option);
    EXPECT_EQ(writes(), restoring_);
}

TEST_F(SnapControllerRestoreTest, SecondMismatchDoesNotRestoreAgain) {
    showZonesAt(inLeftZone);
    desktop_.releaseModifiers();
    forgetHistory();
    desktop_.holdModifiers(option);
    desktop_.releaseModifiers();
    EXPECT_TRUE(writes().empty());
}

TEST_F(SnapControllerRestoreTest, MismatchBeforeTheZonesWereShownDoesNotRestore) {
    dragWindowTo(inLeftZone);
    forgetHistory();
    desktop_.holdModifiers(option);
    EXPECT_TRUE(writes().empty());
}

TEST_F(SnapControllerRestoreTest, RestoringCanBeSwitchedOff) {
    configure([](TarvexConfigFields& fields) { fields.restoreWindowSizeOnUnsnap = false; });
    showZonesAt(inLeftZone);
    desktop_.releaseModifiers();
    EXPECT_TRUE(writes().empty());
    EXPECT_FALSE(isOverlayShown());
    EXPECT_FALSE(controller().isOverlayActive());
}

TEST_F(SnapControllerRestoreTest, AbsentSettingRestores) {
    configure([](TarvexConfigFields& fields) { fields.restoreWindowSizeOnUnsnap.reset(); });
    showZonesAt(inLeftZone);
    desktop_.releaseModifiers();
    EXPECT_EQ(writes(), restoring_);
}

TEST_F(SnapControllerRestoreTest, BrokenConfigurationRestoresByTheBuiltInSetting) {
    configure([](TarvexConfigFields& fields) { fields.restoreWindowSizeOnUnsnap = false; });
    showZonesAt(inLeftZone);
    breakConfiguration();
    desktop_.releaseModifiers();
    EXPECT_EQ(writes(), restoring_);
}

TEST_F(SnapControllerRestoreTest, WithoutAWindowNothingIsRestored) {
    desktop_.moveTo({1300, 850});
    desktop_.pressButton();
    desktop_.holdModifiers(command);
    forgetHistory();
    desktop_.releaseModifiers();
    EXPECT_EQ(happened(),
              (Lines{"config load", "file log: SnapController.updateOverlayState noMatch modifiers=0",
                     "overlay 1 out"}));
}

TEST_F(SnapControllerRestoreTest, WithoutAnOriginalFrameNothingIsRestored) {
    desktop_.accessibility().answerRead(window_, "AXSize", {ax_error::cannotComplete, std::nullopt});
    showZonesAt(inLeftZone);
    desktop_.releaseModifiers();
    EXPECT_TRUE(desktop_.journal().about({"window"}).empty());
    EXPECT_FALSE(isOverlayShown());
}

TEST_F(SnapControllerRestoreTest, TheWindowsOwnFrameIsNotReadFirst) {
    showZonesAt(inLeftZone);
    desktop_.releaseModifiers();
    EXPECT_TRUE(desktop_.journal().about({"window 1 read", "hit test"}).empty());
}

TEST_F(SnapControllerRestoreTest, OriginIsConvertedWhenItIsWritten) {
    showZonesAt(inLeftZone);
    plugSecondScreen();
    desktop_.displays().at(202).frame = {1440, 0, 1920, 1300};
    desktop_.releaseModifiers();
    EXPECT_EQ(writes(), (Lines{"window 1 write AXPosition 200,600", "window 1 write AXSize 500x400"}));
}

TEST_F(SnapControllerRestoreTest, FrameOfALaterPressIsTheOneRestored) {
    showZonesAt(inLeftZone);
    desktop_.moveTo({150, 150});
    desktop_.moveWindow(window_, {100, 100, 640, 480});
    desktop_.pressButton();
    desktop_.moveWindow(window_, {0, 0, 300, 300});
    desktop_.releaseModifiers();
    EXPECT_EQ(desktop_.windowFrame(window_), (Rect{100, 100, 640, 480}));
}

TEST_F(SnapControllerRestoreTest, VanishedWindowIsLoggedAndTheZonesHide) {
    showZonesAt(inLeftZone);
    desktop_.closeWindow(window_);
    desktop_.releaseModifiers();
    EXPECT_EQ(desktop_.log().lines(), (Lines{"AccessibilityService.setPosition: failed (-25202)",
                                             "AccessibilityService.setSize: failed (-25202)"}));
    EXPECT_FALSE(isOverlayShown());
    desktop_.releaseButton();
    expectAtRest();
}

} // namespace
} // namespace tarvex
