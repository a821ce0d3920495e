#pragma once

#include "Tests/Contract/X11/InputAdapters.h"
#include "Tests/Support/X11/Pointer.h"
#include "Tests/Support/X11/TestWindow.h"
#include "Tests/Support/X11/WindowManager.h"
#include "Tests/Support/X11/XClient.h"
#include "Tests/Support/X11/XServer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarvex::contract {

using test::ManagedWindow;
using test::PixelExtents;
using test::PixelPoint;
using test::PixelRect;
using test::WindowManagerKind;

inline constexpr PixelRect zone{640, 40, 400, 600};
inline constexpr PixelRect otherZone{20, 300, 610, 420};

/// Counts the messages of one type that reach the window manager.
class MessageWitness {
public:
    MessageWitness(const std::string& displayName, std::string_view type)
        : client_(displayName), type_(client_.atom(type)) {
        client_.selectEvents(client_.root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
        client_.setEventHandler([this](const xcb_generic_event_t& event) {
            const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
            if ((event.response_type & 0x7F) == XCB_CLIENT_MESSAGE && message.type == type_) {
                messages_.push_back(message);
            }
        });
        client_.sync();
    }

    /// Those up to now.
    [[nodiscard]] const std::vector<xcb_client_message_event_t>& messages() {
        client_.sync();
        client_.handleEvents();
        return messages_;
    }

private:
    test::XClient client_;
    xcb_atom_t type_;
    std::vector<xcb_client_message_event_t> messages_;
};

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
        placer_.emplace(*adapters_.connection, adapters_.pump, adapters_.layout, times);
        const Point origin = adapters_.layout.value.accessibilityPointOfPixel(frame.x, frame.y);
        ASSERT_EQ(placer_->setPosition(window.id(), origin), 0);
        const Size size{static_cast<double>(frame.width), static_cast<double>(frame.height)};
        ASSERT_EQ(placer_->setSize(window.id(), size), 0);
    }

    /// The same by one that never gives up on it.
    void placePatiently(test::TestWindow& window, const PixelRect& frame) {
        placeWithin({std::chrono::hours(1), std::chrono::hours(1)}, window, frame);
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
    std::optional<XWindowPlacer> placer_;
};

inline constexpr auto windowManagerName = [](const auto& info) { return test::nameOf(info.param); };

} // namespace tarvex::contract
