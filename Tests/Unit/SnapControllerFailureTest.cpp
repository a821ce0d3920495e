#include "Tests/Unit/SnapControllerFixture.h"

namespace tarvex {
namespace {

class SnapControllerFailureTest : public SnapControllerTest {
protected:
    // Other masks than the built-in ones, so that a fall-back shows.
    void configureOtherMasks() {
        configure([](TarvexConfigFields& fields) {
            fields.singleSnapModifiers = ModifierDefinition{modifier_mask::option};
            fields.multiSnapModifiers = ModifierDefinition{modifier_mask::control};
            fields.cellMarginPoints = 0;
        });
    }
};

TEST_F(SnapControllerFailureTest, BrokenConfigurationFallsBackToTheDefaultsWhenModifiersChange) {
    configureOtherMasks();
    breakConfiguration();
    dragWindowTo(inLeftZone);
    forgetHistory();
    desktop_.holdModifiers(command);
    EXPECT_EQ(
        happened(),
        (Lines{"config load", "file log: SnapController.updateOverlayState match modifiers=256 mode=single",
               "overlay 1 made", "overlay 1 front", "config load"}));
    EXPECT_TRUE(controller().isOverlayActive());
    // The selection is skipped, not made up from the defaults.
    EXPECT_TRUE(selectedKeys().empty());
    EXPECT_TRUE(controller().activeCells().empty());
    EXPECT_EQ(controller().activeGrid(), nullptr);
    EXPECT_EQ(shownGridId(), "default");
}

TEST_F(SnapControllerFailureTest, BrokenConfigurationFallsBackToTheDefaultsWhenThePointerMoves) {
    showZonesAt(inLeftZone);
    breakConfiguration();
    desktop_.moveTo(inRightZone);
    EXPECT_EQ(happened(),
              (Lines{"config load", "file log: SnapController.snapDragStart modifiers=256 mode=single",
                     "config load"}));
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c0"}));
    EXPECT_TRUE(isOverlayShown());
}

TEST_F(SnapControllerFailureTest, BrokenConfigurationHidesByTheDefaultMasks) {
    configureOtherMasks();
    showZonesAt(inLeftZone, option);
    ASSERT_TRUE(controller().isOverlayActive());
    breakConfiguration();
    desktop_.holdModifiers(control);
    EXPECT_FALSE(controller().isOverlayActive());
    EXPECT_EQ(desktop_.fileLog().lines(),
              (Lines{"SnapController.updateOverlayState noMatch modifiers=4096"}));
}

TEST_F(SnapControllerFailureTest, BrokenConfigurationAbandonsTheSnap) {
    showZonesAt(inLeftZone);
    const Rect before = desktop_.windowFrame(window_);
    breakConfiguration();
    desktop_.releaseButton();
    EXPECT_EQ(happened(), (Lines{"config load", "log: SnapController.snapAndHide: failed to load config",
                                 "overlay 1 out"}));
    EXPECT_EQ(desktop_.windowFrame(window_), before);
    expectAtRest();
}

TEST_F(SnapControllerFailureTest, EveryFailedReadingIsLoggedByTheStoreAndLeavesTheFile) {
    showZonesAt(inLeftZone);
    breakConfiguration();
    desktop_.moveTo(inRightZone);
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.log().errors().size(), 3U);
    for (const std::string& error : desktop_.log().errors()) {
        EXPECT_TRUE(error.starts_with("Tarvex/ConfigStore: Failed to decode config: ")) << error;
    }
    EXPECT_EQ(desktop_.configFiles().text(), "{");
}

TEST_F(SnapControllerFailureTest, UnreadableFileBehavesLikeABrokenOne) {
    configureOtherMasks();
    desktop_.configFiles().setUnreadable(true);
    showZonesAt(inLeftZone, command);
    EXPECT_TRUE(controller().isOverlayActive());
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.log().lines(), (Lines{"SnapController.snapAndHide: failed to load config"}));
    EXPECT_TRUE(desktop_.log().errors().front().starts_with("Tarvex/ConfigStore: Failed to read config: "));
}

TEST_F(SnapControllerFailureTest, MissingFolderBehavesLikeABrokenFile) {
    desktop_.configFiles().setFolderBlocked(true);
    showZonesAt(inLeftZone, command);
    EXPECT_TRUE(controller().isOverlayActive());
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.log().lines(), (Lines{"SnapController.snapAndHide: failed to load config"}));
    EXPECT_TRUE(desktop_.log().errors().empty());
    expectAtRest();
}

TEST_F(SnapControllerFailureTest, HealedConfigurationIsUsedAtOnce) {
    breakConfiguration();
    showZonesAt(inLeftZone);
    healConfiguration();
    desktop_.moveTo(inRightZone);
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c1"}));
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.windowFrame(window_), rightZone);
}

