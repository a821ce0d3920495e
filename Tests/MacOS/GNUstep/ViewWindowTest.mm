#include "App/Input/EventTapPlatform.h"
#include "Platform/MacOS/AppKit/AppKitViewWindowPlatform.h"
#include "Platform/MacOS/AppKit/ObjCHandle.h"
#include "Tests/MacOS/GNUstep/AppKitTest.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tarvex::test {
namespace {

/// Writes down what it hears.
class RecordingView final : public View {
public:
    [[nodiscard]] Scene draw() override {
        ++draws;
        return scene;
    }

    [[nodiscard]] Form form() override { return controls; }

    void mouseMoved(const MouseEvent& event) override { note("moved", event); }

    void mouseDown(const MouseEvent& event) override { note("down", event); }

    void mouseDragged(const MouseEvent& event) override { note("dragged", event); }

    void mouseUp(const MouseEvent& event) override { note("up", event); }

    void rightMouseDown(const MouseEvent& event) override { note("right", event); }

    bool keyDown(const KeyEvent& event) override {
        heard.push_back("key " + std::to_string(event.keyCode) + " " + std::to_string(event.modifierFlags));
        onInput();
        return takesKeys;
    }

    void controlActivated(const std::string& controlId) override {
        heard.push_back("control " + controlId);
        onInput();
    }

    void screensChanged() override { heard.push_back("screens"); }

    Scene scene;
    Form controls;
    bool takesKeys = true;
    int draws = 0;
    std::vector<std::string> heard;
    std::function<void()> onInput = [] {};

private:
    void note(const std::string& what, const MouseEvent& event) {
        heard.push_back(what + " " + std::to_string(static_cast<int>(event.location.x)) + "," +
                        std::to_string(static_cast<int>(event.location.y)) + " " +
                        std::to_string(event.modifierFlags));
        onInput();
    }
};

using Heard = std::vector<std::string>;

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
    AppKitViewWindowPlatform platform_{loop_};
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
    send(NSLeftMouseDown, {30, 40});
    [native_ sendEvent:keyEvent(native_, 12)];
    EXPECT_EQ(view_.heard.size(), 2U);
}

TEST_F(ViewWindowTest, HearsOfScreensWhileItLives) {
    postScreenNotice();
    EXPECT_EQ(view_.heard, Heard{"screens"});
    window_.reset();
    postScreenNotice();
    EXPECT_EQ(view_.heard, Heard{"screens"});
}

TEST_F(ViewWindowTest, ProgramThatWasInFrontComesBackWhenTheWindowGoes) {
    const int before = [TarvexTestRunningApplication activations];
    [NSApp deactivate];
    window_->makeKeyAndOrderFront();
    platform_.activateIgnoringOtherApps();
    endTurn();
    ASSERT_TRUE([NSApp isActive]);
    EXPECT_EQ([TarvexTestRunningApplication activations], before);
    window_.reset();
    EXPECT_EQ([TarvexTestRunningApplication activations], before + 1) << "not let in, or not asked for";
}

TEST_F(ViewWindowTest, ProgramThatWasInFrontItselfStaysThere) {
    const int before = [TarvexTestRunningApplication activations];
    ASSERT_TRUE([NSApp isActive]);
    show();
    window_.reset();
    EXPECT_EQ([TarvexTestRunningApplication activations], before);
}

TEST_F(ViewWindowTest, ProgramWithAnotherWindowStaysInFront) {
    const int before = [TarvexTestRunningApplication activations];
    const auto other =
        ObjCHandle<NSWindow*>::adopt([[NSWindow alloc] initWithContentRect:NSMakeRect(0, 0, 50, 50)
                                                                 styleMask:NSTitledWindowMask
                                                                   backing:NSBackingStoreBuffered
                                                                     defer:NO]);
    [other.get() setReleasedWhenClosed:NO];
    [other.get() orderFront:nil];
    [NSApp deactivate];
    window_->makeKeyAndOrderFront();
    platform_.activateIgnoringOtherApps();
    endTurn();
    window_.reset();
    EXPECT_EQ([TarvexTestRunningApplication activations], before);
    [other.get() close];
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
