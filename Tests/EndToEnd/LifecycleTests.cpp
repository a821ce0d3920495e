#include "Tests/EndToEnd/DesktopTest.h"
#include "Tests/Support/X11/Screenshot.h"

namespace tarvex::test {
namespace {

class Lifecycle : public DesktopTest {};

INSTANTIATE_TEST_SUITE_P(Sessions, Lifecycle, allSessions(), sessionName);

TEST_P(Lifecycle, EndingDuringADragLeavesNoZonesBehind) {
    Desktop& desktop = start();
    TestWindow window(desktop.server.displayName());
    Drag drag(desktop, window.managed());
    drag.moveTo({900, 300});
    const Screenshot before = desktop.steadyScreen();
    drag.pressToMatch(key::super);
    const PixelRect below{660, 1008, 600, 6};
    desktop.client.waitUntil([&] { return Screenshot(desktop.client).countDifferences(before, below) > 0; },
                             "the zone under the pointer is filled");
    expectCleanExitNow();
    desktop.client.waitUntil([&] { return Screenshot(desktop.client) == before; }, "the zones are gone");
}

TEST_P(Lifecycle, StartsBeforeTheWindowManagerAndServesItWhenItComes) {
    DesktopOptions options;
    options.startsWindowManager = false;
    Desktop& desktop = start(options);
    desktop.windowManager = std::make_unique<WindowManager>(desktop.server, GetParam().windowManager);
    TestWindow window(desktop.server.displayName());
    snapAndExpect(desktop, window.managed(), rightHalf);
}

TEST_P(Lifecycle, WithoutAWindowManagerADragOfAWindowSnapsNothing) {
    DesktopOptions options;
    options.startsWindowManager = false;
    Desktop& desktop = start(options);
    TestWindowOptions unmanaged;
    unmanaged.isOverrideRedirect = true;
    TestWindow window(desktop.server.displayName(), unmanaged);
    dragAndExpectNoWindow(desktop, {300, 300});
    EXPECT_EQ(desktop.client.geometryInRoot(window.id()), (PixelRect{200, 200, 400, 300}));
}

TEST_P(Lifecycle, AButtonThatWasDownAtTheStartIsNoDrag) {
    DesktopOptions options;
    options.startsTarvex = false;
    Desktop& desktop = start(options);
    TestWindow window(desktop.server.displayName());
    const PixelRect area = desktop.screenArea();
    desktop.pointer.moveTo(window.managed().titleBarPoint());
    desktop.pointer.press();
    desktop.tarvex.start();
    desktop.keyboard.press(key::super);
    desktop.pointer.glideTo(pointIn(area, rightHalf));
    desktop.windowManager->barrier();
    const PixelRect dropped = window.managed().requireVisibleFrame();
    desktop.pointer.release();
    desktop.keyboard.release(key::super);
    desktop.expectFrameUnchanged(window.managed(), dropped);
    EXPECT_EQ(desktop.tarvex.countInLog("snap"), 0);
    snapAndExpect(desktop, window.managed(), rightHalf);
}

TEST_P(Lifecycle, EndsWellWhenTheXServerGoesAway) {
    auto server = std::make_unique<XServer>();
    TarvexProgram tarvex(*server, TARVEX_PROGRAM);
    tarvex.start();
    server->end();
    const auto status = tarvex.process().waitForExit();
    EXPECT_EQ(status, (ExitStatus{0, std::nullopt}));
    // The log is whole: it was written to the end before the process went.
    EXPECT_TRUE(tarvex.log().ends_with('\n')) << tarvex.log();
}

} // namespace
} // namespace tarvex::test
