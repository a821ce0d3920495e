#include "Tests/Contract/X11/DisplayAdapters.h"
#include "Tests/Support/X11/Monitors.h"
#include "Tests/Support/X11/TestWindow.h"
#include "Tests/Support/X11/WindowManager.h"
#include "Tests/Support/X11/XServer.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace tarvex {
namespace {

constexpr test::PixelRect root{0, 0, 1500, 900};
// Both stand clear of the root's edges, and the second is lower and smaller.
constexpr test::PixelRect first{20, 10, 800, 600};
constexpr test::PixelRect second{820, 110, 640, 480};
const Rect firstFrame{0, 0, 800, 600};
const Rect secondFrame{800, 20, 640, 480};

// Panels as real window managers show them.
class DisplayPanel : public ::testing::TestWithParam<test::WindowManagerKind> {
protected:
    DisplayPanel() {
        monitors_.set({{"First", first, true, true}, {"Second", second}});
        adapters_.catchUp();
    }

    std::unique_ptr<test::TestWindow> show(const test::PixelRect& monitor, PanelEdge edge, int depth) {
        return std::make_unique<test::TestWindow>(server_.displayName(),
                                                  dockOptions(root, monitor, edge, depth));
    }

    static void setStrut(test::TestWindow& panel, const test::Strut& strut) {
        panel.client().setWords(panel.id(), "_NET_WM_STRUT_PARTIAL", "CARDINAL", strutWords(strut));
        panel.client().sync();
    }

    static void moveTo(test::TestWindow& panel, const test::PixelRect& geometry) {
        const std::array<std::uint32_t, 4> values{
            static_cast<std::uint32_t>(geometry.x), static_cast<std::uint32_t>(geometry.y),
            static_cast<std::uint32_t>(geometry.width), static_cast<std::uint32_t>(geometry.height)};
        xcb_configure_window(panel.client().connection(), panel.id(),
                             XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                                 XCB_CONFIG_WINDOW_HEIGHT,
                             values.data());
        panel.client().sync();
    }

    ::testing::AssertionResult becomesVisible(const std::vector<Rect>& expected) {
        if (adapters_.waitUntil([&] { return adapters_.visibleFrames() == expected; })) {
            return ::testing::AssertionSuccess();
        }
        return ::testing::AssertionFailure() << "visible:" << describe(adapters_.visibleFrames());
    }

    // Everything that the window manager was asked to do has been done and seen.
    void settle() {
        windowManager_.barrier();
        adapters_.catchUp();
    }

