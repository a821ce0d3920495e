#include "Tests/EndToEnd/DesktopTest.h"

namespace tarvex::test {
namespace {

class Restore : public DesktopTest {};

INSTANTIATE_TEST_SUITE_P(Sessions, Restore, allSessions(), sessionName);

TEST_P(Restore, LettingGoOfTheKeysPutsTheWindowBack) {
    Desktop& desktop = start();
    TestWindow window(desktop.server.displayName());
    const PixelRect original = window.managed().requireVisibleFrame();
    Drag drag(desktop, window.managed(), Drag::Begin::observed);
    drag.pressToMatch(key::super);
    drag.moveTo({900, 500});
    drag.releaseToNoMatch(key::super);
    desktop.expectFrame(window.managed(), original);
    drag.dropAndExpect(original);
}

TEST_P(Restore, AnExtraModifierPutsTheWindowBack) {
    Desktop& desktop = start();
    TestWindow window(desktop.server.displayName());
    const PixelRect original = window.managed().requireVisibleFrame();
    Drag drag(desktop, window.managed(), Drag::Begin::observed);
    drag.pressToMatch(key::super);
    drag.moveTo({900, 500});
    drag.pressToNoMatch(key::alt);
    desktop.expectFrame(window.managed(), original);
    drag.dropAndExpect(original);
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
    TestWindow window(desktop.server.displayName());
    const PixelRect original = window.managed().requireVisibleFrame();
    Drag drag(desktop, window.managed(), Drag::Begin::observed);
    drag.pressToMatch(key::super);
    drag.moveTo({900, 500});
    desktop.windowManager->kill();
    desktop.windowManager->start();
    desktop.client.waitUntil([&] { return window.managed().isManagedAndViewable(); },
                             "the window is managed again");
    desktop.windowManager->barrier();
    ASSERT_NE(window.managed().visibleFrame(), original);
    drag.releaseToNoMatch(key::super);
    desktop.expectFrame(window.managed(), original);
    drag.dropAndExpect(original);
}

TEST_P(Restore, SwitchedOffLeavesTheWindowWhereItWasDragged) {
    DesktopOptions options;
    options.settings = Settings{.restoresWindow = false};
    Desktop& desktop = start(options);
    TestWindow window(desktop.server.displayName());
    Drag drag(desktop, window.managed(), Drag::Begin::observed);
    drag.pressToMatch(key::super);
    drag.moveTo({900, 500});
    desktop.windowManager->barrier();
    const PixelRect dragged = window.managed().requireVisibleFrame();
    drag.releaseToNoMatch(key::super);
    drag.dropAndExpect(dragged);
}

TEST_P(Restore, ASnappedWindowGoesBackToItsZoneNotToAnEarlierSize) {
    Desktop& desktop = start();
    TestWindow window(desktop.server.displayName());
    const PixelRect area = desktop.screenArea();
    const PixelRect zone = zoneFrame(area, leftHalf);
    snapAndExpect(desktop, window.managed(), pointIn(area, leftHalf), zone);
    Drag drag(desktop, window.managed(), Drag::Begin::observed);
    drag.pressToMatch(key::super);
    drag.moveTo(pointIn(area, rightHalf));
    drag.releaseToNoMatch(key::super);
    desktop.expectFrame(window.managed(), zone);
    drag.dropAndExpect(zone);
}

} // namespace
} // namespace tarvex::test
