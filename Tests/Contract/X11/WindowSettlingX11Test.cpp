#include "Tests/Contract/X11/WindowPlacementFixture.h"

#include <chrono>
#include <cstdint>
#include <list>
#include <optional>
#include <string>
#include <vector>

namespace tarvex::contract {

namespace {

constexpr std::uint32_t changes = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;

class WindowSettlingX11 : public WindowPlacementTest {
protected:
    /// The events of a window that the adapter listens to.
    std::uint32_t eventsSelectedOn(const test::TestWindow& window) {
        const auto attributes =
            adapters_.connection->take(xcb_get_window_attributes_reply,
                                       xcb_get_window_attributes(adapters_.connection->get(), window.id()));
        return attributes ? attributes->your_event_mask : 0xFFFFFFFF;
    }

    /// The left half of the screen.
    static constexpr PixelRect tile{0, 0, 640, 1024};

    /// Fills the tile with the window, as a window manager would.
    static void fillTile(test::TestWindow& window) {
        const PixelExtents extents = window.managed().frameExtents();
        configure(window, {tile.x, tile.y, tile.width - extents.left - extents.right,
                           tile.height - extents.top - extents.bottom});
    }

    /// Places the window in the zone, from where it comes into the tile once, and back.
    void freeFromTile(test::TestWindow& window) {
        placePatiently(window, zone);
        ASSERT_TRUE(comesTo(window.managed(), zone));
        fillTile(window);
        ASSERT_TRUE(comesTo(window.managed(), zone));
        settle();
    }