    test::XServer server_{root.width, root.height};
    test::Monitors monitors_{server_.displayName()};
    test::WindowManager windowManager_{server_, GetParam()};
    XDisplayAdapters adapters_{server_.displayName()};
};

TEST_P(DisplayPanel, EveryEdgeOfEveryMonitorFollowsItsPanel) {
    struct Case {
        PanelEdge edge;
        Rect firstVisible;
        Rect secondVisible;
    };

    const std::vector<Case> cases{{PanelEdge::left, {48, 0, 752, 600}, {848, 20, 592, 480}},
                                  {PanelEdge::right, {0, 0, 752, 600}, {800, 20, 592, 480}},
                                  {PanelEdge::top, {0, 0, 800, 552}, {800, 20, 640, 432}},
                                  {PanelEdge::bottom, {0, 48, 800, 552}, {800, 68, 640, 432}}};
    for (const Case& each : cases) {
        const auto onFirst = show(first, each.edge, 48);
        EXPECT_TRUE(becomesVisible({each.firstVisible, secondFrame}));
        const auto onSecond = show(second, each.edge, 48);
        EXPECT_TRUE(becomesVisible({each.firstVisible, each.secondVisible}));
        onFirst->close();
        EXPECT_TRUE(becomesVisible({firstFrame, each.secondVisible}));
        onSecond->close();
        EXPECT_TRUE(becomesVisible({firstFrame, secondFrame}));
    }
}

TEST_P(DisplayPanel, UnmappedPanelGivesItsSpaceBackUntilItReturns) {
    const auto panel = show(first, PanelEdge::top, 40);
    ASSERT_TRUE(becomesVisible({{0, 0, 800, 560}, secondFrame}));
    for (int round = 0; round < 3; ++round) {
        xcb_unmap_window(panel->client().connection(), panel->id());
        panel->client().sync();
        ASSERT_TRUE(becomesVisible({firstFrame, secondFrame}));
        xcb_map_window(panel->client().connection(), panel->id());
        panel->client().sync();
        ASSERT_TRUE(becomesVisible({{0, 0, 800, 560}, secondFrame}));
    }
}

TEST_P(DisplayPanel, PanelThatHidesByItsStrutIsFollowed) {
    const auto panel = show(first, PanelEdge::top, 40);
    ASSERT_TRUE(becomesVisible({{0, 0, 800, 560}, secondFrame}));
    setStrut(*panel, {});
    EXPECT_TRUE(becomesVisible({firstFrame, secondFrame}));
    setStrut(*panel, *dockOptions(root, first, PanelEdge::top, 25).strut);
    EXPECT_TRUE(becomesVisible({{0, 0, 800, 575}, secondFrame}));
}

TEST_P(DisplayPanel, PanelThatMovesToAnotherMonitorIsFollowed) {
    const auto panel = show(first, PanelEdge::top, 40);
    ASSERT_TRUE(becomesVisible({{0, 0, 800, 560}, secondFrame}));
    const test::TestWindowOptions there = dockOptions(root, second, PanelEdge::bottom, 40);
    moveTo(*panel, there.geometry);
    setStrut(*panel, *there.strut);
    EXPECT_TRUE(becomesVisible({firstFrame, {800, 60, 640, 440}}));
}

TEST_P(DisplayPanel, MoveWithoutAnotherStrutIsNoticed) {
    // A strut over the whole edge acts where the window lies.
    const auto panel = show(first, PanelEdge::top, 40);
    setStrut(*panel, {.top = 150, .topStart = 0, .topEnd = 1499});
    ASSERT_TRUE(becomesVisible({{0, 0, 800, 460}, secondFrame}));
    moveTo(*panel, {second.x, second.y, second.width, 40});
    EXPECT_TRUE(becomesVisible({firstFrame, {800, 20, 640, 440}}));
}

TEST_P(DisplayPanel, DockMayGetItsStrutAfterItIsShown) {
    test::TestWindowOptions options = dockOptions(root, first, PanelEdge::left, 30);
    const test::Strut strut = *options.strut;
    options.strut.reset();
    test::TestWindow panel(server_.displayName(), options);
    settle();
    ASSERT_EQ(adapters_.visibleFrames(), (std::vector<Rect>{firstFrame, secondFrame}));
    setStrut(panel, strut);
    EXPECT_TRUE(becomesVisible({{30, 0, 770, 600}, secondFrame}));
}

TEST_P(DisplayPanel, OrdinaryWindowWithAStrutCounts) {
    test::TestWindowOptions options = dockOptions(root, first, PanelEdge::left, 30);
    options.type = "_NET_WM_WINDOW_TYPE_NORMAL";
    const test::TestWindow panel(server_.displayName(), options);
    EXPECT_TRUE(becomesVisible({{30, 0, 770, 600}, secondFrame}));
}

TEST_P(DisplayPanel, PanelsProgramMayDie) {
    auto panel = show(second, PanelEdge::right, 60);
    ASSERT_TRUE(becomesVisible({firstFrame, {800, 20, 580, 480}}));
    panel.reset();
    EXPECT_TRUE(becomesVisible({firstFrame, secondFrame}));
}

TEST_P(DisplayPanel, WindowManagerMayGoAndComeBack) {
    auto gone = show(first, PanelEdge::top, 40);
    const auto stays = show(second, PanelEdge::top, 30);
    ASSERT_TRUE(becomesVisible({{0, 0, 800, 560}, {800, 20, 640, 450}}));
    windowManager_.kill();
    gone.reset();
    EXPECT_TRUE(becomesVisible({firstFrame, {800, 20, 640, 450}}));
    windowManager_.start();
    EXPECT_TRUE(becomesVisible({firstFrame, {800, 20, 640, 450}}));
    const auto fresh = show(first, PanelEdge::bottom, 20);
    EXPECT_TRUE(becomesVisible({{0, 20, 800, 580}, {800, 20, 640, 450}}));
}

TEST_P(DisplayPanel, MonitorsThatChangeUnderAPanelAreSeen) {
    const auto panel = show(first, PanelEdge::top, 40);
    ASSERT_TRUE(becomesVisible({{0, 0, 800, 560}, secondFrame}));
    monitors_.set({{"First", {first.x, first.y, 800, 700}, true, true}, {"Second", second}});
    EXPECT_TRUE(becomesVisible({{0, 0, 800, 660}, {800, 120, 640, 480}}));
}

TEST_P(DisplayPanel, NothingIsAskedWhileNothingChanges) {
    const auto panel = show(first, PanelEdge::top, 40);
    const test::TestWindow window(server_.displayName());
    settle();
    ASSERT_TRUE(becomesVisible({{0, 0, 800, 560}, secondFrame}));
    EXPECT_EQ(adapters_.requestsDuring([&] {
        for (int round = 0; round < 1000; ++round) {
            EXPECT_EQ(adapters_.visibleFrames().size(), 2U);
        }
    }),
              0U);
}

TEST_P(DisplayPanel, OrdinaryWindowsWakeNobodyUp) {
    const auto panel = show(first, PanelEdge::top, 40);
    test::TestWindow window(server_.displayName());
    settle();
    ASSERT_TRUE(becomesVisible({{0, 0, 800, 560}, secondFrame}));
    settle();
    for (int round = 0; round < 50; ++round) {
        window.client().setText(window.id(), "_NET_WM_NAME", "UTF8_STRING", "Title " + std::to_string(round));
        moveTo(window, {300 + round, 300, 400, 300});
    }
    windowManager_.barrier();
    static_cast<void>(adapters_.connection->take(xcb_get_input_focus_reply,
                                                 xcb_get_input_focus(adapters_.connection->get())));
    const XcbOwned<xcb_generic_event_t> event(xcb_poll_for_event(adapters_.connection->get()));
    EXPECT_EQ(event, nullptr) << "type " << static_cast<int>(event->response_type);
    EXPECT_EQ(adapters_.requestsDuring([&] { static_cast<void>(adapters_.visibleFrames()); }), 0U);
}

TEST_P(DisplayPanel, ActiveWindowDecidesTheMainScreen) {
    const auto number = [&](std::size_t index) {
        return adapters_.screens.screens().at(index).displayNumber;
    };
    const auto mainNumber = [&] { return adapters_.screens.mainScreen()->displayNumber; };
    EXPECT_EQ(mainNumber(), number(0));
    test::TestWindowOptions options;
    options.geometry = {second.x + 100, second.y + 100, 300, 200};
    auto window = std::make_unique<test::TestWindow>(server_.displayName(), options);
    EXPECT_TRUE(adapters_.waitUntil([&] { return mainNumber() == number(1); }));
    moveTo(*window, {first.x + 100, first.y + 100, 300, 200});
    EXPECT_TRUE(adapters_.waitUntil([&] { return mainNumber() == number(0); }));
    moveTo(*window, {second.x + 100, second.y + 100, 300, 200});
    EXPECT_TRUE(adapters_.waitUntil([&] { return mainNumber() == number(1); }));
    window.reset();
    EXPECT_TRUE(adapters_.waitUntil([&] { return mainNumber() == number(0); }));
}

INSTANTIATE_TEST_SUITE_P(X11, DisplayPanel,
                         ::testing::Values(test::WindowManagerKind::openbox, test::WindowManagerKind::xfwm4),
                         [](const auto& info) { return test::nameOf(info.param); });

} // namespace
} // namespace tarvex
