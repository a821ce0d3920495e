#include "Tests/EndToEnd/DesktopTest.h"

#include <string>

namespace tarvex::test {
namespace {

class Restore : public DesktopTest {};

/// A window that has been dragged away from its place, with the zones shown, and is still held.
struct HeldWindow {
    explicit HeldWindow(Desktop& onDesktop) : desktop{onDesktop} {
        drag.pressToMatch(key::super);
        drag.moveTo({900, 500});
    }

    void expectPutBack() {
        desktop.expectFrame(window.managed(), original);
        drag.dropAndExpect(original);
    }

    Desktop& desktop;
    TestWindow window{desktop.server.displayName()};
    PixelRect original = window.managed().requireVisibleFrame();
    Drag drag{desktop, window.managed(), Drag::Begin::observed};
};

INSTANTIATE_TEST_SUITE_P(Sessions, Restore, manySessions(), sessionName);

TEST_P(Restore, LettingGoOfTheKeysPutsTheWindowBack) {
    HeldWindow held(start());
    held.drag.releaseToNoMatch(key::super);
    held.expectPutBack();
}

TEST_P(Restore, AnExtraModifierPutsTheWindowBack) {
    HeldWindow held(start());
    held.drag.pressToNoMatch(key::alt);
    held.expectPutBack();
}

TEST_P(Restore, PressingTheKeysAgainSnapsAfterAll) {
    Desktop& desktop = start();
    TestWindow window(desktop.server.displayName());
    const PixelRect area = desktop.screenArea();
    Drag drag(desktop, window.managed(), Drag::Begin::observed);
    drag.pressToMatch(key::super);
    drag.moveTo(pointIn(area, leftHalf));
    drag.releaseToNoMatch(key::super);
    drag.pressToMatch(key::super);
    drag.moveTo(pointIn(area, rightHalf));
    drag.dropAndExpect(zoneFrame(area, rightHalf));
}

TEST_P(Restore, MayHappenTwiceInOneDragBeforeTheSnap) {
    Desktop& desktop = start();
    TestWindow window(desktop.server.displayName());
    const PixelRect area = desktop.screenArea();
    const PixelRect original = window.managed().requireVisibleFrame();
    Drag drag(desktop, window.managed(), Drag::Begin::observed);
    for (const ZoneSpan& zone : {leftHalf, rightHalf}) {
        drag.pressToMatch(key::super);
        drag.moveTo(pointIn(area, zone));
        drag.releaseToNoMatch(key::super);
        desktop.expectFrame(window.managed(), original);
    }
    drag.pressToMatch(key::super);
    drag.moveTo(pointIn(area, leftHalf));
    drag.dropAndExpect(zoneFrame(area, leftHalf));
    EXPECT_EQ(desktop.tarvex.countInLog("snapAndHide success"), 1);
}

TEST_P(Restore, WorksOnAfterTheWindowManagerWasRestartedDuringTheDrag) {
    Desktop& desktop = start();
    HeldWindow held(desktop);
    desktop.windowManager->kill();
    desktop.windowManager->start();
    desktop.client.waitUntil([&] { return held.window.managed().isManagedAndViewable(); },
                             "the window is managed again");
    desktop.windowManager->barrier();
    ASSERT_NE(held.window.managed().visibleFrame(), held.original);
    held.drag.releaseToNoMatch(key::super);
    held.expectPutBack();
}

TEST_P(Restore, SwitchedOffLeavesTheWindowWhereItWasDragged) {
    DesktopOptions options;
    options.settings = Settings{.restoresWindow = false};
    Desktop& desktop = start(options);
    HeldWindow held(desktop);
    desktop.windowManager->barrier();
    const PixelRect dragged = held.window.managed().requireVisibleFrame();
    held.drag.releaseToNoMatch(key::super);
    held.drag.dropAndExpect(dragged);
}

TEST_P(Restore, ASnappedWindowGoesBackToItsZoneNotToAnEarlierSize) {
    Desktop& desktop = start();
    TestWindow window(desktop.server.displayName());
    const PixelRect area = desktop.screenArea();
    const PixelRect zone = zoneFrame(area, leftHalf);
    snapAndExpect(desktop, window.managed(), leftHalf);
    Drag drag(desktop, window.managed(), Drag::Begin::observed);
    drag.pressToMatch(key::super);
    drag.moveTo(pointIn(area, rightHalf));
    drag.releaseToNoMatch(key::super);
    desktop.expectFrame(window.managed(), zone);
    drag.dropAndExpect(zone);
}

TEST_P(Restore, PutsTheWindowBackOnItsPixelsThoughThePrimaryMonitorIsAnotherByThen) {
    DesktopOptions options;
    const PixelRect left{0, 0, 640, 1024};
    const PixelRect right{640, 100, 640, 900};
    options.monitors = {{"left", left, true, true}, {"right", right, false, false}};
    Desktop& desktop = start(options);
    HeldWindow held(desktop);
    desktop.monitors.set({{"left", left, false, true}, {"right", right, true, false}});
    held.drag.releaseToNoMatch(key::super);
    held.expectPutBack();
}

struct KeptState {
    std::string first;
    std::string second;
};

TEST_P(Restore, LettingGoOfTheKeysLeavesAWindowThatWasNotMovedInItsState) {
    Desktop& desktop = start();
    for (const KeptState& state :
         {KeptState{"_NET_WM_STATE_MAXIMIZED_VERT", "_NET_WM_STATE_MAXIMIZED_HORZ"},
          KeptState{"_NET_WM_STATE_MAXIMIZED_VERT", ""}, KeptState{"_NET_WM_STATE_FULLSCREEN", ""}}) {
        SCOPED_TRACE(state.first + " " + state.second);
        TestWindow window(desktop.server.displayName());
        const PixelRect normal = window.managed().requireVisibleFrame();
        window.changeState(true, state.first, state.second);
        desktop.client.waitUntil([&] { return window.managed().hasState(state.first); }, "it has the state");
        desktop.windowManager->barrier();
        const PixelRect before = window.managed().requireVisibleFrame();
        desktop.pointer.moveTo({before.x + 100, before.y + 300});
        desktop.pointer.press();
        const int shown = desktop.tarvex.countInLog("updateOverlayState match");
        const int hidden = desktop.tarvex.countInLog("updateOverlayState noMatch");
        desktop.keyboard.press(key::super);
        desktop.awaitLog("updateOverlayState match", shown + 1);
        desktop.keyboard.release(key::super);
        desktop.awaitLog("updateOverlayState noMatch", hidden + 1);
        desktop.windowManager->barrier();
        desktop.pointer.release();
        desktop.expectFrame(window.managed(), before);
        EXPECT_TRUE(window.managed().hasState(state.first));
        // It also remembers how large it was before. The press makes it the user's.
        desktop.pointer.press();
        desktop.pointer.release();
        desktop.windowManager->barrier();
        window.changeState(false, state.first, state.second);
        desktop.expectFrame(window.managed(), normal);
    }
}

TEST_P(Restore, AMaximisedWindowIsMaximisedAgain) {
    Desktop& desktop = start();
    const PixelRect area = desktop.screenArea();
    TestWindow window(desktop.server.displayName());
    window.changeState(true, "_NET_WM_STATE_MAXIMIZED_VERT", "_NET_WM_STATE_MAXIMIZED_HORZ");
    desktop.expectFrame(window.managed(), area);
    // Most window managers restore a maximised window that is dragged.
    desktop.pointer.moveTo(window.managed().titleBarPoint());
    desktop.windowManager->barrier();
    desktop.pointer.press();
    const int hidden = desktop.tarvex.countInLog("updateOverlayState noMatch");
    desktop.keyboard.press(key::control);
    desktop.awaitLog("updateOverlayState noMatch", hidden + 1);
    desktop.keyboard.release(key::control);
    desktop.pointer.glideTo({700, 300});
    desktop.windowManager->barrier();
    if (GetParam().windowManager != WindowManagerKind::openbox) {
        desktop.client.waitUntil([&] { return window.managed().visibleFrame() != area; },
                                 "the window follows the pointer");
    }
    desktop.keyboard.press(key::super);
    desktop.awaitLog("updateOverlayState match", 1);
    desktop.pointer.glideTo({900, 500});
    const int hiddenAgain = desktop.tarvex.countInLog("updateOverlayState noMatch");
    desktop.keyboard.release(key::super);
    desktop.awaitLog("updateOverlayState noMatch", hiddenAgain + 1);
    desktop.expectFrame(window.managed(), area);
    desktop.pointer.release();
    desktop.windowManager->barrier();
    desktop.expectFrame(window.managed(), area);
    EXPECT_TRUE(window.managed().hasState("_NET_WM_STATE_MAXIMIZED_VERT"));
    EXPECT_TRUE(window.managed().hasState("_NET_WM_STATE_MAXIMIZED_HORZ"));
}

TEST_P(Restore, LettingGoOfTheKeysAtAnEdgeOfTheScreenPutsTheWindowBack) {
    Desktop& desktop = start();
    for (const PixelPoint& edge : {PixelPoint{0, 500}, PixelPoint{1279, 1023}, PixelPoint{900, 0}}) {
        SCOPED_TRACE(std::to_string(edge.x) + "," + std::to_string(edge.y));
        HeldWindow held(desktop);
        held.drag.moveTo(edge);
        desktop.windowManager->barrier();
        held.drag.releaseToNoMatch(key::super);
        held.expectPutBack();
    }
}

} // namespace
} // namespace tarvex::test
