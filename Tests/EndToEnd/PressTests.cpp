#include "Tests/EndToEnd/DesktopTest.h"

#include <csignal>

namespace tarvex::test {
namespace {

// A hand that presses what surrounds a window, and is somewhere else when tarvex comes to look.
class Press : public DesktopTest {
protected:
    /// A pixel of what the window is resized by along its lower edge.
    static PixelPoint lowerBorderOf(const ManagedWindow& window) {
        const PixelRect frame = window.requireVisibleFrame();
        // One of the window managers shows no border there. What it resizes the window by is outside.
        const int inwards = GetParam().windowManager == WindowManagerKind::kwin ? -4 : 2;
        return {frame.x + frame.width / 2, frame.y + frame.height - inwards};
    }

    /// Goes on from a press that tarvex hears of only now.
    static void snapAndExpectAfter(Desktop& desktop, const ManagedWindow& window) {
        const PixelRect area = desktop.screenArea();
        const PixelRect zone = zoneFrame(area, rightHalf);
        desktop.tarvex.process().signal(SIGCONT);
        desktop.keyboard.press(key::super);
        desktop.awaitLog("updateOverlayState match", 1);
        desktop.pointer.glideTo(pointIn(area, rightHalf));
        desktop.pointer.release();
        desktop.expectFrame(window, zone);
        desktop.keyboard.release(key::super);
        desktop.expectFrameUnchanged(window, zone);
    }
};

INSTANTIATE_TEST_SUITE_P(Sessions, Press, manySessions(), sessionName);

TEST_P(Press, OnTheLowerBorderTakesTheWindowThatThePointerHasLeft) {
    Desktop& desktop = start();
    TestWindow window(desktop.server.displayName());
    // Neither of them has come to the press when the pointer is gone.
    desktop.windowManager->pause();
    desktop.tarvex.process().signal(SIGSTOP);
    desktop.pointer.moveTo(lowerBorderOf(window.managed()));
    desktop.pointer.press();
    desktop.pointer.moveTo({400, 900});
    desktop.windowManager->resume();
    snapAndExpectAfter(desktop, window.managed());
}

TEST_P(Press, OnAWindowThatHasFollowedThePointerTakesItAndNotTheOneBelow) {
    Desktop& desktop = start();
    const PixelRect area = desktop.screenArea();
    TestWindowOptions options;
    options.geometry = {150, 120, 500, 420};
    TestWindow below(desktop.server.displayName(), options);
    TestWindow window(desktop.server.displayName());
    const PixelRect untouched = below.managed().requireVisibleFrame();
    const PixelPoint title = window.managed().titleBarPoint();
    ASSERT_TRUE(title.x >= untouched.x && title.x < untouched.x + untouched.width && title.y >= untouched.y &&
                title.y < untouched.y + untouched.height);
    desktop.tarvex.process().signal(SIGSTOP);
    Drag drag(desktop, window.managed());
    drag.moveTo({900, 700});
    desktop.windowManager->barrier();
    desktop.tarvex.process().signal(SIGCONT);
    drag.pressToMatch(key::super);
    drag.moveTo(pointIn(area, rightHalf));
    drag.dropAndExpect(zoneFrame(area, rightHalf));
    desktop.expectFrameUnchanged(below.managed(), untouched);
}

} // namespace
} // namespace tarvex::test