TEST_F(SnapControllerFailureTest, MissingWindowIsReportedBeforeTheConfigurationIsRead) {
    desktop_.moveTo({1300, 850});
    desktop_.pressButton();
    desktop_.holdModifiers(command);
    breakConfiguration();
    forgetHistory();
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.log().lines(), (Lines{"SnapController.snapAndHide: activeWindow=nil"}));
    EXPECT_EQ(desktop_.configFiles().loads(), 0);
}

TEST_F(SnapControllerFailureTest, BrokenConfigurationIsReportedBeforeTheMissingScreen) {
    showZonesAt(inLeftZone);
    breakConfiguration();
    desktop_.unplugScreen(101);
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.log().lines(), (Lines{"SnapController.snapAndHide: failed to load config"}));
}

TEST_F(SnapControllerFailureTest, MissingScreenIsReportedBeforeTheEmptySelection) {
    showZonesAt(onPanel);
    desktop_.unplugScreen(101);
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.log().lines(), (Lines{"SnapController.snapAndHide: visibleFrame=nil"}));
    expectAtRest();
}

TEST_F(SnapControllerFailureTest, WindowThatVanishesMidDragIsAnErrorInTheLog) {
    showZonesAt(inLeftZone);
    desktop_.closeWindow(window_);
    desktop_.moveTo(inRightZone);
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c1"}));
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.log().lines(), (Lines{"AccessibilityService.setPosition: failed (-25202)",
                                             "AccessibilityService.setSize: failed (-25202)"}));
    expectAtRest();
}

TEST_F(SnapControllerFailureTest, RefusedPositionStillSetsTheSize) {
    showZonesAt(inLeftZone);
    desktop_.accessibility().answerWrite("AXPosition", ax_error::cannotComplete);
    desktop_.releaseButton();
    EXPECT_EQ(
        desktop_.journal().about({"window 1 write", "log"}),
        (Lines{"window 1 write AXPosition 8,8", "log: AccessibilityService.setPosition: failed (-25204)",
               "window 1 write AXSize 708x859"}));
    expectAtRest();
}

TEST_F(SnapControllerFailureTest, PreferencesWindowLetsEveryEventPassUntouched) {
    desktop_.keyWindow().setTitle("Preferences");
    desktop_.grabWindow(window_);
    desktop_.moveTo(inLeftZone);
    desktop_.holdModifiers(command);
    desktop_.moveTo(inRightZone);
    desktop_.releaseButton();
    desktop_.releaseModifiers();
    EXPECT_TRUE(happened().empty());
    expectAtRest();
}

TEST_F(SnapControllerFailureTest, PreferencesWindowFreezesADragAsItWas) {
    showZonesAt(inLeftZone);
    desktop_.keyWindow().setTitle("Preferences");
    desktop_.moveTo(inRightZone);
    desktop_.releaseModifiers();
    desktop_.releaseButton();
    desktop_.pressButton();
    EXPECT_TRUE(happened().empty());
    EXPECT_TRUE(controller().isDragging());
    EXPECT_TRUE(controller().isOverlayActive());
    EXPECT_TRUE(isOverlayShown());
    EXPECT_EQ(selectedKeys(), (Lines{"r0-c0"}));
    EXPECT_EQ(controller().activeModifiers(), 256U);
    desktop_.keyWindow().setTitle(std::nullopt);
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.windowFrame(window_), leftZone);
    expectAtRest();
}

TEST_F(SnapControllerFailureTest, OtherKeyWindowsDoNotMatter) {
    for (const std::optional<std::string>& title :
         {std::optional<std::string>("preferences"), std::optional<std::string>("Preferences "),
          std::optional<std::string>(""), std::optional<std::string>("About Tarvex"),
          std::optional<std::string>()}) {
        desktop_.keyWindow().setTitle(title);
        desktop_.grabWindow(window_);
        EXPECT_TRUE(controller().isDragging()) << title.value_or("none");
        desktop_.releaseButton();
    }
}

TEST_F(SnapControllerFailureTest, TimeoutNoticeReinstallsTheTapFromWithinTheCallback) {
    forgetHistory();
    desktop_.input().disableTapsByTimeout();
    desktop_.mainLoop().runPosted();
    EXPECT_EQ(happened(),
              (Lines{"remove source", "preflight listening", "log: EventTapManager.start: creating event tap",
                     "create tap", "create source", "add source",
                     "log: EventTapManager.start: event tap installed on current run loop", "enable tap"}));
    EXPECT_EQ(desktop_.input().liveTaps(), 1);
    EXPECT_EQ(desktop_.input().requests().back().callback, &snapEventTapCallback);
    EXPECT_EQ(desktop_.input().requests().back().refcon, &controller());
    desktop_.grabWindow(window_);
    EXPECT_TRUE(controller().isDragging());
}

TEST_F(SnapControllerFailureTest, TimeoutNoticeIsHeededWhileThePreferencesWindowIsKey) {
    desktop_.keyWindow().setTitle("Preferences");
    desktop_.input().disableTapsByTimeout();
    desktop_.mainLoop().runPosted();
    EXPECT_EQ(desktop_.input().listeningTaps(), 1);
}

