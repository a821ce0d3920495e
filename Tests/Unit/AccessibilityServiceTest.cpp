#include "App/Input/AccessibilityService.h"

#include "Tests/Support/Simulated/SimulatedDesktop.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarvex {
namespace {

using Lines = std::vector<std::string>;

class AccessibilityServiceTest : public ::testing::Test {
protected:
    AccessibilityServiceTest() {
        desktop_.plugScreen({.number = 1, .frame = {0, 0, 1920, 1080}});
        window_ = desktop_.openWindow({100, 200, 400, 300});
    }

    [[nodiscard]] SimulatedAccessibility& windows() { return desktop_.accessibility(); }

    AccessibilityElementRef find(Point point) { return service_.getWindowUnderCursor(point); }

    SimulatedDesktop desktop_;
    AccessibilityService service_{desktop_.accessibility(), desktop_.displays(), desktop_.log()};
    int window_ = 0;
    const Point inside_{300, 350};
};

TEST_F(AccessibilityServiceTest, TrustIsAskedForWithThePromptAndLogged) {
    service_.ensureTrusted();
    EXPECT_EQ(desktop_.journal().entries(),
              (Lines{"ask for trust with prompt", "log: AccessibilityService.ensureTrusted: trusted=true"}));
}

TEST_F(AccessibilityServiceTest, MissingTrustIsLoggedWithTheWayToGrantIt) {
    windows().setTrusted(false);
    service_.ensureTrusted();
    EXPECT_EQ(
        desktop_.log().lines(),
        (Lines{"AccessibilityService.ensureTrusted: trusted=false",
               "AccessibilityService.ensureTrusted: not trusted. Check Privacy & Security -> Accessibility "
               "for Tarvex.app"}));
}

TEST_F(AccessibilityServiceTest, TrustIsAskedForAnewEachTime) {
    windows().setTrusted(false);
    service_.ensureTrusted();
    windows().setTrusted(true);
    service_.ensureTrusted();
    EXPECT_EQ(desktop_.log().lines().back(), "AccessibilityService.ensureTrusted: trusted=true");
}

TEST_F(AccessibilityServiceTest, FrameAtTheBottomOfA1080HighDesktopStandsAt980) {
    EXPECT_EQ(service_.convertToAccessibilityOrigin({50, 0, 200, 100}), (Point{50, 980}));
    EXPECT_EQ(service_.convertToCocoaOrigin({50, 980}, {200, 100}), (Point{50, 0}));
}

TEST_F(AccessibilityServiceTest, TallestReachingScreenIsTheTopOfTheDesktop) {
    desktop_.plugScreen({.number = 2, .frame = {1920, -200, 1000, 1600}});
    EXPECT_EQ(service_.convertToAccessibilityOrigin({0, 0, 200, 100}), (Point{0, 1300}));
    EXPECT_EQ(service_.convertToCocoaOrigin({0, 1300}, {200, 100}), (Point{0, 0}));
}

TEST_F(AccessibilityServiceTest, TallestReachingScreenMayComeFirst) {
    desktop_.plugScreen({.number = 2, .frame = {1920, 0, 800, 600}});
    EXPECT_EQ(service_.convertToAccessibilityOrigin({0, 0, 200, 100}), (Point{0, 980}));
}

TEST_F(AccessibilityServiceTest, DesktopThatLiesBelowTheOriginHasItsTopThere) {
    desktop_.unplugScreen(1);
    desktop_.plugScreen({.number = 2, .frame = {0, -700, 800, 600}});
    EXPECT_EQ(service_.convertToAccessibilityOrigin({0, -300, 200, 100}), (Point{0, 100}));
}

TEST_F(AccessibilityServiceTest, WithoutScreensTheTopIsZero) {
    desktop_.unplugScreen(1);
    EXPECT_EQ(service_.convertToAccessibilityOrigin({30, 70, 0, 0}), (Point{30, -70}));
    EXPECT_EQ(service_.convertToCocoaOrigin({30, -70}, {200, 100}), (Point{30, -30}));
    desktop_.journal().clear();
    EXPECT_EQ(find({5, 40}), nullptr);
    EXPECT_EQ(desktop_.journal().entries().front(), "hit test 5,-40");
}

TEST_F(AccessibilityServiceTest, ScreensAreReadAfreshForEachConversion) {
    EXPECT_EQ(service_.convertToAccessibilityOrigin({0, 0, 10, 10}), (Point{0, 1070}));
    desktop_.displays().at(1).frame.height = 500;
    EXPECT_EQ(service_.convertToAccessibilityOrigin({0, 0, 10, 10}), (Point{0, 490}));
    EXPECT_EQ(service_.convertToCocoaOrigin({0, 490}, {10, 10}), (Point{0, 0}));
}

TEST_F(AccessibilityServiceTest, ConversionsAreInverse) {
    desktop_.plugScreen({.number = 2, .frame = {-1280, 300, 1280, 1024}});
    const Rect frame{-321.25, 456.5, 789.75, 123.125};
    EXPECT_EQ(service_.convertToCocoaOrigin(service_.convertToAccessibilityOrigin(frame), frame.size()),
              frame.origin());
}

TEST_F(AccessibilityServiceTest, PointIsConvertedAndHandedOverInSinglePrecision) {
    (void)find({100.1, 80});
    EXPECT_EQ(desktop_.journal().entries().front(),
              "hit test " + describe(Point{static_cast<double>(100.1F), 1000}));
}

TEST_F(AccessibilityServiceTest, WindowUnderThePointIsFound) {
    const AccessibilityElementRef found = find(inside_);
    EXPECT_EQ(SimulatedAccessibility::windowNumber(found), window_);
    EXPECT_EQ(service_.getPointAttribute(found, "AXPosition"), (Point{100, 580}));
    EXPECT_EQ(service_.getSizeAttribute(found, "AXSize"), (Size{400, 300}));
}

TEST_F(AccessibilityServiceTest, ButtonInTheTitleBarLeadsToTheWindowItself) {
    windows().at(window_).partDepth = 3;
    windows().at(window_).partsThatKnowTheWindow = 3;
    const AccessibilityElementRef found = find(desktop_.titleBarOf(window_));
    EXPECT_EQ(SimulatedAccessibility::windowNumber(found), window_);
    EXPECT_EQ(service_.getSizeAttribute(found, "AXSize"), (Size{400, 300}));
}

TEST_F(AccessibilityServiceTest, FailedHitTestIsLoggedWithItsSignedCode) {
    windows().answerHitTest(AccessibilityElementResult{-25204, nullptr});
    EXPECT_EQ(find(inside_), nullptr);
    EXPECT_EQ(desktop_.log().lines(),
              (Lines{"AccessibilityService.getWindowUnderCursor: CopyElementAtPosition failed (-25204)"}));
}

TEST_F(AccessibilityServiceTest, FailedHitTestWinsOverTheElementThatItBrings) {
    const AccessibilityElementResult found = windows().copyElementAtPosition(300, 700);
    ASSERT_NE(found.element, nullptr);
    windows().answerHitTest(AccessibilityElementResult{7, found.element});
    EXPECT_EQ(find(inside_), nullptr);
    EXPECT_EQ(desktop_.log().lines(),
              (Lines{"AccessibilityService.getWindowUnderCursor: CopyElementAtPosition failed (7)"}));
    windows().answerHitTest(std::nullopt);
}

TEST_F(AccessibilityServiceTest, HitTestWithoutAnElementIsLogged) {
    windows().answerHitTest(AccessibilityElementResult{0, nullptr});
    EXPECT_EQ(find(inside_), nullptr);
    EXPECT_EQ(
        desktop_.log().lines(),
        (Lines{"AccessibilityService.getWindowUnderCursor: CopyElementAtPosition returned nil element"}));
}

TEST_F(AccessibilityServiceTest, WithoutPermissionEveryLookupFailsAndIsLogged) {
    windows().setTrusted(false);
    EXPECT_EQ(find(inside_), nullptr);
    EXPECT_EQ(find(inside_), nullptr);
    EXPECT_EQ(desktop_.log().lines(),
              Lines(2, "AccessibilityService.getWindowUnderCursor: CopyElementAtPosition failed (-25211)"));
}

TEST_F(AccessibilityServiceTest, OnlyWindowAndParentAreAskedForOnTheWayUp) {
    windows().at(window_).partDepth = 3;
    windows().at(window_).partsThatKnowTheWindow = 1;
    desktop_.journal().clear();
    ASSERT_NE(find(inside_), nullptr);
    EXPECT_EQ(desktop_.journal().entries(),
              (Lines{"hit test 300,730", "window 1 read AXWindow", "window 1 read AXParent",
                     "window 1 read AXWindow", "window 1 read AXParent", "window 1 read AXWindow"}));
}

TEST_F(AccessibilityServiceTest, TenthElementOfTheChainMayStillKnowItsWindow) {
    windows().at(window_).partDepth = 10;
    windows().at(window_).partsThatKnowTheWindow = 1;
    EXPECT_EQ(SimulatedAccessibility::windowNumber(find(inside_)), window_);
}

TEST_F(AccessibilityServiceTest, ChainDeeperThanTenElementsYieldsNone) {
    windows().at(window_).partDepth = 11;
    windows().at(window_).partsThatKnowTheWindow = 1;
    EXPECT_EQ(find(inside_), nullptr);
    EXPECT_EQ(desktop_.journal().about({"window 1 read AXWindow"}).size(), 10U);
    EXPECT_TRUE(desktop_.log().lines().empty());
}

TEST_F(AccessibilityServiceTest, WindowAttributeWithoutAValueLeadsToTheParent) {
    windows().at(window_).partDepth = 2;
    windows().answerRead(window_, "AXWindow", {0, std::nullopt});
    EXPECT_EQ(find(inside_), nullptr);
    // Two parts, the window, and the desktop, which has no parent.
    EXPECT_EQ(desktop_.journal().about({"window 1 read AXParent"}).size(), 3U);
    EXPECT_EQ(desktop_.journal().about({"window 0 read AXParent"}).size(), 1U);
}

TEST_F(AccessibilityServiceTest, ValueThatComesWithAnErrorDoesNotCount) {
    const AccessibilityElementRef other = find(inside_);
    windows().answerRead(window_, "AXWindow", {ax_error::cannotComplete, AccessibilityValue(other)});
    windows().answerRead(window_, "AXParent", {ax_error::cannotComplete, AccessibilityValue(other)});
    EXPECT_EQ(find(inside_), nullptr);
    windows().answerTruly();
}

TEST_F(AccessibilityServiceTest, UnreadableParentYieldsNoneSilently) {
    windows().at(window_).partsThatKnowTheWindow = 0;
    windows().answerRead(window_, "AXParent", {ax_error::cannotComplete, std::nullopt});
    EXPECT_EQ(find(inside_), nullptr);
    EXPECT_TRUE(desktop_.log().lines().empty());
}

TEST_F(AccessibilityServiceTest, ParentWithoutAValueYieldsNoneSilently) {
    windows().at(window_).partsThatKnowTheWindow = 0;
    windows().answerRead(window_, "AXParent", {0, std::nullopt});
    EXPECT_EQ(find(inside_), nullptr);
    EXPECT_TRUE(desktop_.log().lines().empty());
}

TEST_F(AccessibilityServiceTest, DesktopPanelAndMenuAreNoWindows) {
    desktop_.openWindow({0, 1050, 1920, 30}, SimulatedWindowKind::panel);
    desktop_.openWindow({250, 300, 100, 100}, SimulatedWindowKind::menu);
    EXPECT_EQ(find({1000, 500}), nullptr);
    EXPECT_EQ(find({1000, 1060}), nullptr);
    EXPECT_EQ(find(inside_), nullptr);
    EXPECT_TRUE(desktop_.log().lines().empty());
}

TEST_F(AccessibilityServiceTest, EverythingFetchedOnTheWayUpIsReleased) {
    windows().at(window_).partDepth = 8;
    AccessibilityElementRef found = find(inside_);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(windows().liveElements(), 1);
    found.reset();
    EXPECT_EQ(windows().liveElements(), 0);
    EXPECT_EQ(find({1000, 500}), nullptr);
    EXPECT_EQ(windows().liveElements(), 0);
}

TEST_F(AccessibilityServiceTest, AttributeOfAnotherTypeIsNoneSilently) {
    const AccessibilityElementRef found = find(inside_);
    EXPECT_EQ(service_.getPointAttribute(found, "AXSize"), std::nullopt);
    EXPECT_EQ(service_.getSizeAttribute(found, "AXPosition"), std::nullopt);
    windows().answerRead(window_, "AXPosition", {0, AccessibilityValue(OtherAccessibilityValue{})});
    windows().answerRead(window_, "AXSize", {0, AccessibilityValue(found)});
    EXPECT_EQ(service_.getPointAttribute(found, "AXPosition"), std::nullopt);
    EXPECT_EQ(service_.getSizeAttribute(found, "AXSize"), std::nullopt);
    EXPECT_TRUE(desktop_.log().lines().empty());
    windows().answerTruly();
}

TEST_F(AccessibilityServiceTest, UnreadableAttributeIsNoneSilently) {
    const AccessibilityElementRef found = find(inside_);
    windows().answerRead(window_, "AXPosition", {ax_error::cannotComplete, AccessibilityValue(Point{1, 2})});
    windows().answerRead(window_, "AXSize", {0, std::nullopt});
    EXPECT_EQ(service_.getPointAttribute(found, "AXPosition"), std::nullopt);
    EXPECT_EQ(service_.getSizeAttribute(found, "AXSize"), std::nullopt);
    EXPECT_EQ(service_.getPointAttribute(found, "AXNoSuchAttribute"), std::nullopt);
    EXPECT_TRUE(desktop_.log().lines().empty());
}

TEST_F(AccessibilityServiceTest, AttributesOfAVanishedWindowAreNoneSilently) {
    const AccessibilityElementRef found = find(inside_);
    desktop_.closeWindow(window_);
    EXPECT_EQ(service_.getPointAttribute(found, "AXPosition"), std::nullopt);
    EXPECT_EQ(service_.getSizeAttribute(found, "AXSize"), std::nullopt);
    EXPECT_TRUE(desktop_.log().lines().empty());
}

TEST_F(AccessibilityServiceTest, WindowIsMovedAndResized) {
    const AccessibilityElementRef found = find(inside_);
    desktop_.journal().clear();
    service_.setPosition(found, {10, 20});
    service_.setSize(found, {640, 480});
    EXPECT_EQ(desktop_.journal().entries(),
              (Lines{"window 1 write AXPosition 10,20", "window 1 write AXSize 640x480"}));
    EXPECT_EQ(windows().at(window_).frame, (Rect{10, 20, 640, 480}));
}

TEST_F(AccessibilityServiceTest, FailedWritesAreLoggedAndNotRetried) {
    const AccessibilityElementRef found = find(inside_);
    windows().answerWrite("AXPosition", ax_error::cannotComplete);
    windows().answerWrite("AXSize", ax_error::illegalArgument);
    desktop_.journal().clear();
    service_.setPosition(found, {10, 20});
    service_.setSize(found, {640, 480});
    EXPECT_EQ(
        desktop_.journal().entries(),
        (Lines{"window 1 write AXPosition 10,20", "log: AccessibilityService.setPosition: failed (-25204)",
               "window 1 write AXSize 640x480", "log: AccessibilityService.setSize: failed (-25201)"}));
}

TEST_F(AccessibilityServiceTest, WritesToAVanishedWindowAreLogged) {
    const AccessibilityElementRef found = find(inside_);
    desktop_.closeWindow(window_);
    service_.setPosition(found, {10, 20});
    service_.setSize(found, {640, 480});
    EXPECT_EQ(desktop_.log().lines(), (Lines{"AccessibilityService.setPosition: failed (-25202)",
                                             "AccessibilityService.setSize: failed (-25202)"}));
}

TEST_F(AccessibilityServiceTest, ValueThatCannotBeMadeWritesNothingAndLogsNothing) {
    const AccessibilityElementRef found = find(inside_);
    windows().setRefusesValues(true);
    desktop_.journal().clear();
    service_.setPosition(found, {10, 20});
    service_.setSize(found, {640, 480});
    EXPECT_TRUE(desktop_.journal().entries().empty());
}

TEST_F(AccessibilityServiceTest, WhetherTheWindowCompliedIsNotChecked) {
    windows().at(window_).minimumSize = {300, 200};
    const AccessibilityElementRef found = find(inside_);
    desktop_.journal().clear();
    service_.setSize(found, {100, 100});
    EXPECT_EQ(desktop_.journal().entries(), (Lines{"window 1 write AXSize 100x100"}));
    EXPECT_EQ(windows().at(window_).frame.size(), (Size{300, 200}));
}

} // namespace
} // namespace tarvex
