#include "App/Input/EventTapPlatform.h"
#include "Platform/MacOS/AppKit/AppKitViewWindowPlatform.h"
#include "Platform/MacOS/AppKit/ObjCHandle.h"
#include "Tests/MacOS/GNUstep/AppKitTest.h"
#include "Tests/MacOS/GNUstep/RecordingView.h"
#include "Tests/MacOS/GNUstep/UnifiedLog.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tarvex::test {
namespace {

/// What the screen leaves free of menu bars and the like while this lives.
class VisibleFrame {
public:
    explicit VisibleFrame(const NSRect& frame) {
        setVisibleFrame([frame] { return frame; });
    }

    VisibleFrame(const VisibleFrame&) = delete;
    VisibleFrame& operator=(const VisibleFrame&) = delete;
    VisibleFrame(VisibleFrame&&) = delete;
    VisibleFrame& operator=(VisibleFrame&&) = delete;

    ~VisibleFrame() { setVisibleFrame({}); }
};

class ViewWindowTest : public AppKitTest {
protected:
    ViewWindowTest() {
        WindowAttributes attributes;
        attributes.contentRect = {100, 80, 400, 300};
        attributes.acceptsMouseMovedEvents = true;
        attributes.canBecomeKey = true;
        attributes.canBecomeMain = true;
        window_ = platform_.makeViewWindow(attributes, view_);
        native_ = newestWindow();
    }

    void send(NSEventType type, const Point& location, NSUInteger flags = 0) {
        [NSApp sendEvent:mouseEvent(type, native_, location, flags)];
    }

    void show() {
        window_->makeKeyAndOrderFront();
        endTurn();
        view_.heard.clear();
    }

    void postScreenNotice() {
        [[NSNotificationCenter defaultCenter]
            postNotificationName:NSApplicationDidChangeScreenParametersNotification
                          object:NSApp];
    }

    static Control okButton() {
        Control control;
        control.kind = ControlKind::pushButton;
        control.id = "ok";
        control.frame = {288, 16, 96, 32};
        control.text = "OK";
        return control;
    }

