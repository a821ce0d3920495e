#include "Tests/EndToEnd/DesktopTest.h"

#include <vector>

namespace tarvex::test {
namespace {

// The primary monitor starts below the top of the desktop and ends above its bottom, so that every conversion
// between the coordinate spaces shows.
constexpr PixelRect leftArea{0, 200, 1280, 800};
constexpr PixelRect rightArea{1280, 0, 1024, 1100};
constexpr const char* displayWithOutput = "v21108-p77-s16909060";
constexpr const char* displayWithoutOutput = "v0-p0-sno-serial";

constexpr ZoneSpan lastThird{2.0 / 3, 1, 0, 1};
constexpr ZoneSpan lowerRow{0, 1, 0.5, 1};

struct TwoMonitorSession {
    SessionKind kind;
    bool isOutputOnTheLeft = true;
};

// One of them is shown by the server's only output and has identification data; the other has neither.
class TwoMonitors : public ::testing::TestWithParam<TwoMonitorSession> {
protected:
    Desktop& startTwo(const std::vector<GridSetting>& grids, const std::string& leftGrid,
                      const std::string& rightGrid) {
        const bool onTheLeft = GetParam().isOutputOnTheLeft;
        Settings settings{.grids = grids};
        settings.gridByDisplay = {{onTheLeft ? displayWithOutput : displayWithoutOutput, leftGrid},
                                  {onTheLeft ? displayWithoutOutput : displayWithOutput, rightGrid}};
        DesktopOptions options;
        options.width = 2304;
        options.height = 1100;
        options.monitors = layout(leftArea);
        options.identity = MonitorIdentity{21108, 77, 16909060, "Panel"};
        options.settings = settings;
        desktop_ = std::make_unique<Desktop>(GetParam().kind, options);
        desktop_->idlePoint = {3, 600};
        return *desktop_;
    }

    static std::vector<MonitorLayout> layout(const PixelRect& left) {
        const bool onTheLeft = GetParam().isOutputOnTheLeft;
        return {{"left", left, true, onTheLeft}, {"right", rightArea, false, !onTheLeft}};
    }

    // The others know only monitors with an output and keep windows within reach of those.
    static bool canHoldWindows(const PixelRect& monitor) {
        return GetParam().kind.windowManager == WindowManagerKind::openbox ||
               (monitor == leftArea) == GetParam().isOutputOnTheLeft;
    }

    // A window on a monitor that the window manager knows.
    static TestWindowOptions placedWindow() {
        TestWindowOptions options;
        options.geometry =
            canHoldWindows(leftArea) ? PixelRect{100, 400, 400, 300} : PixelRect{1500, 200, 400, 300};
        return options;
    }

