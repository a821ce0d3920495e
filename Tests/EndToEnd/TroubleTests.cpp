#include "Tests/EndToEnd/DesktopTest.h"
#include "Tests/Support/X11/RealApplication.h"

#include <csignal>

namespace tarvex::test {
namespace {

// What goes wrong around a drag must end with the drag.
class Trouble : public DesktopTest {};

INSTANTIATE_TEST_SUITE_P(Sessions, Trouble, allSessions(), sessionName);

TEST_P(Trouble, AWindowClosedDuringTheDragIsLoggedAndForgotten) {
    Desktop& desktop = start();
    const PixelRect area = desktop.screenArea();
    desktop.tarvex.allowOnStandardError("AccessibilityService.setPosition: failed (");
    desktop.tarvex.allowOnStandardError("AccessibilityService.setSize: failed (");
    TestWindow doomed(desktop.server.displayName());
    {
        Drag drag(desktop, doomed.managed());
        drag.pressToMatch(key::super);
        doomed.close();
        desktop.windowManager->barrier();
        drag.moveTo({900, 500});
        drag.drop();
        desktop.tarvex.awaitOnStandardError("AccessibilityService.setPosition: failed (");
        drag.releaseKeys();
    }
    TestWindow next(desktop.server.displayName());
    snapAndExpect(desktop, next.managed(), pointIn(area, leftHalf), zoneFrame(area, leftHalf));
}

TEST_P(Trouble, AFrozenProgramDelaysNothing) {
    Desktop& desktop = start();
    const PixelRect area = desktop.screenArea();
    RealApplication application(desktop.server, {TARVEX_HEADER_BAR_WINDOW});
    RealApplication terminal(desktop.server, RealApplication::xterm());
    // The terminal leaves its window to the window manager, so it can be dragged while it stands still.
    terminal.process().signal(SIGSTOP);
    application.process().signal(SIGSTOP);
    const auto hasOrigin = [&] {
        const PixelRect zone = zoneFrame(area, rightHalf);
        const PixelRect frame = terminal.window().visibleFrame().value_or(PixelRect{});
        return frame.x == zone.x && frame.y == zone.y && frame.height > 900;
    };
    {
        Drag drag(desktop, terminal.window());
        drag.pressToMatch(key::super);
        drag.moveTo(pointIn(area, rightHalf));
        drag.drop();
        EXPECT_TRUE(desktop.client.waitFor(hasOrigin));
        drag.releaseKeys();
    }
    TestWindow other(desktop.server.displayName());
    snapAndExpect(desktop, other.managed(), pointIn(area, leftHalf), zoneFrame(area, leftHalf));
    terminal.process().signal(SIGCONT);
    application.process().signal(SIGCONT);
    desktop.settle();
    EXPECT_TRUE(hasOrigin());
}

TEST_P(Trouble, AProgramThatFreezesDuringTheDragSnapsAllTheSame) {
    Desktop& desktop = start();
    const PixelRect area = desktop.screenArea();
    RealApplication application(desktop.server, {TARVEX_HEADER_BAR_WINDOW});
    Drag drag(desktop, application.window());
    drag.pressToMatch(key::super);
    application.process().signal(SIGSTOP);
    drag.moveTo(pointIn(area, rightHalf));
    drag.dropAndExpect(zoneFrame(area, rightHalf));
    application.process().signal(SIGCONT);
    desktop.expectFrameUnchanged(application.window(), zoneFrame(area, rightHalf));
}

TEST_P(Trouble, AWindowManagerRestartedDuringTheDragStillSnapsTheWindow) {
    Desktop& desktop = start();
    const PixelRect area = desktop.screenArea();
    TestWindow window(desktop.server.displayName());
    Drag drag(desktop, window.managed());
    drag.pressToMatch(key::super);
    desktop.windowManager->kill();
    desktop.windowManager->start();
    desktop.client.waitUntil([&] { return window.managed().isManagedAndViewable(); },
                             "the window is managed again");
    drag.moveTo(pointIn(area, rightHalf));
    drag.dropAndExpect(zoneFrame(area, rightHalf));
    snapAndExpect(desktop, window.managed(), pointIn(area, leftHalf), zoneFrame(area, leftHalf));
}

TEST_P(Trouble, AWindowManagerThatReplacesAnotherIsServedToo) {
    Desktop& desktop = start();
    const PixelRect area = desktop.screenArea();
    TestWindow window(desktop.server.displayName());
    snapAndExpect(desktop, window.managed(), pointIn(area, rightHalf), zoneFrame(area, rightHalf));
    const auto other = GetParam().windowManager == WindowManagerKind::openbox ? WindowManagerKind::xfwm4
                                                                              : WindowManagerKind::openbox;
    desktop.windowManager->kill();
    desktop.windowManager = std::make_unique<WindowManager>(desktop.server, other);
    desktop.client.waitUntil([&] { return window.managed().isManagedAndViewable(); },
                             "the window is managed again");
    snapAndExpect(desktop, window.managed(), pointIn(area, leftHalf), zoneFrame(area, leftHalf));
}

TEST_P(Trouble, AReleaseBeforeAnyZoneWasTouchedIsAbandoned) {
    // Nothing is selected while the pointer is on the panel, which is no part of any zone. It is at the
    // bottom, since some window managers maximise a window that is dropped at the top.
    Desktop& desktop = start();
    TestWindowOptions panel;
    panel.type = "_NET_WM_WINDOW_TYPE_DOCK";
    panel.geometry = {0, 976, 1280, 48};
    panel.strut = Strut{.bottom = 48, .bottomStart = 0, .bottomEnd = 1279};
    TestWindow dock(desktop.server.displayName(), panel);
    TestWindow window(desktop.server.displayName());
    desktop.tarvex.allowOnStandardError("SnapController.snapAndHide: selection rect=nil");
    Drag drag(desktop, window.managed());
    drag.moveTo({600, 1000});
    drag.pressToMatch(key::super);
    desktop.windowManager->barrier();
    const PixelRect dragged = window.managed().requireVisibleFrame();
    drag.drop();
    desktop.tarvex.awaitOnStandardError("SnapController.snapAndHide: selection rect=nil");
    drag.releaseKeys();
    desktop.expectFrameUnchanged(window.managed(), dragged);
}

} // namespace
} // namespace tarvex::test