    /// Returns when that much time has passed since the call, and so since whatever was before it.
    void awaitPassing(std::chrono::milliseconds time) {
        const auto start = std::chrono::steady_clock::now();
        ASSERT_TRUE(adapters_.waitUntil([&] { return std::chrono::steady_clock::now() - start > time; }));
    }
};

struct State {
    std::string name;
    std::string second;
};

TEST_P(WindowSettlingX11, WindowIsRestoredBeforeItIsPlaced) {
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

TEST_P(WindowSettlingX11, BordersThatComeBackAfterTheRestoreAreAllowedFor) {
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

TEST_P(WindowSettlingX11, WindowThatIsMaximisedAtTheReleaseIsPlacedAllTheSame) {
    test::TestWindow window(server_.displayName());
    placePatiently(window, zone);
    // What a window manager does that comes to handle the end of a drag to the edge only now.
    maximize(window);
    EXPECT_TRUE(adapters_.waitUntil([&] { return !isMaximized(window.managed()); }));
    EXPECT_TRUE(comesTo(window.managed(), zone));
    EXPECT_TRUE(staysAt(window.managed(), zone));
}

TEST_P(WindowSettlingX11, WindowBelongsToTheUserFromTheNextPressOn) {
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

TEST_P(WindowSettlingX11, WindowMayBeMaximisedLaterOn) {
    for (const std::vector<PixelRect>& placements :
         {std::vector{zone}, std::vector{zone, otherZone}, std::vector{zone, otherZone, zone}}) {
        SCOPED_TRACE(placements.size());
        test::TestWindow window(server_.displayName());
        const AccessibilityElementRef handle = handleOf(window.managed());
        for (const PixelRect& placement : placements) {
            ASSERT_EQ(adapters_.place(handle, placement), 0);
            ASSERT_TRUE(comesTo(window.managed(), placement));
            settle();
            EXPECT_EQ(eventsSelectedOn(window), changes);
        }
        int changes = 0;
        EXPECT_TRUE(adapters_.waitUntil([&] {
            window.client().setText(window.id(), "WM_NAME", "STRING", std::to_string(++changes));
            return eventsSelectedOn(window) == 0;
        }));
        maximize(window);
        settle();
        EXPECT_TRUE(isMaximized(window.managed()));
    }
}

TEST_P(WindowSettlingX11, PlacementsInQuickSuccessionLeaveNothingSelected) {
    test::TestWindow window(server_.displayName());
    const AccessibilityElementRef handle = handleOf(window.managed());
    ASSERT_EQ(adapters_.place(handle, zone), 0);
    ASSERT_EQ(adapters_.place(handle, otherZone), 0);
    ASSERT_TRUE(comesTo(window.managed(), otherZone));
    EXPECT_EQ(eventsSelectedOn(window), changes);
    // The next press makes it the user's.
    ASSERT_NE(handleOf(window.managed()), nullptr);
    EXPECT_EQ(eventsSelectedOn(window), 0U);
}

TEST_P(WindowSettlingX11, BordersThatChangeTooLateAreLeftAlone) {
    constexpr XWindowPlacer::SettlingTimes times{std::chrono::milliseconds(60), std::chrono::milliseconds(30),
                                                 silence};
    test::TestWindow window(server_.displayName());
    placeWithin(times, window, zone);
    ASSERT_TRUE(comesTo(window.managed(), zone));
    settle();
    awaitPassing(times.borders);
    const std::optional<PixelRect> client = window.managed().clientGeometry();
    ASSERT_TRUE(client.has_value());
    window.client().setWords(window.id(), "_GTK_FRAME_EXTENTS", "CARDINAL", {26, 26, 23, 29});
    window.client().sync();
    settle();
    EXPECT_EQ(window.managed().clientGeometry(), client);
    EXPECT_EQ(eventsSelectedOn(window), 0U);
}

TEST_P(WindowSettlingX11, StatesThatComeTooLateAreLeftAlone) {
    constexpr XWindowPlacer::SettlingTimes times{std::chrono::hours(1), std::chrono::milliseconds(60),
                                                 silence};
    for (const State& state :
         {State{"_NET_WM_STATE_MAXIMIZED_VERT", "_NET_WM_STATE_MAXIMIZED_HORZ"},
          State{"_NET_WM_STATE_MAXIMIZED_VERT", ""}, State{"_NET_WM_STATE_FULLSCREEN", ""}}) {
        SCOPED_TRACE(state.name + " " + state.second);
        test::TestWindow window(server_.displayName());
        placeWithin(times, window, zone);
        ASSERT_TRUE(comesTo(window.managed(), zone));
        settle();
        awaitPassing(times.state);
        MessageWitness witness(server_.displayName(), "_NET_MOVERESIZE_WINDOW");
        window.changeState(true, state.name, state.second);
        ASSERT_TRUE(adapters_.waitUntil([&] { return window.managed().hasState(state.name); }));
        // A program often draws its borders in another way then.
        window.client().setWords(window.id(), "_GTK_FRAME_EXTENTS", "CARDINAL", {1, 1, 1, 1});
        window.client().sync();
        settle();
        EXPECT_TRUE(window.managed().hasState(state.name));
        EXPECT_TRUE(witness.messages().empty());
    }
}

TEST_P(WindowSettlingX11, WindowThatIsTiledAtTheReleaseIsPlacedAllTheSame) {
    test::TestWindow window(server_.displayName());
    placePatiently(window, zone);
    ASSERT_TRUE(comesTo(window.managed(), zone));
    MessageWitness states(server_.displayName(), "_NET_WM_STATE");
    // What a window manager does that comes to handle the end of a drag to the edge only now, and whose tiles
    // show in no state.
    fillTile(window);
    EXPECT_TRUE(adapters_.waitUntil([&] { return states.messages().size() >= 2; }));
    EXPECT_TRUE(comesTo(window.managed(), zone));
    EXPECT_TRUE(staysAt(window.managed(), zone));
    EXPECT_FALSE(isMaximized(window.managed()));
}

TEST_P(WindowSettlingX11, WindowThatIsElsewhereAfterTheSilenceIsPlacedOnceMore) {
    test::TestWindow window(server_.displayName());
    MessageWitness states(server_.displayName(), "_NET_WM_STATE");
    placePatiently(window, zone);
    ASSERT_TRUE(comesTo(window.managed(), zone));
    settle();
    // Elsewhere, but of the same size, which is no sign of a tile.
    PixelRect client = window.managed().clientGeometry().value_or(PixelRect{});
    client.x = 50;
    client.y = 350;
    configure(window, client);
    settle();
    EXPECT_TRUE(states.messages().empty());
    ASSERT_NE(window.managed().visibleFrame(), zone);
    passSilence();
    EXPECT_TRUE(comesTo(window.managed(), zone));
    EXPECT_TRUE(staysAt(window.managed(), zone));
    EXPECT_TRUE(states.messages().empty());
    EXPECT_TRUE(loop_.timerIntervals().empty());
}

TEST_P(WindowSettlingX11, WindowIsFreedOnceOnly) {
    test::TestWindow window(server_.displayName());
    freeFromTile(window);
    const PixelRect kept{10, 20, 700, 500};
    configure(window, kept);
    settle();
    passSilence();
    settle();
    EXPECT_NE(window.managed().visibleFrame(), zone);
}

TEST_P(WindowSettlingX11, WindowThatIsTiledAgainIsLeftThere) {
    test::TestWindow window(server_.displayName());
    freeFromTile(window);
    fillTile(window);
    settle();
    passSilence();
    EXPECT_TRUE(staysAt(window.managed(), tile));
}

TEST_P(WindowSettlingX11, SizeThatTheWindowItselfExplainsIsLeftAsItIs) {
    test::TestWindowOptions terminal;
    terminal.sizeIncrement = Size{7, 13};
    test::TestWindowOptions wide;
    wide.minimumSize = Size{500, 400};
    wide.geometry = {100, 100, 600, 500};
    test::TestWindowOptions small;
    small.maximumSize = Size{350, 280};
    small.geometry = {100, 100, 300, 200};
    std::list<test::TestWindow> windows;
    for (const test::TestWindowOptions& options : {terminal, wide, small}) {
        test::TestWindow& window = windows.emplace_back(server_.displayName(), options);
        const PixelRect before = frameOf(window.managed());
        MessageWitness states(server_.displayName(), "_NET_WM_STATE");
        placePatiently(window, zone);
        ASSERT_TRUE(adapters_.waitUntil([&] { return frameOf(window.managed()) != before; }))
            << test::describe(before);
        settle();
        passSilence();
        settle();
        EXPECT_TRUE(states.messages().empty());
        EXPECT_EQ(frameOf(window.managed()).x, zone.x);
        EXPECT_EQ(frameOf(window.managed()).y, zone.y);
    }
}

INSTANTIATE_TEST_SUITE_P(Under, WindowSettlingX11,
                         ::testing::Values(WindowManagerKind::openbox, WindowManagerKind::xfwm4),
                         windowManagerName);

} // namespace

} // namespace tarvex::contract