    void TearDown() override {
        if (desktop_) {
            desktop_->tarvex.expectCleanExit();
        }
    }

private:
    std::unique_ptr<Desktop> desktop_;
};

std::vector<TwoMonitorSession> twoMonitorSessions() {
    std::vector<TwoMonitorSession> sessions;
    for (const SessionKind& kind : withFurther(usualSessions())) {
        sessions.push_back({kind, true});
        sessions.push_back({kind, false});
    }
    return sessions;
}

INSTANTIATE_TEST_SUITE_P(Sessions, TwoMonitors, ::testing::ValuesIn(twoMonitorSessions()),
                         [](const auto& info) {
                             return nameOf(info.param.kind) +
                                    (info.param.isOutputOnTheLeft ? "_leftOutput" : "_rightOutput");
                         });

std::vector<GridSetting> threeGrids() {
    return {{"first", {0.25}, {}}, {"rows", {}, {0.5}}, {"thirds", {1.0 / 3, 2.0 / 3}, {}}};
}

TEST_P(TwoMonitors, EachHasItsOwnGrid) {
    Desktop& desktop = startTwo(threeGrids(), "thirds", "rows");
    TestWindow window(desktop.server.displayName(), placedWindow());
    if (canHoldWindows(leftArea)) {
        snapAndExpect(desktop, window.managed(), pointIn(leftArea, lastThird),
                      zoneFrame(leftArea, lastThird));
    }
    if (canHoldWindows(rightArea)) {
        snapAndExpect(desktop, window.managed(), pointIn(rightArea, lowerRow),
                      zoneFrame(rightArea, lowerRow));
    }
}

TEST_P(TwoMonitors, ADragAcrossTakesTheGridOfTheMonitorItEndsOn) {
    Desktop& desktop = startTwo(threeGrids(), "thirds", "rows");
    TestWindow window(desktop.server.displayName(), placedWindow());
    const bool endsOnTheLeft = !canHoldWindows(rightArea);
    Drag drag(desktop, window.managed());
    drag.pressToMatch(key::super);
    drag.moveTo(pointIn(endsOnTheLeft ? rightArea : leftArea, {}));
    drag.moveTo(endsOnTheLeft ? pointIn(leftArea, lastThird) : pointIn(rightArea, lowerRow));
    drag.dropAndExpect(endsOnTheLeft ? zoneFrame(leftArea, lastThird) : zoneFrame(rightArea, lowerRow));
}

TEST_P(TwoMonitors, OneWithoutAGridOfItsOwnTakesTheFirst) {
    Desktop& desktop = startTwo(threeGrids(), "gone", "gone");
    TestWindow window(desktop.server.displayName(), placedWindow());
    const ZoneSpan wide{0.25, 1, 0, 1};
    const PixelRect area = canHoldWindows(rightArea) ? rightArea : leftArea;
    snapAndExpect(desktop, window.managed(), pointIn(area, wide), zoneFrame(area, wide));
}

TEST_P(TwoMonitors, APanelTakesRoomOnItsOwnMonitorOnly) {
    Desktop& desktop = startTwo(threeGrids(), "thirds", "rows");
    TestWindow window(desktop.server.displayName(), placedWindow());
    // The left monitor's bottom is 100 pixels above that of the desktop, from which struts are counted.
    TestWindowOptions panel;
    panel.type = "_NET_WM_WINDOW_TYPE_DOCK";
    panel.geometry = {0, 960, 1280, 40};
    panel.strut = Strut{.bottom = 140, .bottomStart = 0, .bottomEnd = 1279};
    TestWindow dock(desktop.server.displayName(), panel);
    PixelRect reduced = leftArea;
    reduced.height -= 40;
    if (canHoldWindows(leftArea)) {
        snapAndExpect(desktop, window.managed(), pointIn(reduced, lastThird), zoneFrame(reduced, lastThird));
    }
    if (canHoldWindows(rightArea)) {
        snapAndExpect(desktop, window.managed(), pointIn(rightArea, lowerRow),
                      zoneFrame(rightArea, lowerRow));
    }
}

TEST_P(TwoMonitors, ALayoutChangedDuringTheDragCounts) {
    Desktop& desktop = startTwo(threeGrids(), "thirds", "rows");
    TestWindow window(desktop.server.displayName(), placedWindow());
    Drag drag(desktop, window.managed());
    drag.pressToMatch(key::super);
    // The primary monitor, which all coordinates hang on, becomes another.
    const PixelRect taller{0, 100, 1280, 1000};
    desktop.monitors.set(layout(taller));
    const bool endsOnTheLeft = canHoldWindows(leftArea);
    drag.moveTo(endsOnTheLeft ? pointIn(taller, lastThird) : pointIn(rightArea, lowerRow));
    drag.dropAndExpect(endsOnTheLeft ? zoneFrame(taller, lastThird) : zoneFrame(rightArea, lowerRow));
}

// Above the left monitor, which begins lower than the right one.
constexpr PixelPoint deadCorner{600, 100};

TEST_P(TwoMonitors, KeysPressedWhereNoMonitorIsShowNoZones) {
    Desktop& desktop = startTwo(threeGrids(), "thirds", "rows");
    TestWindow window(desktop.server.displayName(), placedWindow());
    const PixelRect area = canHoldWindows(leftArea) ? leftArea : rightArea;
    const ZoneSpan zone = canHoldWindows(leftArea) ? lastThird : lowerRow;
    Drag drag(desktop, window.managed());
    drag.moveTo(deadCorner);
    drag.pressToMatch(key::super);
    drag.moveTo(pointIn(area, zone));
    drag.drop();
    drag.releaseKeys();
    desktop.settle();
    EXPECT_EQ(desktop.tarvex.countInLog("snapDragStart"), 0);
    EXPECT_EQ(desktop.tarvex.countInLog("snapAndHide"), 0);
    snapAndExpect(desktop, window.managed(), pointIn(area, zone), zoneFrame(area, zone));
}

TEST_P(TwoMonitors, AReleaseWhereNoMonitorIsSnapsNothing) {
    Desktop& desktop = startTwo(threeGrids(), "thirds", "rows");
    desktop.tarvex.allowOnStandardError("SnapController.snapAndHide: visibleFrame=nil");
    TestWindow window(desktop.server.displayName(), placedWindow());
    const PixelRect area = canHoldWindows(leftArea) ? leftArea : rightArea;
    const ZoneSpan zone = canHoldWindows(leftArea) ? lastThird : lowerRow;
    {
        Drag drag(desktop, window.managed());
        drag.moveTo(pointIn(area, zone));
        drag.pressToMatch(key::super);
        drag.moveTo(deadCorner);
        drag.drop();
        desktop.tarvex.awaitOnStandardError("SnapController.snapAndHide: visibleFrame=nil");
        drag.releaseKeys();
    }
    desktop.settle();
    EXPECT_EQ(desktop.tarvex.countInLog("snapAndHide success"), 0);
    // The window may hang where there is no monitor, title bar and all.
    TestWindow next(desktop.server.displayName(), placedWindow());
    snapAndExpect(desktop, next.managed(), pointIn(area, zone), zoneFrame(area, zone));
}

TEST_P(TwoMonitors, ZonesGoAlongWithTheMonitorThatMovesDuringTheDrag) {
    Desktop& desktop = startTwo({{"halves", {0.5}, {}}}, "halves", "halves");
    TestWindow window(desktop.server.displayName(), placedWindow());
    Drag drag(desktop, window.managed());
    drag.moveTo(pointIn(leftArea, rightHalf));
    const Screenshot before = desktop.steadyScreen();
    const auto isOutlined = [&](const PixelRect& area) {
        // The lower end of the outer edge of the zone that is not selected, and of nothing else.
        const PixelRect edge = zoneFrame(area, leftHalf);
        return Screenshot(desktop.client)
                   .countDifferences(before, {edge.x - 1, edge.y + edge.height - 60, 3, 20}) > 0;
    };
    drag.pressToMatch(key::super);
    desktop.client.waitUntil([&] { return isOutlined(leftArea); }, "the zones show");
    // The same monitor, but another one has come to stand on its left.
    PixelRect moved = leftArea;
    moved.x += 500;
    const bool onTheLeft = GetParam().isOutputOnTheLeft;
    desktop.monitors.set(
        {{"left", moved, true, onTheLeft}, {"right", {0, 200, 500, 800}, false, !onTheLeft}});
    desktop.client.waitUntil([&] { return isOutlined(moved) && !isOutlined(leftArea); },
                             "the zones stand on the monitor in its new place");
    drag.drop();
    drag.releaseKeys();
    desktop.settle();
}

class Panel : public DesktopTest {};

INSTANTIATE_TEST_SUITE_P(Sessions, Panel, allSessions(), sessionName);

TestWindowOptions topPanel() {
    TestWindowOptions panel;
    panel.type = "_NET_WM_WINDOW_TYPE_DOCK";
    panel.geometry = {0, 0, 1280, 48};
    panel.strut = Strut{.top = 48, .topStart = 0, .topEnd = 1279};
    return panel;
}

constexpr PixelRect belowPanel{0, 48, 1280, 976};

TEST_P(Panel, KeepsItsStripFree) {
    Desktop& desktop = start();
    TestWindow panel(desktop.server.displayName(), topPanel());
    TestWindow window(desktop.server.displayName());
    snapAndExpect(desktop, window.managed(), pointIn(belowPanel, rightHalf),
                  zoneFrame(belowPanel, rightHalf));
}

TEST_P(Panel, GivesItsStripBackWhenItGoes) {
    Desktop& desktop = start();
    TestWindow window(desktop.server.displayName());
    const PixelRect area = desktop.screenArea();
    {
        TestWindow panel(desktop.server.displayName(), topPanel());
        snapAndExpect(desktop, window.managed(), pointIn(belowPanel, rightHalf),
                      zoneFrame(belowPanel, rightHalf));
    }
    snapAndExpect(desktop, window.managed(), pointIn(area, leftHalf), zoneFrame(area, leftHalf));
}

TEST_P(Panel, ReleaseOverItTakesTheLastZone) {
    Desktop& desktop = start();
    TestWindow panel(desktop.server.displayName(), topPanel());
    TestWindow window(desktop.server.displayName());
    Drag drag(desktop, window.managed());
    drag.pressToMatch(key::super);
    const Screenshot before(desktop.client);
    drag.moveTo({900, 300});
    desktop.client.waitUntil(
        [&] {
            return Screenshot(desktop.client).countDifferences(before, {700, 1008, 400, 6}) > 0;
        },
        "the right zone is filled");
    // Just one step from the zone onto the panel, so that no other zone is passed.
    desktop.pointer.moveTo({400, 30});
    drag.dropAndExpect(zoneFrame(belowPanel, rightHalf));
}

TEST_P(Panel, IsNotDraggedIntoAZoneItself) {
    Desktop& desktop = start();
    TestWindow panel(desktop.server.displayName(), topPanel());
    const PixelRect original = panel.managed().requireVisibleFrame();
    desktop.tarvex.allowOnStandardError("SnapController.snapAndHide: activeWindow=nil");
    Drag drag(desktop, panel.managed(), Drag::Begin::unfollowed);
    drag.pressToMatch(key::super);
    drag.moveTo({900, 500});
    drag.drop();
    desktop.tarvex.awaitOnStandardError("SnapController.snapAndHide: activeWindow=nil");
    drag.releaseKeys();
    desktop.expectFrameUnchanged(panel.managed(), original);
}

} // namespace
} // namespace tarvex::test
