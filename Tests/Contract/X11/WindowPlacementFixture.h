#pragma once

#include "Tests/Contract/X11/InputAdapters.h"
#include "Tests/Contract/X11/MessageWitness.h"
#include "Tests/Support/Simulated/SimulatedMainLoop.h"
#include "Tests/Support/X11/Pointer.h"
#include "Tests/Support/X11/TestWindow.h"
#include "Tests/Support/X11/WindowManager.h"
#include "Tests/Support/X11/XClient.h"
#include "Tests/Support/X11/XServer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>

namespace tarvex::contract {

using test::ManagedWindow;
using test::PixelExtents;
using test::PixelPoint;
using test::PixelRect;
using test::WindowManagerKind;

inline constexpr PixelRect zone{640, 40, 400, 600};
inline constexpr PixelRect otherZone{20, 300, 610, 420};
inline constexpr std::chrono::milliseconds silence{150};

/// Other programs' windows under a window manager, and hands on the pointer.
class WindowPlacementTest : public ::testing::TestWithParam<WindowManagerKind> {
protected:
    /// The adapter's handle for a window, taken at its title bar as a press does.
    AccessibilityElementRef handleOf(const ManagedWindow& window) {
        return adapters_.windowAt(window.titleBarPoint());
    }

    static PixelRect frameOf(const ManagedWindow& window) {
        return window.visibleFrame().value_or(PixelRect{});
    }

    testing::AssertionResult comesTo(const ManagedWindow& window, const PixelRect& frame) {
        if (adapters_.waitUntil([&] { return window.visibleFrame() == frame; })) {
            return testing::AssertionSuccess();
        }
        return testing::AssertionFailure() << "visible frame is " << test::describe(frameOf(window));
    }

    testing::AssertionResult staysAt(const ManagedWindow& window, const PixelRect& frame) {
        settle();
        if (window.visibleFrame() == frame) {
            return testing::AssertionSuccess();
        }
        return testing::AssertionFailure() << "visible frame is " << test::describe(frameOf(window));
    }

    /// Everything that follows from what was done so far has happened.
    void settle() {
        for (int round = 0; round < 2; ++round) {
            adapters_.catchUp();
            manager_.barrier();
        }
        adapters_.catchUp();
    }

    /// Places a window by a placer of the test's own.
    void placeWithin(XWindowPlacer::SettlingTimes times, test::TestWindow& window, const PixelRect& frame) {
        placer_.emplace(*adapters_.connection, adapters_.pump, adapters_.layout, times, &loop_);
        const Point origin = adapters_.layout.value.accessibilityPointOfPixel(frame.x, frame.y);
        ASSERT_EQ(placer_->setPosition(window.id(), origin), 0);
        const Size size{static_cast<double>(frame.width), static_cast<double>(frame.height)};
        ASSERT_EQ(placer_->setSize(window.id(), size), 0);
    }

    /// The same by one that never gives up on it, and that looks at it again when the test lets that time
    /// pass.
    void placePatiently(test::TestWindow& window, const PixelRect& frame) {
        placeWithin({std::chrono::hours(1), std::chrono::hours(1), silence}, window, frame);
    }

    /// Lets the time pass after which a window is looked at that says nothing.
    void passSilence() { loop_.advance(std::chrono::duration<double>(silence).count()); }

    /// A panel comes at the right edge of the screen, and goes. Whatever follows from that has happened.
    void showPanelForAWhile() {
        test::TestWindowOptions options;
        options.type = "_NET_WM_WINDOW_TYPE_DOCK";
        options.geometry = {1240, 0, 40, 1024};
        options.strut = test::Strut{.right = 40, .rightStart = 0, .rightEnd = 1023};
        {
            const test::TestWindow panel(server_.displayName(), options);
            settle();
        }
        settle();
    }

    /// Asks for another place and size of the client, as its own program would.
    static void configure(test::TestWindow& window, const PixelRect& client) {
        const std::uint32_t values[] = {
            static_cast<std::uint32_t>(client.x), static_cast<std::uint32_t>(client.y),
            static_cast<std::uint32_t>(client.width), static_cast<std::uint32_t>(client.height)};
        xcb_configure_window(window.client().connection(), window.id(),
                             XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH |
                                 XCB_CONFIG_WINDOW_HEIGHT,
                             values);
        window.client().sync();
    }

    void maximize(test::TestWindow& window) {
        window.changeState(true, "_NET_WM_STATE_MAXIMIZED_VERT", "_NET_WM_STATE_MAXIMIZED_HORZ");
        window.client().sync();
        ASSERT_TRUE(window.client().waitFor([&] { return isMaximized(window.managed()); }));
    }

    static bool isMaximized(const ManagedWindow& window) {
        return window.hasState("_NET_WM_STATE_MAXIMIZED_VERT");
    }

    void pressTitleBarOf(const ManagedWindow& window) {
        mouse_.moveTo(window.titleBarPoint());
        mouse_.press();
    }

    /// Holds the window by its title bar when it returns, moved from where it was.
    void dragAway(const ManagedWindow& window) {
        const PixelRect before = frameOf(window);
        pressTitleBarOf(window);
        manager_.barrier();
        int step = 0;
        ASSERT_TRUE(adapters_.waitUntil([&] {
            ++step;
            mouse_.moveTo({700 + step % 50, 500});
            manager_.barrier();
            return window.visibleFrame() != before;
        }));
    }

    test::XServer server_;
    test::WindowManager manager_{server_, GetParam()};
    XInputAdapters adapters_{server_.displayName()};
    test::Pointer mouse_{server_.displayName()};
    SimulatedMainLoop loop_;
    std::optional<XWindowPlacer> placer_;
};

inline constexpr auto windowManagerName = [](const auto& info) { return test::nameOf(info.param); };

} // namespace tarvex::contract
