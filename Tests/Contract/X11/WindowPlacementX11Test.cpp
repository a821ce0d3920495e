#include "Tests/Contract/X11/InputAdapters.h"
#include "Tests/Support/X11/Pointer.h"
#include "Tests/Support/X11/RealApplication.h"
#include "Tests/Support/X11/TestWindow.h"
#include "Tests/Support/X11/WindowManager.h"
#include "Tests/Support/X11/XServer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <optional>
#include <string>
#include <vector>

namespace tarvex::contract {

namespace {

using test::ManagedWindow;
using test::PixelExtents;
using test::PixelPoint;
using test::PixelRect;
using test::WindowManagerKind;

constexpr PixelRect zone{640, 40, 400, 600};
constexpr PixelRect otherZone{20, 300, 610, 420};

class WindowPlacementX11 : public ::testing::TestWithParam<WindowManagerKind> {
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

    /// Places a window by a placer that never gives up on it.
    void placePatiently(test::TestWindow& window, const PixelRect& frame) {
        patientPlacer_.emplace(*adapters_.connection, adapters_.pump, adapters_.layout,
                               XWindowPlacer::SettlingTimes{std::chrono::hours(1), std::chrono::hours(1)});
        const Point origin = adapters_.layout.value.accessibilityPointOfPixel(frame.x, frame.y);
        ASSERT_EQ(patientPlacer_->setPosition(window.id(), origin), 0);
        const Size size{static_cast<double>(frame.width), static_cast<double>(frame.height)};
        ASSERT_EQ(patientPlacer_->setSize(window.id(), size), 0);
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
    std::optional<XWindowPlacer> patientPlacer_;
};

TEST_P(WindowPlacementX11, FrameIsThatOfTheWindowManagersOwnWindow) {
    test::TestWindow window(server_.displayName());
    ASSERT_NE(window.managed().frameExtents(), PixelExtents{});
    EXPECT_EQ(adapters_.frameOf(handleOf(window.managed())), window.managed().frameWindowGeometry());
}

TEST_P(WindowPlacementX11, PositionAndSizeAreOneMessage) {
    test::TestWindow window(server_.displayName());
    const AccessibilityElementRef handle = handleOf(window.managed());
    std::vector<xcb_client_message_event_t> messages;
    test::XClient witness(server_.displayName());
    witness.selectEvents(witness.root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    witness.setEventHandler([&](const xcb_generic_event_t& event) {
        const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
        if ((event.response_type & 0x7F) == XCB_CLIENT_MESSAGE &&
            message.type == witness.atom("_NET_MOVERESIZE_WINDOW")) {
            messages.push_back(message);
        }
    });
    ASSERT_EQ(adapters_.place(handle, zone), 0);
    EXPECT_TRUE(comesTo(window.managed(), zone));
    settle();
    witness.sync();
    witness.handleEvents();
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_EQ(messages[0].window, window.id());
    const PixelExtents extents = window.managed().frameExtents();
    const std::array<std::uint32_t, 5> expected{
        // NorthWest gravity, all four values given, on behalf of the user.
        1 | 0xF << 8 | 2 << 12, zone.x, zone.y,
        static_cast<std::uint32_t>(zone.width - extents.left - extents.right),
        static_cast<std::uint32_t>(zone.height - extents.top - extents.bottom)};
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), messages[0].data.data32));
}

TEST_P(WindowPlacementX11, WritesOfTwoWindowsDoNotMix) {
    test::TestWindow first(server_.displayName());
    test::TestWindowOptions options;
    options.geometry = {700, 600, 300, 200};
    test::TestWindow second(server_.displayName(), options);
    const AccessibilityElementRef firstHandle = handleOf(first.managed());
    const AccessibilityElementRef secondHandle = handleOf(second.managed());
    const PixelRect firstBefore = frameOf(first.managed());
    const PixelRect secondBefore = frameOf(second.managed());
    XAccessibilityPlatform& platform = adapters_.accessibility;
    ASSERT_EQ(platform.setAttributeValue(firstHandle, "AXPosition", Point{30, 40}), 0);
    ASSERT_EQ(platform.setAttributeValue(secondHandle, "AXSize", Size{450, 350}), 0);
    EXPECT_TRUE(comesTo(first.managed(), {30, 40, firstBefore.width, firstBefore.height}));
    EXPECT_TRUE(comesTo(second.managed(), {secondBefore.x, secondBefore.y, 450, 350}));
}

TEST_P(WindowPlacementX11, NeighbouringZonesTouchWhateverTheirFractions) {
    test::TestWindow left(server_.displayName());
    const AccessibilityElementRef leftHandle = handleOf(left.managed());
    test::TestWindow right(server_.displayName());
    const AccessibilityElementRef rightHandle = handleOf(right.managed());
    const auto placeExactly = [&](const AccessibilityElementRef& handle, const Rect& frame) {
        EXPECT_EQ(adapters_.accessibility.setAttributeValue(handle, "AXPosition", frame.origin()), 0);
        EXPECT_EQ(adapters_.accessibility.setAttributeValue(handle, "AXSize", frame.size()), 0);
    };
    constexpr double third = 1280.0 / 3;
    placeExactly(leftHandle, {0, 10.5, third, 500.25});
    placeExactly(rightHandle, {third, 10.5, third, 500.25});
    EXPECT_TRUE(comesTo(left.managed(), {0, 11, 427, 500}));
    EXPECT_TRUE(comesTo(right.managed(), {427, 11, 853 - 427, 500}));
}

TEST_P(WindowPlacementX11, InvisibleBordersAreLeftOut) {
    test::TestWindow window(server_.displayName());
    window.client().setWords(window.id(), "_GTK_FRAME_EXTENTS", "CARDINAL", {26, 25, 23, 29});
    window.client().sync();
    settle();
    const AccessibilityElementRef handle = handleOf(window.managed());
    EXPECT_EQ(adapters_.frameOf(handle), window.managed().visibleFrame());
    ASSERT_EQ(adapters_.place(handle, zone), 0);
    EXPECT_TRUE(comesTo(window.managed(), zone));
    EXPECT_EQ(adapters_.frameOf(handle), zone);
}

TEST_P(WindowPlacementX11, TerminalEndsWithinOneCharacterCellBelowTheZone) {
    test::TestWindowOptions options;
    options.sizeIncrement = Size{7, 13};
    options.geometry = {200, 200, 350, 260};
    test::TestWindow window(server_.displayName(), options);
    ASSERT_EQ(adapters_.place(handleOf(window.managed()), zone), 0);
    ASSERT_TRUE(adapters_.waitUntil([&] {
        const auto frame = window.managed().visibleFrame();
        return frame && frame->x == zone.x && frame->y == zone.y && frame->height > 400;
    }));
    settle();
    const PixelRect frame = frameOf(window.managed());
    EXPECT_LE(frame.width, zone.width);
    EXPECT_GT(frame.width, zone.width - 7);
    EXPECT_LE(frame.height, zone.height);
    EXPECT_GT(frame.height, zone.height - 13);
}

TEST_P(WindowPlacementX11, MinimumSizeStaysAtTheZonesOrigin) {
    test::TestWindowOptions options;
    options.minimumSize = Size{500, 400};
    options.geometry = {100, 100, 600, 500};
    test::TestWindow window(server_.displayName(), options);
    const PixelExtents extents = window.managed().frameExtents();
    ASSERT_EQ(adapters_.place(handleOf(window.managed()), {640, 40, 300, 200}), 0);
    EXPECT_TRUE(comesTo(window.managed(),
                        {640, 40, 500 + extents.left + extents.right, 400 + extents.top + extents.bottom}));
}

struct State {
    std::string name;
    std::string second;
};

TEST_P(WindowPlacementX11, WindowIsRestoredBeforeItIsPlaced) {
    const std::vector<State> states{{"_NET_WM_STATE_MAXIMIZED_VERT", "_NET_WM_STATE_MAXIMIZED_HORZ"},
                                    {"_NET_WM_STATE_MAXIMIZED_VERT", ""},
                                    {"_NET_WM_STATE_MAXIMIZED_HORZ", ""},
                                    {"_NET_WM_STATE_FULLSCREEN", ""},
                                    {"_NET_WM_STATE_SHADED", ""}};
    for (const State& state : states) {
        SCOPED_TRACE(state.name + " " + state.second);
        test::TestWindow window(server_.displayName());
        const AccessibilityElementRef handle = handleOf(window.managed());
        ASSERT_NE(handle, nullptr);
        window.changeState(true, state.name, state.second);
        ASSERT_TRUE(adapters_.waitUntil([&] { return window.managed().hasState(state.name); }));
        settle();
        ASSERT_EQ(adapters_.place(handle, zone), 0);
        EXPECT_TRUE(comesTo(window.managed(), zone));
        EXPECT_TRUE(staysAt(window.managed(), zone));
        EXPECT_EQ(window.managed().frameWindowGeometry(), zone);
        EXPECT_FALSE(window.managed().hasState(state.name));
    }
}

TEST_P(WindowPlacementX11, BordersThatComeBackAfterTheRestoreAreAllowedFor) {
    test::TestWindow window(server_.displayName());
    maximize(window);
    settle();
    placePatiently(window, zone);
    ASSERT_TRUE(comesTo(window.managed(), zone));
    // The program draws its shadow again now that it is no longer maximised.
    window.client().setWords(window.id(), "_GTK_FRAME_EXTENTS", "CARDINAL", {26, 26, 23, 29});
    window.client().sync();
    EXPECT_TRUE(comesTo(window.managed(), zone));
}

TEST_P(WindowPlacementX11, WindowThatIsMaximisedAtTheReleaseIsPlacedAllTheSame) {
    test::TestWindow window(server_.displayName());
    placePatiently(window, zone);
    // What a window manager does that comes to handle the end of a drag to the edge only now.
    maximize(window);
    EXPECT_TRUE(adapters_.waitUntil([&] { return !isMaximized(window.managed()); }));
    EXPECT_TRUE(comesTo(window.managed(), zone));
    EXPECT_TRUE(staysAt(window.managed(), zone));
}

TEST_P(WindowPlacementX11, WindowBelongsToTheUserFromTheNextPressOn) {
    test::TestWindow window(server_.displayName());
    const AccessibilityElementRef handle = handleOf(window.managed());
    ASSERT_EQ(adapters_.place(handle, zone), 0);
    ASSERT_TRUE(comesTo(window.managed(), zone));
    settle();
    ASSERT_NE(handleOf(window.managed()), nullptr);
    const std::optional<PixelRect> client = window.managed().clientGeometry();
    ASSERT_TRUE(client.has_value());
    window.client().setWords(window.id(), "_GTK_FRAME_EXTENTS", "CARDINAL", {26, 26, 23, 29});
    window.client().sync();
    settle();
    EXPECT_EQ(window.managed().clientGeometry(), client);
    maximize(window);
    settle();
    EXPECT_TRUE(isMaximized(window.managed()));
}

TEST_P(WindowPlacementX11, ReleaseOfTheDragIsFollowedByThePlacement) {
    test::TestWindow window(server_.displayName());
    const AccessibilityElementRef handle = handleOf(window.managed());
    for (int round = 0; round < 20; ++round) {
        const PixelRect& target = round % 2 == 0 ? zone : otherZone;
        // Slowly, and with all input in one burst.
        if (round % 4 < 2) {
            dragAway(window.managed());
        } else {
            pressTitleBarOf(window.managed());
        }
        mouse_.glideTo({500 + round, 500}, 20);
        mouse_.release();
        ASSERT_EQ(adapters_.place(handle, target), 0);
        ASSERT_TRUE(comesTo(window.managed(), target)) << round;
        ASSERT_TRUE(staysAt(window.managed(), target)) << round;
    }
}

TEST_P(WindowPlacementX11, WindowPutBackDuringItsDragStaysThere) {
    test::TestWindow window(server_.displayName());
    const AccessibilityElementRef handle = handleOf(window.managed());
    const PixelRect before = frameOf(window.managed());
    dragAway(window.managed());
    ASSERT_EQ(adapters_.place(handle, before), 0);
    ASSERT_TRUE(comesTo(window.managed(), before));
    mouse_.glideTo({820, 640}, 5);
    EXPECT_TRUE(staysAt(window.managed(), before));
    mouse_.release();
    EXPECT_TRUE(staysAt(window.managed(), before));
}

TEST_P(WindowPlacementX11, WindowPutBackDuringItsDragCanStillBePlaced) {
    test::TestWindow window(server_.displayName());
    const AccessibilityElementRef handle = handleOf(window.managed());
    const PixelRect before = frameOf(window.managed());
    dragAway(window.managed());
    ASSERT_EQ(adapters_.place(handle, before), 0);
    mouse_.glideTo({820, 640}, 5);
    mouse_.release();
    ASSERT_EQ(adapters_.place(handle, zone), 0);
    EXPECT_TRUE(comesTo(window.managed(), zone));
    EXPECT_TRUE(staysAt(window.managed(), zone));
}

TEST_P(WindowPlacementX11, DragToTheEdgeOfTheScreenIsFollowedByThePlacement) {
    // Window managers tile or maximise a window that is dragged there.
    for (const PixelPoint& edge : {PixelPoint{640, 0}, PixelPoint{0, 500}, PixelPoint{1279, 500}}) {
        SCOPED_TRACE(std::to_string(edge.x) + "," + std::to_string(edge.y));
        test::TestWindow window(server_.displayName());
        const AccessibilityElementRef handle = handleOf(window.managed());
        dragAway(window.managed());
        mouse_.glideTo(edge, 5);
        mouse_.release();
        ASSERT_EQ(adapters_.place(handle, zone), 0);
        EXPECT_TRUE(comesTo(window.managed(), zone));
        EXPECT_TRUE(staysAt(window.managed(), zone));
    }
}

TEST_P(WindowPlacementX11, WindowManagerMayRestart) {
    test::TestWindow window(server_.displayName());
    const AccessibilityElementRef handle = handleOf(window.managed());
    manager_.kill();
    ASSERT_EQ(adapters_.place(handle, zone), 0);
    EXPECT_TRUE(adapters_.waitUntil([&] { return window.managed().clientGeometry().has_value(); }));
    manager_.start();
    ASSERT_TRUE(adapters_.waitUntil([&] { return window.managed().isManagedAndViewable(); }));
    settle();
    ASSERT_EQ(adapters_.place(handle, otherZone), 0);
    EXPECT_TRUE(comesTo(window.managed(), otherZone));
}

TEST_P(WindowPlacementX11, FrozenProgramIsPlacedAtOnce) {
    test::RealApplication terminal(server_, test::RealApplication::xterm());
    const AccessibilityElementRef handle = handleOf(terminal.window());
    ASSERT_NE(handle, nullptr);
    terminal.process().signalGroup(SIGSTOP);
    ASSERT_EQ(adapters_.place(handle, zone), 0);
    EXPECT_TRUE(adapters_.waitUntil([&] {
        const auto frame = terminal.window().visibleFrame();
        return frame && frame->x == zone.x && frame->y == zone.y && frame->height > zone.height - 40 &&
               frame->height <= zone.height;
    }));
    EXPECT_EQ(adapters_.frameOf(handle), terminal.window().visibleFrame());
    terminal.process().signalGroup(SIGCONT);
}

TEST_P(WindowPlacementX11, WindowMayBeMaximisedLaterOn) {
    test::TestWindow window(server_.displayName());
    const AccessibilityElementRef handle = handleOf(window.managed());
    ASSERT_EQ(adapters_.place(handle, zone), 0);
    ASSERT_TRUE(comesTo(window.managed(), zone));
    settle();
    const auto ownEvents = [&] {
        const auto attributes =
            adapters_.connection->take(xcb_get_window_attributes_reply,
                                       xcb_get_window_attributes(adapters_.connection->get(), window.id()));
        return attributes ? attributes->your_event_mask : 0xFFFFFFFF;
    };
    EXPECT_EQ(ownEvents(), static_cast<std::uint32_t>(XCB_EVENT_MASK_PROPERTY_CHANGE));
    int changes = 0;
    EXPECT_TRUE(adapters_.waitUntil([&] {
        window.client().setText(window.id(), "WM_NAME", "STRING", std::to_string(++changes));
        return ownEvents() == 0;
    }));
    maximize(window);
    settle();
    EXPECT_TRUE(isMaximized(window.managed()));
}

INSTANTIATE_TEST_SUITE_P(Under, WindowPlacementX11,
                         ::testing::Values(WindowManagerKind::openbox, WindowManagerKind::xfwm4),
                         [](const auto& info) { return test::nameOf(info.param); });

} // namespace

} // namespace tarvex::contract
