#include "Tests/MacOS/MacSnapping.h"
#include "Tests/MacOS/MacWindows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarvex {
namespace {

using testing::Contains;
using testing::IsEmpty;

/// In accessibility space.
constexpr Rect windowFrame{300, 200, 400, 300};
/// A point on the window's title bar, in screen space.
constexpr Point titleBar{400, 595};

class MacDrag : public testing::Test {
protected:
    MacDrag() {
        fake::mac().displays.all = {
            {.number = 1, .vendor = 1552, .bounds = nativeRect({0, 0, 1280, 800}), .isBuiltin = true}};
        window_ = openMacWindow(1, windowFrame);
        snapping_.controller().start();
    }

    static fake::FakeAccessibility& tree() { return fake::mac().accessibility; }

    Rect frame() {
        const CGRect frame = tree().frameOf(window_.window);
        return {frame.origin.x, frame.origin.y, frame.size.width, frame.size.height};
    }

    /// The left half of the display, with the margin that the settings start with.
    static constexpr Rect leftZone{8, 8, 628, 784};

    MacWindow window_;
    MacSnapping snapping_;
};

TEST_F(MacDrag, WindowIsGivenItsPositionAndThenItsSizeOnceEach) {
    snapping_.press(titleBar);
    snapping_.dragTo({380, 500});
    snapping_.hold(kCGEventFlagMaskCommand);
    snapping_.dragTo({200, 400});
    EXPECT_THAT(tree().writes, IsEmpty());
    snapping_.release();

    ASSERT_EQ(tree().writes.size(), 2U);
    EXPECT_EQ(tree().writes[0].element, window_.window);
    EXPECT_EQ(tree().writes[0].attribute, "AXPosition");
    EXPECT_EQ(tree().writes[1].element, window_.window);
    EXPECT_EQ(tree().writes[1].attribute, "AXSize");
    EXPECT_EQ(frame(), leftZone);
    EXPECT_EQ(fake::mac().eventTaps.alteredEvents, 0);
}

TEST_F(MacDrag, DragWithoutModifiersLeavesTheWindowAlone) {
    snapping_.press(titleBar);
    snapping_.dragTo({200, 400});
    snapping_.release();
    EXPECT_THAT(tree().writes, IsEmpty());
    EXPECT_THAT(snapping_.overlays().made(), IsEmpty());
}

TEST_F(MacDrag, ReleasedModifiersPutTheWindowBack) {
    snapping_.press(titleBar);
    tree().at(window_.window).attributes["AXPosition"] = CGPoint{500, 400};
    snapping_.hold(kCGEventFlagMaskCommand);
    snapping_.hold(0);
    EXPECT_EQ(frame(), windowFrame);
    EXPECT_EQ(tree().writes.size(), 2U);
    snapping_.release();
    EXPECT_EQ(tree().writes.size(), 2U);
}

TEST_F(MacDrag, SeveralZonesAreCoveredTogether) {
    snapping_.press(titleBar);
    snapping_.hold(kCGEventFlagMaskCommand | kCGEventFlagMaskShift);
    snapping_.dragTo({200, 400});
    snapping_.dragTo({1000, 400});
    snapping_.release();
    EXPECT_EQ(frame(), (Rect{8, 8, 1264, 784}));
}

TEST_F(MacDrag, WindowThatGivesNoSizeIsPlacedButNotPutBack) {
    fake::AttributeAnswer& size = tree().at(window_.window).attributes["AXSize"];
    const fake::AttributeAnswer known = size;
    snapping_.press(titleBar);
    EXPECT_NE(snapping_.controller().originalWindowFrame(), std::nullopt);
    snapping_.release();

    tree().hitProbe = [&] { size = "large"; };
    snapping_.press(titleBar);
    EXPECT_EQ(snapping_.controller().originalWindowFrame(), std::nullopt);
    size = known;
    snapping_.hold(kCGEventFlagMaskCommand);
    snapping_.hold(0);
    EXPECT_THAT(tree().writes, IsEmpty());
    snapping_.hold(kCGEventFlagMaskCommand);
    snapping_.dragTo({200, 400});
    snapping_.release();
    EXPECT_EQ(frame(), leftZone);
}

TEST_F(MacDrag, RefusedWritesAreLoggedAndTheDragEnds) {
    snapping_.press(titleBar);
    snapping_.hold(kCGEventFlagMaskCommand);
    tree().isTrusted = false;
    snapping_.release();
    EXPECT_THAT(tree().writes, IsEmpty());
    EXPECT_THAT(snapping_.log().systemLines(), Contains("AccessibilityService.setPosition: failed (-25211)"));
    EXPECT_THAT(snapping_.log().systemLines(), Contains("AccessibilityService.setSize: failed (-25211)"));
    EXPECT_FALSE(snapping_.controller().isDragging());

    tree().isTrusted = true;
    snapping_.press(titleBar);
    snapping_.hold(0);
    snapping_.hold(kCGEventFlagMaskCommand);
    snapping_.dragTo({200, 400});
    snapping_.release();
    EXPECT_EQ(frame(), leftZone);
}

TEST_F(MacDrag, ProgramThatNeverAnswersDoesNotHoldUpTheDesktop) {
    tree().freeze(1);
    const double start = fake::mac().runLoop.now();
    snapping_.press(titleBar);
    EXPECT_LT(fake::mac().runLoop.now() - start, 1.0);
    EXPECT_EQ(snapping_.controller().activeWindow(), nullptr);
    snapping_.hold(kCGEventFlagMaskCommand);
    const double released = fake::mac().runLoop.now();
    snapping_.release();
    EXPECT_LT(fake::mac().runLoop.now() - released, 1.0);
    EXPECT_THAT(snapping_.log().systemLines(), Contains("SnapController.snapAndHide: activeWindow=nil"));
}

TEST_F(MacDrag, ProgramThatStopsAnsweringBeforeTheReleaseDoesNotHoldUpTheDesktop) {
    snapping_.press(titleBar);
    snapping_.hold(kCGEventFlagMaskCommand);
    tree().freeze(1);
    const double start = fake::mac().runLoop.now();
    snapping_.release();
    EXPECT_LT(fake::mac().runLoop.now() - start, 1.0);
    EXPECT_THAT(snapping_.log().systemLines(), Contains("AccessibilityService.setSize: failed (-25204)"));
}

TEST_F(MacDrag, WindowThatClosesDuringTheDragIsForgotten) {
    snapping_.press(titleBar);
    snapping_.hold(kCGEventFlagMaskCommand);
    tree().at(window_.window).exists = false;
    snapping_.release();
    EXPECT_THAT(tree().writes, IsEmpty());
    EXPECT_FALSE(snapping_.controller().isDragging());
}

TEST_F(MacDrag, DisplayThatGoesDuringTheDragEndsTheSnap) {
    snapping_.press(titleBar);
    snapping_.hold(kCGEventFlagMaskCommand);
    fake::mac().displays.all.clear();
    snapping_.dragTo({200, 400});
    snapping_.release();
    EXPECT_THAT(tree().writes, IsEmpty());
    EXPECT_THAT(snapping_.log().systemLines(), Contains("SnapController.snapAndHide: visibleFrame=nil"));
    EXPECT_THAT(snapping_.overlays().shown(), IsEmpty());
}

TEST_F(MacDrag, WithoutScreensNothingIsShownOrMoved) {
    fake::mac().displays.all.clear();
    snapping_.press(titleBar);
    snapping_.hold(kCGEventFlagMaskCommand);
    snapping_.dragTo({200, 400});
    snapping_.release();
    EXPECT_THAT(tree().writes, IsEmpty());
    EXPECT_THAT(snapping_.overlays().made(), IsEmpty());
}

TEST_F(MacDrag, TapDisabledByTimeoutIsReplacedInTheMiddleOfADrag) {
    snapping_.press(titleBar);
    snapping_.hold(kCGEventFlagMaskCommand);
    fake::mac().eventTaps.disable(kCGEventTapDisabledByTimeout, false);
    fake::mac().runLoop.settle();
    EXPECT_EQ(fake::mac().eventTaps.liveTaps(), 1U);
    EXPECT_EQ(fake::mac().eventTaps.requests.size(), 2U);
    snapping_.dragTo({200, 400});
    snapping_.release();
    EXPECT_EQ(frame(), leftZone);
}

TEST_F(MacDrag, PermissionTakenAwayAndGivenAgainIsSurvived) {
    fake::mac().eventTaps.revoke();
    fake::mac().eventTaps.disable(kCGEventTapDisabledByTimeout, true);
    fake::mac().runLoop.advance(2.5);
    EXPECT_TRUE(snapping_.taps().isWaiting());
    EXPECT_EQ(fake::mac().eventTaps.liveTaps(), 0U);

    fake::mac().eventTaps.answersGranted = true;
    fake::mac().eventTaps.givesTaps = true;
    fake::mac().runLoop.advance(1);
    EXPECT_TRUE(snapping_.taps().isInstalled());
    snapping_.press(titleBar);
    snapping_.hold(kCGEventFlagMaskCommand);
    snapping_.dragTo({200, 400});
    snapping_.release();
    EXPECT_EQ(frame(), leftZone);
}

TEST_F(MacDrag, ControllerThatEndsTakesTheTapDown) {
    snapping_.press(titleBar);
    snapping_.destroyController();
    EXPECT_EQ(fake::mac().eventTaps.liveTaps(), 0U);
    EXPECT_EQ(fake::mac().runLoop.sourceCount(), 0U);
}

} // namespace
} // namespace tarvex
