#include "Tests/Contract/X11/DisplayPanelListFixture.h"
#include "Tests/Support/X11/WindowManager.h"

#include <chrono>
#include <vector>

namespace tarvex {
namespace {

constexpr std::uint32_t withdrawnState = 0;
constexpr std::uint32_t normalState = 1;
constexpr std::uint32_t iconicState = 3;

// Panels that the window manager holds without listing them. The time stands still unless it is moved on.
class DisplayPanelUnlisted : public DisplayPanelList {
protected:
    DisplayPanelUnlisted() { adapters_.time = StrutTracker::Clock::now(); }

    std::vector<Rect> visibleLater() {
        *adapters_.time += std::chrono::seconds(1);
        return visible();
    }

    unsigned requestsOfAsking() {
        client_.sync();
        adapters_.catchUp();
        return adapters_.requestsDuring([&] { static_cast<void>(adapters_.visibleFrames()); });
    }
};

TEST_F(DisplayPanelUnlisted, PanelCountsWhileAWindowManagerHoldsIt) {
    const xcb_window_t panel = createTopPanel();
    EXPECT_EQ(visible(), allFrames_);
    setState(panel, normalState);
    EXPECT_EQ(visible(), belowTopPanel_);
    setState(panel, withdrawnState);
    EXPECT_EQ(visible(), allFrames_);
    setState(panel, iconicState);
    EXPECT_EQ(visible(), allFrames_);
    setState(panel, normalState);
    EXPECT_EQ(visible(), belowTopPanel_);
    xcb_unmap_window(client_.connection(), panel);
    EXPECT_EQ(visible(), allFrames_);
    xcb_map_window(client_.connection(), panel);
    EXPECT_EQ(visible(), belowTopPanel_);
    xcb_destroy_window(client_.connection(), panel);
    EXPECT_EQ(visible(), allFrames_);
}

TEST_F(DisplayPanelUnlisted, PanelInAFrameCountsWhereTheFrameIs) {
    test::XClient manager(server_.displayName());
    const xcb_window_t frame = xcb_generate_id(manager.connection());
    xcb_create_window(manager.connection(), XCB_COPY_FROM_PARENT, frame, manager.root(), 800, 100, 640, 40, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_map_window(manager.connection(), frame);
    manager.sync();
    const xcb_window_t panel = createTopPanel();
    setPartial(panel, {0, 0, 140, 0, 0, 0, 0, 0, 800, 1439, 0, 0});
    setState(panel, normalState);
    client_.sync();
    xcb_reparent_window(manager.connection(), panel, frame, 0, 0);
    manager.sync();
    EXPECT_EQ(visible(), (std::vector<Rect>{firstFrame, {800, 20, 640, 440}}));
}

TEST_F(DisplayPanelUnlisted, PanelThatComesLaterIsFoundWithinASecond) {
    EXPECT_EQ(visible(), allFrames_);
    const xcb_window_t panel = createTopPanel();
    setState(panel, normalState);
    EXPECT_EQ(requestsOfAsking(), 0U);
    EXPECT_EQ(visibleLater(), belowTopPanel_);
}

TEST_F(DisplayPanelUnlisted, PanelThatComesWithAChangeOfTheListIsFoundAtOnce) {
    EXPECT_EQ(visible(), allFrames_);
    const xcb_window_t panel = createTopPanel();
    setState(panel, normalState);
    list({});
    EXPECT_EQ(visible(), belowTopPanel_);
}

TEST_F(DisplayPanelUnlisted, WindowMayBecomeAPanelAfterItWasMade) {
    const xcb_window_t window = xcb_generate_id(client_.connection());
    create(window, {0, 0, 800, 40});
    EXPECT_EQ(visible(), allFrames_);
    setType(window, {"_NET_WM_WINDOW_TYPE_DOCK"});
    setPartial(window, topStrut_);
    setState(window, normalState);
    EXPECT_EQ(visibleLater(), belowTopPanel_);
}

TEST_F(DisplayPanelUnlisted, SearchCostsOneQuestionASecond) {
    const xcb_window_t window = createOrdinary();
    list({window});
    visible();
    EXPECT_EQ(requestsOfAsking(), 0U);
    // Each window is looked at twice.
    visibleLater();
    for (int second = 0; second < 3; ++second) {
        *adapters_.time += std::chrono::seconds(1);
        EXPECT_EQ(requestsOfAsking(), 1U);
        EXPECT_EQ(requestsOfAsking(), 0U);
    }
}

TEST_F(DisplayPanelUnlisted, NothingIsSearchedWherePanelsAreListed) {
    const xcb_window_t listed = createTopPanel();
    const xcb_window_t unlisted = createTopPanel();
    setPartial(unlisted, {0, 0, 90, 0, 0, 0, 0, 0, 0, 799, 0, 0});
    setState(unlisted, normalState);
    list({listed});
    EXPECT_EQ(visible(), belowTopPanel_);
    *adapters_.time += std::chrono::hours(1);
    EXPECT_EQ(requestsOfAsking(), 0U);
}

TEST_F(DisplayPanelUnlisted, PanelThatBecomesListedGoesByItsStrutAgain) {
    const xcb_window_t panel = createTopPanel();
    setPartial(panel, {0, 0, 25, 0, 0, 0, 0, 0, 0, 799, 0, 0});
    setState(panel, normalState);
    EXPECT_EQ(visible(), belowTopPanel_);
    list({panel});
    EXPECT_EQ(visible(), (std::vector<Rect>{{0, 0, 800, 575}, secondFrame}));
    list({});
    EXPECT_EQ(visible(), belowTopPanel_);
}

TEST_F(DisplayPanelUnlisted, ThousandsOfWindowsHideNoPanel) {
    for (int count = 0; count < 3000; ++count) {
        createOrdinary();
    }
    const xcb_window_t panel = createTopPanel();
    setState(panel, normalState);
    ASSERT_EQ(visible().size(), 2U);
    // Not all are looked at in one go.
    for (int second = 0; second < 10; ++second) {
        visibleLater();
    }
    EXPECT_EQ(visible(), belowTopPanel_);
}

// A window manager that lists no panels and gives each a strip of its monitor.
class DisplayPanelInStrips : public ::testing::Test {
protected:
    static constexpr test::PixelRect root{0, 0, 1500, 900};
    static constexpr test::PixelRect first{0, 0, 800, 900};
    static constexpr test::PixelRect second{800, 0, 700, 480};
    static constexpr Rect firstFrame{0, 0, 800, 900};
    static constexpr Rect secondFrame{800, 420, 700, 480};

    DisplayPanelInStrips() {
        monitors_.set({{"First", first, true, true}, {"Second", second}});
        windowManager_ = std::make_unique<test::WindowManager>(server_, test::WindowManagerKind::i3);
        adapters_.catchUp();
    }

    std::unique_ptr<test::TestWindow> show(const test::TestWindowOptions& options) {
        return std::make_unique<test::TestWindow>(server_.displayName(), options);
    }

    ::testing::AssertionResult becomesVisible(const std::vector<Rect>& expected) {
        if (adapters_.waitUntil([&] { return adapters_.visibleFrames() == expected; })) {
            return ::testing::AssertionSuccess();
        }
        return ::testing::AssertionFailure() << "visible:" << describe(adapters_.visibleFrames());
    }

    test::XServer server_{root.width, root.height};
    test::Monitors monitors_{server_.displayName()};
    std::unique_ptr<test::WindowManager> windowManager_;
    XDisplayAdapters adapters_{server_.displayName()};
};

TEST_F(DisplayPanelInStrips, PanelsThatComeAndGoAreFollowed) {
    ASSERT_TRUE(becomesVisible({firstFrame, secondFrame}));
    const auto upper = show(dockOptions(root, first, PanelEdge::top, 40));
    EXPECT_TRUE(becomesVisible({{0, 0, 800, 860}, secondFrame}));
    const auto lower = show(dockOptions(root, first, PanelEdge::bottom, 30));
    EXPECT_TRUE(becomesVisible({{0, 30, 800, 830}, secondFrame}));
    upper->close();
    EXPECT_TRUE(becomesVisible({{0, 30, 800, 870}, secondFrame}));
    lower->close();
    EXPECT_TRUE(becomesVisible({firstFrame, secondFrame}));
}

TEST_F(DisplayPanelInStrips, PanelsThatStandBehindOneAnotherAddUp) {
    const auto one = show(dockOptions(root, first, PanelEdge::top, 40));
    const auto other = show(dockOptions(root, first, PanelEdge::top, 25));
    EXPECT_TRUE(becomesVisible({{0, 0, 800, 835}, secondFrame}));
    one->close();
    EXPECT_TRUE(becomesVisible({{0, 0, 800, 875}, secondFrame}));
}

TEST_F(DisplayPanelInStrips, PanelWithoutAStrutTakesItsStripAllTheSame) {
    test::TestWindowOptions options = dockOptions(root, second, PanelEdge::top, 35);
    options.strut.reset();
    const auto panel = show(options);
    EXPECT_TRUE(becomesVisible({firstFrame, {800, 420, 700, 445}}));
}

TEST_F(DisplayPanelInStrips, StrutMayBeCountedFromTheEdgeOfTheMonitor) {
    test::TestWindowOptions options = dockOptions(root, second, PanelEdge::bottom, 20);
    options.strut->bottom = 20;
    const auto panel = show(options);
    EXPECT_TRUE(becomesVisible({firstFrame, {800, 440, 700, 460}}));
}

TEST_F(DisplayPanelInStrips, WindowManagerMayStartAgain) {
    const auto panel = show(dockOptions(root, first, PanelEdge::top, 40));
    EXPECT_TRUE(becomesVisible({{0, 0, 800, 860}, secondFrame}));
    windowManager_->kill();
    windowManager_->start();
    EXPECT_TRUE(becomesVisible({{0, 0, 800, 860}, secondFrame}));
    panel->close();
    EXPECT_TRUE(becomesVisible({firstFrame, secondFrame}));
}

} // namespace
} // namespace tarvex