    RecordingView view_;
    AppKitViewWindowPlatform platform_{loop_, activation_};
    std::unique_ptr<ViewWindow> window_;
    NSWindow* native_ = nil;
};

TEST_F(ViewWindowTest, IsHiddenUntilItIsShownAndThenHasTheKeyboard) {
    endTurn();
    EXPECT_FALSE([native_ isVisible]);
    window_->makeKeyAndOrderFront();
    endTurn();
    EXPECT_TRUE([native_ isVisible]);
    EXPECT_TRUE([native_ isKeyWindow]);
    EXPECT_EQ([native_ firstResponder], [native_ contentView]);
    EXPECT_EQ(window_->frame(), (Rect{100, 80, 400, 300}));
}

TEST_F(ViewWindowTest, PictureIsHandedOverBeforeTheWindowShowsItself) {
    const HandOvers handOvers(native_);
    window_->makeKeyAndOrderFront();
    EXPECT_TRUE([native_ isVisible]);
    EXPECT_GE(handOvers.all(), 1);
    EXPECT_EQ(handOvers.good(), handOvers.all());
    EXPECT_GE(view_.draws, 1);
}

TEST_F(ViewWindowTest, FollowsThePointerAlsoInTheBackground) {
    EXPECT_EQ(trackingOptions([native_ contentView]),
              static_cast<NSUInteger>(NSTrackingMouseEnteredAndExited | NSTrackingMouseMoved |
                                      NSTrackingActiveAlways | NSTrackingInVisibleRect |
                                      NSTrackingEnabledDuringMouseDrag));
}

TEST_F(ViewWindowTest, HandsTheLeftButtonOnInViewCoordinates) {
    show();
    send(NSLeftMouseDown, {30, 40});
    send(NSLeftMouseDragged, {50, 60});
    send(NSLeftMouseUp, {70, 80});
    EXPECT_EQ(view_.heard, (Heard{"down 30,40 0", "dragged 50,60 0", "up 70,80 0"}));
}

TEST_F(ViewWindowTest, HandsTheRightButtonOn) {
    show();
    send(NSRightMouseDown, {30, 40});
    EXPECT_EQ(view_.heard, Heard{"right 30,40 0"});
}

TEST_F(ViewWindowTest, HandsMotionOnWithoutAButton) {
    show();
    send(NSMouseMoved, {11, 12});
    ASSERT_FALSE(view_.heard.empty());
    EXPECT_EQ(view_.heard.back(), "moved 11,12 0");
}

TEST_F(ViewWindowTest, MotionThatComesTwiceIsOne) {
    show();
    NSEvent* const motion = mouseEvent(NSMouseMoved, native_, {11, 12});
    for (int time = 0; time < 2; ++time) {
        [[native_ contentView] mouseMoved:motion];
    }
    EXPECT_EQ(view_.heard, Heard{"moved 11,12 0"});
    [[native_ contentView] mouseMoved:mouseEvent(NSMouseMoved, native_, {11, 12})];
    [[native_ contentView] mouseMoved:mouseEvent(NSMouseMoved, native_, {13, 12})];
    EXPECT_EQ(view_.heard, (Heard{"moved 11,12 0", "moved 11,12 0", "moved 13,12 0"}));
}

TEST_F(ViewWindowTest, MotionsOfOneMomentAreTwoInTwoPlaces) {
    show();
    const auto motionTo = [&](double x) {
        return [NSEvent mouseEventWithType:NSMouseMoved
                                  location:NSMakePoint(x, 12)
                             modifierFlags:0
                                 timestamp:1000
                              windowNumber:[native_ windowNumber]
                                   context:nil
                               eventNumber:0
                                clickCount:0
                                  pressure:0];
    };
    [[native_ contentView] mouseMoved:motionTo(11)];
    [[native_ contentView] mouseMoved:motionTo(13)];
    EXPECT_EQ(view_.heard, (Heard{"moved 11,12 0", "moved 13,12 0"}));
}

TEST_F(ViewWindowTest, IsCalledTheZoneEditorByAssistiveTechnologyAlone) {
    EXPECT_STREQ([[native_ accessibilityTitle] UTF8String], "Zone Editor");
    EXPECT_TRUE([native_ isAccessibilityElement]);
    EXPECT_STRNE([[native_ title] UTF8String], "Zone Editor");
}

TEST_F(ViewWindowTest, FirstClickOnAButtonCountsInTheBackground) {
    view_.controls = {{okButton()}};
    show();
    NSView* const button = [[[native_ contentView] subviews] objectAtIndex:0];
    EXPECT_TRUE([button acceptsFirstMouse:mouseEvent(NSLeftMouseDown, native_, {336, 32})]);
}

TEST_F(ViewWindowTest, PointerThatLeavesUnderAnotherWindowIsOutside) {
    show();
    NSEvent* const exited = mouseEvent(NSMouseMoved, native_, {200, 150});
    [[native_ contentView] mouseExited:exited];
    EXPECT_EQ(view_.heard, Heard{"moved -1,-1 0"});
    view_.heard.clear();
    [[native_ contentView] mouseExited:mouseEvent(NSMouseMoved, native_, {450, 150})];
    EXPECT_EQ(view_.heard, Heard{"moved 450,150 0"});
}

TEST_F(ViewWindowTest, ModifiersHaveTheNumbersOfThePort) {
    show();
    const std::vector<std::pair<NSUInteger, std::uint64_t>> flags{
        {NSEventModifierFlagCapsLock, event_flag::capsLock},
        {NSEventModifierFlagShift, event_flag::shift},
        {NSEventModifierFlagControl, event_flag::control},
        {NSEventModifierFlagOption, event_flag::option},
        {NSEventModifierFlagCommand, event_flag::command}};
    for (const auto& [native, flag] : flags) {
        view_.heard.clear();
        [[native_ contentView] mouseDown:mouseEvent(NSLeftMouseDown, native_, {1, 2}, native)];
        EXPECT_EQ(view_.heard, Heard{"down 1,2 " + std::to_string(flag)});
    }
}

TEST_F(ViewWindowTest, HandsKeysOn) {
    show();
    [native_ sendEvent:keyEvent(native_, 53)];
    [native_ sendEvent:keyEvent(native_, 36, NSEventModifierFlagShift)];
    EXPECT_EQ(view_.heard, (Heard{"key 53 0", "key 36 131072"}));
}

TEST_F(ViewWindowTest, KeyThatTheViewDoesNotTakeGoesOn) {
    show();
    view_.takesKeys = false;
    [native_ sendEvent:keyEvent(native_, 12)];
    EXPECT_EQ(view_.heard, Heard{"key 12 0"});
}

TEST_F(ViewWindowTest, DrawsTheSceneThatTheViewHasThen) {
    view_.scene = {{FillRect{{0, 0, 400, 300}, {ColorName::white, 1}}}};
    show();
    EXPECT_EQ(ViewPixels([native_ contentView]).countOthers({0, 0, 400, 300}, "ffffff"), 0);
    const int draws = view_.draws;
    view_.scene = {{FillRect{{0, 0, 400, 300}, {ColorName::black, 1}}}};
    window_->setNeedsDisplay();
    window_->setNeedsDisplay();
    EXPECT_EQ(view_.draws, draws);
    [native_ displayIfNeeded];
    EXPECT_EQ(view_.draws, draws + 1);
    EXPECT_EQ(ViewPixels([native_ contentView]).countOthers({0, 0, 400, 300}, "000000"), 0);
}

TEST_F(ViewWindowTest, ControlsLieOverThePictureAndReportTheirUse) {
    view_.controls = {{okButton()}};
    show();
    ASSERT_EQ([[[native_ contentView] subviews] count], 1U);
    click(native_, {336, 32});
    EXPECT_EQ(view_.heard, Heard{"control ok"});
}

TEST_F(ViewWindowTest, ControlsFollowTheViewAtTheEndOfTheTurn) {
    show();
    view_.controls = {{okButton()}};
    window_->setNeedsDisplay();
    EXPECT_EQ([[[native_ contentView] subviews] count], 0U);
    endTurn();
    EXPECT_EQ([[[native_ contentView] subviews] count], 1U);
}

TEST_F(ViewWindowTest, WindowMayEndInTheUseOfItsControl) {
    view_.controls = {{okButton()}};
    show();
    view_.onInput = [this] { window_.reset(); };
    click(native_, {336, 32});
    EXPECT_EQ(view_.heard, Heard{"control ok"});
    EXPECT_EQ(window_, nullptr);
}

TEST_F(ViewWindowTest, WindowMayEndInAKeyPress) {
    show();
    view_.takesKeys = false;
    view_.onInput = [this] { window_.reset(); };
    [NSApp sendEvent:keyEvent(native_, 53)];
    EXPECT_EQ(view_.heard, Heard{"key 53 0"});
}

TEST_F(ViewWindowTest, ViewThatThrowsDoesNotReachTheToolkit) {
    show();
    view_.onInput = [] { std::vector<int>().at(0) = 1; };
    static_cast<void>(takeUnifiedLog());
    send(NSLeftMouseDown, {30, 40});
    [native_ sendEvent:keyEvent(native_, 12)];
    EXPECT_EQ(view_.heard.size(), 2U);
    EXPECT_EQ(takeUnifiedLog().size(), 2U);
}

TEST_F(ViewWindowTest, NoticeOfScreensThatAreAsBeforeIsNoneForTheView) {
    postScreenNotice();
    show();
    postScreenNotice();
    EXPECT_EQ(view_.heard, Heard{});
}

TEST_F(ViewWindowTest, ViewHearsOnceOfAScreenThatChanged) {
    const VisibleFrame visibleFrame(NSMakeRect(0, 0, 600, 400));
    EXPECT_EQ(view_.heard, Heard{});
    postScreenNotice();
    EXPECT_EQ(view_.heard, Heard{"screens"});
    postScreenNotice();
    EXPECT_EQ(view_.heard, Heard{"screens"});
    window_.reset();
    const VisibleFrame other(NSMakeRect(0, 50, 600, 350));
    postScreenNotice();
    EXPECT_EQ(view_.heard, Heard{"screens"});
}

TEST_F(ViewWindowTest, ScreenThatTheWindowDoesNotTouchIsNoneOfItsBusiness) {
    const NSRect screen = [[NSScreen mainScreen] frame];
    window_ = platform_.makeViewWindow({.contentRect = {NSMaxX(screen), 0, 100, 100}}, view_);
    const VisibleFrame visibleFrame(NSMakeRect(0, 0, 600, 400));
    postScreenNotice();
    EXPECT_EQ(view_.heard, Heard{});
    window_ = platform_.makeViewWindow({.contentRect = {NSMaxX(screen) - 1, 0, 100, 100}}, view_);
    const VisibleFrame other(NSMakeRect(0, 50, 600, 350));
    postScreenNotice();
    EXPECT_EQ(view_.heard, Heard{"screens"});
}

TEST_F(ViewWindowTest, ToolkitsViewIsSilentWhenItOutlivesTheWindow) {
    show();
    const auto canvas = ObjCHandle<NSView*>::share([native_ contentView]);
    NSEvent* const press = mouseEvent(NSLeftMouseDown, native_, {30, 40});
    window_.reset();
    [canvas.get() mouseDown:press];
    [canvas.get() keyDown:keyEvent(nil, 53)];
    EXPECT_EQ(view_.heard, Heard{});
}

TEST_F(ViewWindowTest, DestroyingItClosesIt) {
    show();
    window_->setNeedsDisplay();
    window_.reset();
    EXPECT_FALSE([native_ isVisible]);
    endTurn();
}

} // namespace
} // namespace tarvex::test
