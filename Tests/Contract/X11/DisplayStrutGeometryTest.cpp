#include "Platform/Linux/X11/StrutGeometry.h"
#include "Tests/Support/RandomSource.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

namespace tarvex {

static void PrintTo(const PixelRect& rect, std::ostream* stream) {
    *stream << rect.width << "x" << rect.height << "+" << rect.x << "+" << rect.y;
}

namespace {

using Rects = std::vector<PixelRect>;

constexpr PixelRect root{0, 0, 1440, 700};
// The right one is lower and smaller, so that each has edges that are not edges of the root.
constexpr PixelRect left{0, 0, 800, 600};
constexpr PixelRect right{800, 100, 640, 480};
const Rects both{left, right};

StrutPanel panelAt(const PixelRect& window) {
    StrutPanel panel;
    panel.window = window;
    return panel;
}

StrutPanel leftPanel(const PixelRect& monitor, int width) {
    StrutPanel panel = panelAt({monitor.x, monitor.y, width, monitor.height});
    panel.left = {monitor.x + width, monitor.y, monitor.bottom() - 1};
    return panel;
}

StrutPanel rightPanel(const PixelRect& monitor, int width) {
    StrutPanel panel = panelAt({monitor.right() - width, monitor.y, width, monitor.height});
    panel.right = {root.width - monitor.right() + width, monitor.y, monitor.bottom() - 1};
    return panel;
}

StrutPanel topPanel(const PixelRect& monitor, int height) {
    StrutPanel panel = panelAt({monitor.x, monitor.y, monitor.width, height});
    panel.top = {monitor.y + height, monitor.x, monitor.right() - 1};
    return panel;
}

StrutPanel bottomPanel(const PixelRect& monitor, int height) {
    StrutPanel panel = panelAt({monitor.x, monitor.bottom() - height, monitor.width, height});
    panel.bottom = {root.height - monitor.bottom() + height, monitor.x, monitor.right() - 1};
    return panel;
}

TEST(DisplayStrutGeometry, WithoutPanelsEverythingIsVisible) {
    EXPECT_EQ(visibleAreas(root, both, {}), both);
    EXPECT_EQ(visibleAreas(root, {}, {topPanel(left, 30)}), Rects{});
}

TEST(DisplayStrutGeometry, PanelsReduceTheLeftMonitorAlone) {
    EXPECT_EQ(visibleAreas(root, both, {leftPanel(left, 50)}), (Rects{{50, 0, 750, 600}, right}));
    EXPECT_EQ(visibleAreas(root, both, {rightPanel(left, 50)}), (Rects{{0, 0, 750, 600}, right}));
    EXPECT_EQ(visibleAreas(root, both, {topPanel(left, 30)}), (Rects{{0, 30, 800, 570}, right}));
    EXPECT_EQ(visibleAreas(root, both, {bottomPanel(left, 30)}), (Rects{{0, 0, 800, 570}, right}));
}

TEST(DisplayStrutGeometry, PanelsReduceTheRightMonitorAlone) {
    EXPECT_EQ(visibleAreas(root, both, {leftPanel(right, 50)}), (Rects{left, {850, 100, 590, 480}}));
    EXPECT_EQ(visibleAreas(root, both, {rightPanel(right, 50)}), (Rects{left, {800, 100, 590, 480}}));
    EXPECT_EQ(visibleAreas(root, both, {topPanel(right, 30)}), (Rects{left, {800, 130, 640, 450}}));
    EXPECT_EQ(visibleAreas(root, both, {bottomPanel(right, 30)}), (Rects{left, {800, 100, 640, 450}}));
}

TEST(DisplayStrutGeometry, PanelBetweenStackedMonitorsReducesItsOwn) {
    const PixelRect stackedRoot{0, 0, 800, 1200};
    const PixelRect upper{0, 0, 800, 600};
    const PixelRect lower{0, 600, 800, 600};
    StrutPanel panel = panelAt({0, 600, 800, 30});
    panel.top = {630, 0, 799};
    EXPECT_EQ(visibleAreas(stackedRoot, {upper, lower}, {panel}), (Rects{upper, {0, 630, 800, 570}}));
    panel.window = {0, 570, 800, 30};
    panel.top = {};
    panel.bottom = {630, 0, 799};
    EXPECT_EQ(visibleAreas(stackedRoot, {upper, lower}, {panel}), (Rects{{0, 0, 800, 570}, lower}));
}

TEST(DisplayStrutGeometry, PanelAcrossMonitorsReducesEachByItsOwnPart) {
    StrutPanel panel = panelAt({0, 0, 1440, 140});
    panel.top = {140, 0, 1439};
    EXPECT_EQ(visibleAreas(root, both, {panel}), (Rects{{0, 140, 800, 460}, {800, 140, 640, 440}}));
}

TEST(DisplayStrutGeometry, RangeLimitsThePanel) {
    StrutPanel panel = panelAt({0, 0, 1440, 140});
    panel.top = {140, 800, 1439};
    EXPECT_EQ(visibleAreas(root, both, {panel}), (Rects{left, {800, 140, 640, 440}}));
    panel.top = {140, 0, 799};
    EXPECT_EQ(visibleAreas(root, both, {panel}), (Rects{{0, 140, 800, 460}, right}));
    panel.top = {140, 799, 800};
    EXPECT_EQ(visibleAreas(root, both, {panel}), (Rects{{0, 140, 800, 460}, {800, 140, 640, 440}}));
}

TEST(DisplayStrutGeometry, StrutOfTheWholeEdgeStaysOnThePanelsMonitor) {
    StrutPanel panel = panelAt({0, 560, 800, 40});
    panel.bottom = {140, 0, 1439};
    EXPECT_EQ(visibleAreas(root, both, {panel}), (Rects{{0, 0, 800, 560}, right}));
}

TEST(DisplayStrutGeometry, StrutThatEndsBeforeTheMonitorDoesNothing) {
    StrutPanel panel = panelAt({800, 100, 640, 30});
    panel.top = {100, 800, 1439};
    EXPECT_EQ(visibleAreas(root, both, {panel}), both);
    panel.top = {101, 800, 1439};
    EXPECT_EQ(visibleAreas(root, both, {panel}), (Rects{left, {800, 101, 640, 479}}));
}

TEST(DisplayStrutGeometry, HiddenHolderActsWhereItsStrutReaches) {
    StrutPanel holder = panelAt({-100, -100, 1, 1});
    holder.top = {30, 0, 1439};
    EXPECT_EQ(visibleAreas(root, both, {holder}), (Rects{{0, 30, 800, 570}, right}));
    holder.top = {};
    holder.left = {850, 0, 699};
    EXPECT_EQ(visibleAreas(root, both, {holder}), (Rects{left, {850, 100, 590, 480}}));
}

TEST(DisplayStrutGeometry, WindowInADeadCornerOfTheRootIsOnNoMonitor) {
    StrutPanel holder = panelAt({1000, 0, 100, 50});
    holder.top = {130, 800, 1439};
    EXPECT_EQ(visibleAreas(root, both, {holder}), (Rects{left, {800, 130, 640, 450}}));
}

TEST(DisplayStrutGeometry, LargestPanelOfAnEdgeCounts) {
    const Rects expected{{0, 40, 800, 560}, right};
    EXPECT_EQ(visibleAreas(root, both, {topPanel(left, 40), topPanel(left, 25)}), expected);
    EXPECT_EQ(visibleAreas(root, both, {topPanel(left, 25), topPanel(left, 40)}), expected);
}

TEST(DisplayStrutGeometry, PanelsOfAllEdgesAddUp) {
    const std::vector<StrutPanel> panels{leftPanel(right, 10), rightPanel(right, 20), topPanel(right, 30),
                                         bottomPanel(right, 40)};
    EXPECT_EQ(visibleAreas(root, both, panels), (Rects{left, {810, 130, 610, 410}}));
}

TEST(DisplayStrutGeometry, StrutThatWouldLeaveNothingIsIgnored) {
    EXPECT_EQ(visibleAreas(root, both, {topPanel(left, 600)}), both);
    EXPECT_EQ(visibleAreas(root, both, {leftPanel(right, 10'000)}), both);
    EXPECT_EQ(visibleAreas(root, both, {topPanel(left, 599)}), (Rects{{0, 599, 800, 1}, right}));
}

TEST(DisplayStrutGeometry, StrutsThatTogetherWouldLeaveNothingCountInOrder) {
    EXPECT_EQ(visibleAreas(root, both, {topPanel(left, 400), bottomPanel(left, 300), leftPanel(left, 20)}),
              (Rects{{20, 400, 780, 200}, right}));
}

StrutPanel strip(const PixelRect& window) {
    StrutPanel panel = panelAt(window);
    panel.isLaidOut = true;
    return panel;
}

TEST(DisplayStrutGeometry, StripTakesWhatItCovers) {
    EXPECT_EQ(visibleAreas(root, both, {strip({0, 0, 800, 30})}), (Rects{{0, 30, 800, 570}, right}));
    EXPECT_EQ(visibleAreas(root, both, {strip({800, 550, 640, 30})}), (Rects{left, {800, 100, 640, 450}}));
    EXPECT_EQ(visibleAreas(root, both, {strip({0, 30, 800, 20}), strip({0, 0, 800, 30})}),
              (Rects{{0, 50, 800, 550}, right}));
}

TEST(DisplayStrutGeometry, StrutOfAStripIsNotAsked) {
    StrutPanel panel = strip({800, 550, 640, 30});
    // Counted from the edge of the monitor, and from that of the root by somebody else.
    panel.bottom = {30, 800, 1439};
    panel.left = {900, 0, 699};
    EXPECT_EQ(visibleAreas(root, both, {panel}), (Rects{left, {800, 100, 640, 450}}));
}

TEST(DisplayStrutGeometry, PanelThatIsLaidOutButNoStripGoesByItsStrut) {
    StrutPanel panel = strip({0, 0, 799, 30});
    EXPECT_EQ(visibleAreas(root, both, {panel}), both);
    panel.top = {20, 0, 799};
    EXPECT_EQ(visibleAreas(root, both, {panel}), (Rects{{0, 20, 800, 580}, right}));
    panel.window = {0, 0, 800, 30};
    panel.isLaidOut = false;
    EXPECT_EQ(visibleAreas(root, both, {panel}), (Rects{{0, 20, 800, 580}, right}));
}

PixelRect randomRect(RandomSource& random, const PixelRect& within) {
    return {random.integer(within.x - 50, within.right()), random.integer(within.y - 50, within.bottom()),
            random.integer(1, within.width), random.integer(1, within.height)};
}

StrutEdge randomEdge(RandomSource& random) {
    const int start = random.integer(0, 1500);
    return {random.coin() ? random.integer(0, 900) : 0, start, start + random.integer(0, 1500)};
}

TEST(DisplayStrutGeometry, SomethingOfEveryMonitorAlwaysStaysVisible) {
    constexpr std::uint32_t seed = 20'231;
    SCOPED_TRACE("seed " + std::to_string(seed));
    RandomSource random(seed);
    int reduced = 0;
    for (int round = 0; round < 5000; ++round) {
        const Rects monitors{randomRect(random, root), randomRect(random, root)};
        std::vector<StrutPanel> panels(random.integer(std::size_t{1}, std::size_t{5}));
        for (StrutPanel& panel : panels) {
            panel = {randomRect(random, root), randomEdge(random), randomEdge(random),
                     randomEdge(random),       randomEdge(random), random.coin()};
            if (panel.isLaidOut && random.coin()) {
                panel.window.x = monitors.front().x;
                panel.window.width = monitors.front().width;
            }
        }
        const Rects areas = visibleAreas(root, monitors, panels);
        ASSERT_EQ(areas.size(), monitors.size());
        for (std::size_t index = 0; index < areas.size(); ++index) {
            const PixelRect& area = areas[index];
            const PixelRect& monitor = monitors[index];
            ASSERT_TRUE(area.width > 0 && area.height > 0) << round;
            ASSERT_TRUE(area.x >= monitor.x && area.right() <= monitor.right()) << round;
            ASSERT_TRUE(area.y >= monitor.y && area.bottom() <= monitor.bottom()) << round;
            reduced += area == monitor ? 0 : 1;
        }
    }
    EXPECT_GT(reduced, 1000);
}

} // namespace
} // namespace tarvex
