#include "Tests/EndToEnd/DesktopTest.h"

namespace tarvex::test {
namespace {

class Endurance : public DesktopTest {};

INSTANTIATE_TEST_SUITE_P(Sessions, Endurance, allSessions(), sessionName);

TEST_P(Endurance, TwoHundredSnapsDoNotDriftNorGrow) {
    constexpr int snaps = 200;
    constexpr int warmUp = 50;
    constexpr long allowedKibibytes = 1024;
    Desktop& desktop = start();
    TestWindow window(desktop.server.displayName());
    const PixelRect area = desktop.screenArea();
    long afterWarmUp = 0;
    for (int snap = 0; snap < snaps; ++snap) {
        const ZoneSpan& zone = snap % 2 == 0 ? rightHalf : leftHalf;
        const PixelRect expected = zoneFrame(area, zone);
        Drag drag(desktop, window.managed());
        drag.pressToMatch(key::super);
        drag.moveTo(pointIn(area, zone));
        drag.drop();
        desktop.expectFrame(window.managed(), expected);
        drag.releaseKeys();
        ASSERT_FALSE(HasFailure()) << "at snap " << snap;
        if (snap + 1 == warmUp) {
            afterWarmUp = desktop.tarvex.process().residentKibibytes();
        }
    }
    desktop.expectFrameUnchanged(window.managed(), zoneFrame(area, leftHalf));
    EXPECT_EQ(desktop.tarvex.countInLog("snapAndHide success"), snaps);
    EXPECT_GT(afterWarmUp, 0);
    EXPECT_LE(desktop.tarvex.process().residentKibibytes(), afterWarmUp + allowedKibibytes);
}

} // namespace
} // namespace tarvex::test