TEST_F(SnapControllerFailureTest, TimeoutNoticeSetsRefconAndHandlerAgain) {
    snapping_.taps().setRefcon(nullptr);
    snapping_.taps().setHandler(nullptr);
    desktop_.input().disableTapsByTimeout();
    desktop_.mainLoop().runPosted();
    EXPECT_EQ(desktop_.input().listeningTaps(), 1);
    EXPECT_EQ(desktop_.input().requests().back().callback, &snapEventTapCallback);
    EXPECT_EQ(desktop_.input().requests().back().refcon, &controller());
}

TEST_F(SnapControllerFailureTest, TimeoutNoticeBeforeTheStartInstallsNothing) {
    SimulatedSnapping fresh(desktop_);
    forgetHistory();
    const TapEvent notice{EventType::tapDisabledByTimeout, 0};
    EXPECT_EQ(snapEventTapCallback(nullptr, notice.type, &notice, &fresh.controller()), &notice);
    EXPECT_TRUE(happened().empty());
    EXPECT_FALSE(fresh.taps().isInstalled());
}

TEST_F(SnapControllerFailureTest, TimeoutNoticeWhilePermissionIsGoneRetriesUntilItIsBack) {
    desktop_.input().setRefusesTaps(true);
    desktop_.input().disableTapsByTimeout();
    desktop_.mainLoop().runPosted();
    EXPECT_TRUE(snapping_.taps().isWaiting());
    EXPECT_EQ(desktop_.input().liveTaps(), 0);
    desktop_.wait(5);
    desktop_.input().setRefusesTaps(false);
    desktop_.wait(1);
    EXPECT_EQ(desktop_.input().listeningTaps(), 1);
}

TEST_F(SnapControllerFailureTest, TimeoutNoticeMidDragKeepsTheDrag) {
    showZonesAt(inLeftZone);
    desktop_.input().disableTapsByTimeout();
    desktop_.mainLoop().runPosted();
    EXPECT_TRUE(controller().isOverlayActive());
    desktop_.moveTo(inRightZone);
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.windowFrame(window_), rightZone);
    expectAtRest();
}

TEST_F(SnapControllerFailureTest, UserInputNoticeIsIgnored) {
    showZonesAt(inLeftZone);
    desktop_.input().disableTapsByUserInput();
    desktop_.mainLoop().runPosted();
    EXPECT_TRUE(happened().empty());
    EXPECT_EQ(desktop_.input().listeningTaps(), 0);
    EXPECT_TRUE(controller().isOverlayActive());
    desktop_.releaseButton();
    EXPECT_TRUE(controller().isDragging());
}

// The release is never seen; the next press starts over and the one after it ends as ever.
TEST_F(SnapControllerFailureTest, TapThatDiesMidDragRecoversWithTheNextPress) {
    showZonesAt(inLeftZone);
    desktop_.input().killTaps();
    desktop_.moveTo(inRightZone);
    desktop_.releaseButton();
    desktop_.releaseModifiers();
    EXPECT_TRUE(happened().empty());
    EXPECT_TRUE(controller().isOverlayActive());
    EXPECT_TRUE(isOverlayShown());
    controller().start();
    desktop_.grabWindow(window_);
    EXPECT_TRUE(controller().isOverlayActive());
    EXPECT_TRUE(selectedKeys().empty());
    forgetHistory();
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.log().lines(), (Lines{"SnapController.snapAndHide: selection rect=nil"}));
    expectAtRest();
}

TEST_F(SnapControllerFailureTest, TapThatDiesMidDragRecoversWithTheModifiers) {
    showZonesAt(inLeftZone);
    desktop_.input().killTaps();
    desktop_.releaseButton();
    controller().start();
    desktop_.releaseModifiers();
    EXPECT_FALSE(isOverlayShown());
    EXPECT_FALSE(controller().isOverlayActive());
}

TEST_F(SnapControllerFailureTest, ReleaseWithoutAPressDoesNothing) {
    desktop_.moveTo(inLeftZone);
    desktop_.releaseButton();
    desktop_.releaseButton();
    EXPECT_TRUE(happened().empty());
    expectAtRest();
}

TEST_F(SnapControllerFailureTest, SecondReleaseAfterASnapDoesNothing) {
    showZonesAt(inLeftZone);
    desktop_.releaseButton();
    forgetHistory();
    desktop_.releaseButton();
    EXPECT_TRUE(happened().empty());
    EXPECT_EQ(desktop_.windowFrame(window_), leftZone);
}

TEST_F(SnapControllerFailureTest, ModifiersWithNoScreenAtAllAreHarmless) {
    desktop_.grabWindow(window_);
    desktop_.unplugScreen(101);
    desktop_.holdModifiers(command);
    desktop_.moveTo(inRightZone);
    desktop_.releaseModifiers();
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.windows().made().size(), 0U);
    expectAtRest();
}

} // namespace
} // namespace tarvex
