#include "Tests/Contract/X11/DisplayAdapters.h"
#include "Tests/Contract/X11/FormWindowFixture.h"
#include "Tests/Support/X11/Monitors.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <utility>
#include <vector>

namespace tarvex::contract {

namespace {

using test::PixelPoint;
using test::PixelRect;
using test::WindowManagerKind;

class FormWindowPlaces : public FormWindowFixture {
protected:
    static constexpr PixelRect left_{0, 0, 700, 1024};
    static constexpr PixelRect right_{700, 0, 580, 800};

    static void layTwoMonitors(const std::string& displayName) {
        test::Monitors(displayName).set({{"left", left_, true, true}, {"right", right_, false, false}});
    }

    /// How far the frame's middle is from that of the area, in pixels, the larger of both directions.
    int distanceFromMiddleOf(const PixelRect& area) {
        const PixelRect frame = managed().requireVisibleFrame();
        return std::max(std::abs(2 * (frame.x - area.x) + frame.width - area.width),
                        std::abs(2 * (frame.y - area.y) + frame.height - area.height)) /
               2;
    }

    bool becomesCentered(const PixelRect& area) {
        return waitUntil([&] { return distanceFromMiddleOf(area) == 0; });
    }
};

// Of a monitor without an output xfwm4 knows nothing, and a virtual server has but one output.
using FormWindowTwoMonitors = FormWindowPlaces;

TEST_F(FormWindowTwoMonitors, IsInTheMiddleOfTheMonitorUnderThePointer) {
    start(WindowManagerKind::openbox, "1", layTwoMonitors);
    desktop_->pointer.moveTo({900, 700});
    show();
    EXPECT_TRUE(becomesCentered(right_)) << managed().requireVisibleFrame();
    window_->close();
    desktop_->pointer.moveTo({100, 1000});
    desktop_->settle();
    show();
    EXPECT_TRUE(becomesCentered(left_)) << managed().requireVisibleFrame();
}

TEST_F(FormWindowTwoMonitors, ShownWindowStaysOnItsMonitor) {
    start(WindowManagerKind::openbox, "1", layTwoMonitors);
    desktop_->pointer.moveTo({900, 700});
    show();
    ASSERT_TRUE(becomesCentered(right_));
    desktop_->client.sendToWindowManager(desktop_->native("Window"), "_NET_MOVERESIZE_WINDOW",
                                         {0x2301, 720, 30, 0, 0});
    ASSERT_TRUE(waitUntil([&] { return distanceFromMiddleOf(right_) > 50; }));
    desktop_->pointer.moveTo({100, 900});
    desktop_->settle();
    show();
    EXPECT_TRUE(becomesCentered(right_)) << managed().requireVisibleFrame();
}

class FormWindowPlacement : public FormWindowPlaces, public ::testing::WithParamInterface<WindowManagerKind> {
protected:
    /// Shows the window, which has been centred, and holds every place that its frame has from its mapping on
    /// against the last one.
    void expectToBeShownInTheMiddleAtOnce() {
        test::XClient watcher(desktop_->server.displayName());
        watcher.selectEvents(watcher.root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
        std::map<xcb_window_t, std::vector<PixelPoint>> places;
        watcher.setEventHandler([&](const xcb_generic_event_t& event) {
            if (event.response_type == XCB_CREATE_NOTIFY) {
                const auto& created = reinterpret_cast<const xcb_create_notify_event_t&>(event);
                places[created.window] = {{created.x, created.y}};
            } else if (event.response_type == XCB_CONFIGURE_NOTIFY) {
                const auto& configured = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
                places[configured.window].push_back({configured.x, configured.y});
            } else if (event.response_type == XCB_MAP_NOTIFY) {
                const auto& mapped = reinterpret_cast<const xcb_map_notify_event_t&>(event);
                auto& former = places[mapped.window];
                former.erase(former.begin(), former.end() - (former.empty() ? 0 : 1));
            }
        });
        window_->makeKeyAndOrderFront();
        desktop_->windows.activateIgnoringOtherApps();
        ASSERT_TRUE(waitUntil([&] { return desktop_->hasKeyboard("Window"); }));
        desktop_->settle();
        watcher.sync();
        watcher.handleEvents();
        EXPECT_EQ(distanceFromMiddleOf({0, 0, XFormWindowDesktop::width, XFormWindowDesktop::height}), 0);
        const xcb_window_t frame = watcher.topLevelOf(desktop_->native("Window")).value_or(XCB_NONE);
        ASSERT_FALSE(places[frame].empty());
        const PixelPoint last = places[frame].back();
        for (const PixelPoint& place : places[frame]) {
            EXPECT_EQ(place, last) << place.x << ", " << place.y << " before " << last.x << ", " << last.y;
        }
    }
};

TEST_P(FormWindowPlacement, PanelsAreLeftOut) {
    start(GetParam(), "1", layTwoMonitors);
    const PixelRect root{0, 0, XFormWindowDesktop::width, XFormWindowDesktop::height};
    const test::TestWindow panel(desktop_->server.displayName(),
                                 dockOptions(root, left_, PanelEdge::top, 60));
    desktop_->pointer.moveTo({100, 500});
    desktop_->settle();
    show();
    EXPECT_TRUE(becomesCentered({0, 60, 700, 964})) << managed().requireVisibleFrame();
}

TEST_P(FormWindowPlacement, FirstShowingIsAtOnceInTheMiddle) {
    startWithoutToolkitWindow(GetParam());
    window_->center();
    expectToBeShownInTheMiddleAtOnce();
}

TEST_P(FormWindowPlacement, FirstShowingIsAtOnceInTheMiddleWhenTheWindowManagerCameLater) {
    startWithoutToolkitWindow(std::nullopt);
    desktop_->windowManager = std::make_unique<test::WindowManager>(desktop_->server, GetParam());
    desktop_->settle();
    window_->center();
    expectToBeShownInTheMiddleAtOnce();
}

TEST_P(FormWindowPlacement, LaterShowingIsAtOnceInTheMiddle) {
    start(GetParam());
    expectToBeShownInTheMiddleAtOnce();
}

TEST_P(FormWindowPlacement, WindowManagerMayComeLater) {
    start(std::nullopt);
    desktop_->windowManager = std::make_unique<test::WindowManager>(desktop_->server, GetParam());
    show();
    EXPECT_TRUE(becomesCentered({0, 0, XFormWindowDesktop::width, XFormWindowDesktop::height}));
}

TEST_P(FormWindowPlacement, ScalesWithTheToolkit) {
    const std::map<std::string, std::pair<int, int>> sizes{{"1.25", {500, 375}}, {"2", {800, 600}}};
    for (const auto& [factor, size] : sizes) {
        SCOPED_TRACE(factor);
        start(GetParam(), factor);
        show();
        EXPECT_TRUE(waitUntil([&] {
            return distanceFromMiddleOf({0, 0, XFormWindowDesktop::width, XFormWindowDesktop::height}) <= 1;
        })) << managed().requireVisibleFrame();
        const auto client = managed().clientGeometry().value_or(PixelRect{});
        EXPECT_EQ(client.width, size.first);
        EXPECT_EQ(client.height, size.second);
        desktop_->click(desktop_->pixelIn("Window", "button"));
        EXPECT_FALSE(owner_.uses.empty());
        owner_.uses.clear();
        TearDown();
    }
}

TEST_P(FormWindowPlacement, CannotBeResized) {
    start(GetParam());
    show();
    desktop_->client.sendToWindowManager(desktop_->native("Window"), "_NET_MOVERESIZE_WINDOW",
                                         {0x2F01, 50, 60, 700, 600});
    ASSERT_TRUE(waitUntil([&] { return managed().requireVisibleFrame().x == 50; }));
    desktop_->settle();
    const auto client = managed().clientGeometry().value_or(PixelRect{});
    EXPECT_EQ(client.width, 400);
    EXPECT_EQ(client.height, 300);
}

INSTANTIATE_TEST_SUITE_P(WindowManagers, FormWindowPlacement,
                         ::testing::Values(WindowManagerKind::openbox, WindowManagerKind::xfwm4),
                         [](const auto& info) { return nameOf(info.param); });

} // namespace

} // namespace tarvex::contract
