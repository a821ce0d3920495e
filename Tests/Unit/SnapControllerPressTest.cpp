#include "Tests/Unit/SnapControllerFixture.h"

namespace tarvex {
namespace {

class SnapControllerPressTest : public SnapControllerTest {};

TEST_F(SnapControllerPressTest, NewControllerIsAtRest) {
    SimulatedSnapping fresh(desktop_);
    EXPECT_FALSE(fresh.controller().isDragging());
    EXPECT_FALSE(fresh.controller().isOverlayActive());
    EXPECT_EQ(fresh.controller().activeWindow(), nullptr);
    EXPECT_EQ(fresh.controller().activeGrid(), nullptr);
    EXPECT_EQ(fresh.controller().activeModifiers(), 0U);
    EXPECT_EQ(fresh.controller().originalWindowFrame(), std::nullopt);
    EXPECT_TRUE(fresh.controller().activeCells().empty());
    EXPECT_TRUE(fresh.controller().selectionState().selectedKeys().empty());
    EXPECT_EQ(fresh.controller().overlayWindow(), nullptr);
    EXPECT_FALSE(fresh.taps().isInstalled());
}

TEST_F(SnapControllerPressTest, StartAsksForTrustAndThenInstallsTheTap) {
    SimulatedSnapping fresh(desktop_);
    forgetHistory();
    fresh.controller().start();
    EXPECT_EQ(happened(),
              (Lines{"ask for trust with prompt", "log: AccessibilityService.ensureTrusted: trusted=true",
                     "preflight listening", "log: EventTapManager.start: creating event tap", "create tap",
                     "create source", "add source",
                     "log: EventTapManager.start: event tap installed on current run loop", "enable tap"}));
    EXPECT_EQ(desktop_.input().requests().back().callback, &snapEventTapCallback);
    EXPECT_EQ(desktop_.input().requests().back().refcon, &fresh.controller());
}

TEST_F(SnapControllerPressTest, SecondStartReplacesTheTap) {
    controller().start();
    EXPECT_EQ(desktop_.input().liveTaps(), 1);
    EXPECT_EQ(desktop_.input().listeningTaps(), 1);
}

TEST_F(SnapControllerPressTest, StartWithoutPermissionWaitsAndFollowsDragsOnceGranted) {
    desktop_.input().setListeningAllowed(false);
    SimulatedSnapping late(desktop_);
    late.controller().start();
    desktop_.wait(2);
    EXPECT_TRUE(late.taps().isWaiting());
    desktop_.input().setListeningAllowed(true);
    desktop_.wait(1);
    EXPECT_TRUE(late.taps().isInstalled());
    desktop_.grabWindow(window_);
    EXPECT_TRUE(late.controller().isDragging());
}

TEST_F(SnapControllerPressTest, CallbackWithoutAControllerHandsTheEventBack) {
    const TapEvent event{EventType::leftMouseDown, 0};
    EXPECT_EQ(snapEventTapCallback(nullptr, event.type, &event, nullptr), &event);
    EXPECT_TRUE(happened().empty());
}

TEST_F(SnapControllerPressTest, CallbackHandsEveryEventBackUnchanged) {
    for (const EventType type :
         {EventType::leftMouseDown, EventType::leftMouseDragged, EventType::flagsChanged,
          EventType::leftMouseUp, EventType::tapDisabledByUserInput, EventType::tapDisabledByTimeout,
          static_cast<EventType>(22)}) {
        const TapEvent event{type, command};
        EXPECT_EQ(snapEventTapCallback(nullptr, type, &event, &controller()), &event);
        EXPECT_EQ(event, (TapEvent{type, command}));
    }
}

TEST_F(SnapControllerPressTest, PressFindsTheWindowAndItsFrame) {
    desktop_.grabWindow(window_);
    EXPECT_TRUE(controller().isDragging());
    EXPECT_FALSE(controller().isOverlayActive());
    EXPECT_EQ(SimulatedAccessibility::windowNumber(controller().activeWindow()), window_);
    EXPECT_EQ(controller().originalWindowFrame(), homeFrame);
    EXPECT_EQ(happened(), (Lines{"hit test 450,211", "window 1 read AXWindow", "window 1 read AXPosition",
                                 "window 1 read AXSize"}));
}

TEST_F(SnapControllerPressTest, PressReadsNoConfigurationAndLogsNothing) {
    breakConfiguration();
    desktop_.grabWindow(window_);
    EXPECT_EQ(desktop_.configFiles().loads(), 0);
    EXPECT_TRUE(desktop_.fileLog().lines().empty());
    EXPECT_TRUE(desktop_.log().lines().empty());
}

TEST_F(SnapControllerPressTest, PressCountsWhateverTheModifiers) {
    for (const std::uint64_t modifiers : {std::uint64_t{0}, command, command | shift, option | control}) {
        desktop_.holdModifiers(modifiers);
        desktop_.grabWindow(window_);
        EXPECT_TRUE(controller().isDragging());
        EXPECT_NE(controller().activeWindow(), nullptr);
        desktop_.releaseButton();
        EXPECT_FALSE(controller().isDragging());
    }
}

TEST_F(SnapControllerPressTest, FrameIsTakenInScreenSpaceOfTheWholeDesktop) {
    plugSecondScreen();
    desktop_.displays().at(202).frame = {1440, 100, 1920, 1300};
    const int other = desktop_.openWindow({1500, 150, 640, 480});
    desktop_.grabWindow(other);
    EXPECT_EQ(controller().originalWindowFrame(), (Rect{1500, 150, 640, 480}));
}

TEST_F(SnapControllerPressTest, PointerIsReadWhenTheEventIsHandled) {
    const int other = desktop_.openWindow({900, 100, 300, 300});
    desktop_.moveTo(desktop_.titleBarOf(window_));
    desktop_.input().pressButton();
    desktop_.input().moveTo(desktop_.titleBarOf(other));
    desktop_.mainLoop().runPosted();
    EXPECT_EQ(SimulatedAccessibility::windowNumber(controller().activeWindow()), other);
}

TEST_F(SnapControllerPressTest, PressOnTheDesktopStartsADragWithoutAWindow) {
    desktop_.moveTo({1200, 800});
    desktop_.pressButton();
    EXPECT_TRUE(controller().isDragging());
    EXPECT_EQ(controller().activeWindow(), nullptr);
    EXPECT_EQ(controller().originalWindowFrame(), std::nullopt);
    EXPECT_EQ(desktop_.accessibility().liveElements(), 0);
}

TEST_F(SnapControllerPressTest, PressOnAPanelOrMenuStartsADragWithoutAWindow) {
    desktop_.openWindow({0, 0, 1440, 25}, SimulatedWindowKind::panel);
    desktop_.openWindow({300, 400, 200, 300}, SimulatedWindowKind::menu);
    for (const Point point : {Point{700, 10}, Point{350, 500}}) {
        desktop_.moveTo(point);
        desktop_.pressButton();
        EXPECT_TRUE(controller().isDragging());
        EXPECT_EQ(controller().activeWindow(), nullptr);
        desktop_.releaseButton();
    }
}

TEST_F(SnapControllerPressTest, FailedHitTestStartsADragWithoutAWindow) {
    desktop_.accessibility().answerHitTest(AccessibilityElementResult{ax_error::cannotComplete, nullptr});
    desktop_.grabWindow(window_);
    EXPECT_TRUE(controller().isDragging());
    EXPECT_EQ(controller().activeWindow(), nullptr);
    EXPECT_EQ(desktop_.log().lines(),
              (Lines{"AccessibilityService.getWindowUnderCursor: CopyElementAtPosition failed (-25204)"}));
}

TEST_F(SnapControllerPressTest, UnreadablePositionLeavesNoOriginalFrame) {
    desktop_.accessibility().answerRead(window_, "AXPosition", {ax_error::cannotComplete, std::nullopt});
    desktop_.grabWindow(window_);
    EXPECT_NE(controller().activeWindow(), nullptr);
    EXPECT_EQ(controller().originalWindowFrame(), std::nullopt);
}

TEST_F(SnapControllerPressTest, UnreadableSizeLeavesNoOriginalFrame) {
    desktop_.accessibility().answerRead(window_, "AXSize", {0, AccessibilityValue(Point{1, 2})});
    desktop_.grabWindow(window_);
    EXPECT_NE(controller().activeWindow(), nullptr);
    EXPECT_EQ(controller().originalWindowFrame(), std::nullopt);
}

TEST_F(SnapControllerPressTest, FailureOfASecondPressForgetsTheFirstOnesFrame) {
    desktop_.moveTo(inLeftZone);
    desktop_.pressButton();
    ASSERT_EQ(controller().originalWindowFrame(), homeFrame);
    desktop_.accessibility().answerRead(window_, "AXSize", {ax_error::cannotComplete, std::nullopt});
    desktop_.pressButton();
    EXPECT_EQ(controller().originalWindowFrame(), std::nullopt);
    desktop_.moveTo({1200, 800});
    desktop_.pressButton();
    EXPECT_EQ(controller().activeWindow(), nullptr);
}

TEST_F(SnapControllerPressTest, SecondPressStartsOverWithTheWindowThere) {
    const int other = desktop_.openWindow({900, 100, 300, 300});
    desktop_.moveTo(inLeftZone);
    desktop_.pressButton();
    desktop_.grabWindow(other);
    EXPECT_TRUE(controller().isDragging());
    EXPECT_EQ(SimulatedAccessibility::windowNumber(controller().activeWindow()), other);
    EXPECT_EQ(controller().originalWindowFrame(), (Rect{900, 100, 300, 300}));
    EXPECT_EQ(desktop_.accessibility().liveElements(), 1);
}

TEST_F(SnapControllerPressTest, SecondPressWhileZonesAreShownLeavesThemShown) {
    showZonesAt(inLeftZone);
    const GridDefinitionRef grid = controller().activeGrid();
    desktop_.pressButton();
    EXPECT_TRUE(controller().isDragging());
    EXPECT_TRUE(controller().isOverlayActive());
    EXPECT_TRUE(isOverlayShown());
    EXPECT_TRUE(selectedKeys().empty());
    EXPECT_TRUE(controller().activeCells().empty());
    EXPECT_EQ(controller().activeGrid(), grid);
    EXPECT_EQ(controller().activeModifiers(), 256U);
    EXPECT_EQ(picture(), pictureOf(visibleFrame, {leftZone, rightZone}, {leftZone}));
    EXPECT_TRUE(desktop_.journal().about({"overlay"}).empty());
}

TEST_F(SnapControllerPressTest, DragAfterASecondPressSelectsAndLogsAfresh) {
    showZonesAt(inLeftZone, command | shift);
    desktop_.moveTo({310, 450});
    desktop_.pressButton();
    forgetHistory();
    desktop_.moveTo(inRightZone);
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c1"}));
    EXPECT_EQ(desktop_.fileLog().lines(), (Lines{"SnapController.snapDragStart modifiers=768 mode=multi"}));
}

TEST_F(SnapControllerPressTest, ReleaseWithoutMotionAfterASecondPressHasNothingToSnapTo) {
    showZonesAt(inLeftZone);
    desktop_.pressButton();
    forgetHistory();
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.log().lines(), (Lines{"SnapController.snapAndHide: selection rect=nil"}));
    expectAtRest();
}

TEST_F(SnapControllerPressTest, DestroyedControllerTakesItsTapDown) {
    ASSERT_EQ(desktop_.input().liveTaps(), 1);
    desktop_.input().pressButton();
    snapping_.destroyController();
    EXPECT_EQ(desktop_.input().liveTaps(), 0);
    forgetHistory();
    desktop_.mainLoop().runPosted();
    desktop_.releaseButton();
    EXPECT_TRUE(happened().empty());
}

TEST_F(SnapControllerPressTest, DestroyedControllerStopsItsRetries) {
    desktop_.input().setRefusesTaps(true);
    controller().start();
    ASSERT_TRUE(snapping_.taps().isWaiting());
    snapping_.destroyController();
    EXPECT_TRUE(desktop_.mainLoop().timerIntervals().empty());
}

TEST_F(SnapControllerPressTest, ControllerDestroyedMidDragClosesItsOverlayAndReleasesTheWindow) {
    showZonesAt(inLeftZone);
    snapping_.destroyController();
    EXPECT_TRUE(desktop_.windows().open().empty());
    EXPECT_EQ(desktop_.accessibility().liveElements(), 0);
}

} // namespace
} // namespace tarvex
