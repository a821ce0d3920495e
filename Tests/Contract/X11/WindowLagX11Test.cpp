#include "Tests/Contract/X11/WindowPlacementFixture.h"

#include <chrono>

namespace tarvex::contract {

namespace {

/// Window managers that are busy when the request comes.
class WindowLagX11 : public WindowPlacementTest {
protected:
    void awaitPassing(std::chrono::milliseconds time) {
        const auto start = std::chrono::steady_clock::now();
        ASSERT_TRUE(adapters_.waitUntil([&] { return std::chrono::steady_clock::now() - start > time; }));
    }
};

TEST_P(WindowLagX11, WindowIsNotDisturbedHoweverLongItTakes) {
    test::TestWindow window(server_.displayName());
    const PixelRect before = frameOf(window.managed());
    MessageWitness states(server_.displayName(), "_NET_WM_STATE");
    MessageWitness placements(server_.displayName(), "_NET_MOVERESIZE_WINDOW");
    manager_.pause();
    placePatiently(window, zone);
    for (int round = 0; round < 10; ++round) {
        adapters_.catchUp();
        passSilence();
    }
    EXPECT_EQ(frameOf(window.managed()), before);
    manager_.resume();
    EXPECT_TRUE(comesTo(window.managed(), zone));
    settle();
    passSilence();
    EXPECT_TRUE(staysAt(window.managed(), zone));
    EXPECT_TRUE(states.messages().empty());
    EXPECT_EQ(placements.messages().size(), 1U);
    EXPECT_TRUE(loop_.timerIntervals().empty());
}

TEST_P(WindowLagX11, WindowIsLookedAtOnceTheSilenceHasPassedSinceTheAnswer) {
    test::TestWindow window(server_.displayName());
    manager_.pause();
    placePatiently(window, zone);
    adapters_.catchUp();
    EXPECT_TRUE(loop_.timerIntervals().empty());
    manager_.resume();
    EXPECT_TRUE(adapters_.waitUntil([&] { return !loop_.timerIntervals().empty(); }));
    settle();
    EXPECT_EQ(loop_.timerIntervals().size(), 1U);
}

TEST_P(WindowLagX11, DragThatItComesToTogetherWithThePlacementEndsWithThat) {
    test::TestWindow window(server_.displayName());
    mouse_.moveTo(window.managed().titleBarPoint());
    manager_.pause();
    mouse_.press();
    mouse_.glideTo({500, 500}, 20);
    mouse_.release();
    placePatiently(window, zone);
    manager_.resume();
    ASSERT_TRUE(adapters_.waitUntil([&] { return !loop_.timerIntervals().empty(); }));
    settle();
    passSilence();
    EXPECT_TRUE(comesTo(window.managed(), zone));
    EXPECT_TRUE(staysAt(window.managed(), zone));
}

TEST_P(WindowLagX11, ManyPlacementsInTheMeantimeEndWithTheLast) {
    test::TestWindow window(server_.displayName());
    const AccessibilityElementRef handle = handleOf(window.managed());
    manager_.pause();
    for (int round = 0; round < 12; ++round) {
        ASSERT_EQ(adapters_.place(handle, round % 2 == 0 ? zone : otherZone), 0);
    }
    // The next press ends it.
    ASSERT_NE(handleOf(window.managed()), nullptr);
    manager_.resume();
    EXPECT_TRUE(comesTo(window.managed(), otherZone));
    settle();
    // It is still alive, and heard.
    placePatiently(window, zone);
    EXPECT_TRUE(comesTo(window.managed(), zone));
    EXPECT_TRUE(adapters_.waitUntil([&] { return !loop_.timerIntervals().empty(); }));
}

TEST_P(WindowLagX11, StateThatWasWantedEarlierIsTakenAwayHoweverLateItComes) {
    constexpr XWindowPlacer::SettlingTimes times{std::chrono::hours(1), std::chrono::milliseconds(60),
                                                 silence};
    test::TestWindow window(server_.displayName());
    manager_.pause();
    // What a window manager does that comes to handle the end of a drag to the edge only later.
    window.changeState(true, "_NET_WM_STATE_MAXIMIZED_VERT", "_NET_WM_STATE_MAXIMIZED_HORZ");
    window.client().sync();
    placeWithin(times, window, zone);
    awaitPassing(2 * times.state);
    manager_.resume();
    EXPECT_TRUE(comesTo(window.managed(), zone));
    EXPECT_TRUE(staysAt(window.managed(), zone));
    EXPECT_FALSE(isMaximized(window.managed()));
}

TEST_P(WindowLagX11, TimeForStatesBeginsWithTheAnswer) {
    constexpr XWindowPlacer::SettlingTimes times{std::chrono::hours(1), std::chrono::milliseconds(700),
                                                 silence};
    test::TestWindow window(server_.displayName());
    manager_.pause();
    placeWithin(times, window, zone);
    awaitPassing(times.state);
    manager_.resume();
    ASSERT_TRUE(adapters_.waitUntil([&] { return !loop_.timerIntervals().empty(); }));
    maximize(window);
    EXPECT_TRUE(adapters_.waitUntil([&] { return !isMaximized(window.managed()); }));
    EXPECT_TRUE(comesTo(window.managed(), zone));
}

TEST_P(WindowLagX11, WindowThatIsTakenAgainBeforeTheLookIsLeftAlone) {
    test::TestWindow window(server_.displayName());
    placePatiently(window, zone);
    ASSERT_TRUE(comesTo(window.managed(), zone));
    ASSERT_TRUE(adapters_.waitUntil([&] { return !loop_.timerIntervals().empty(); }));
    dragAway(window.managed());
    const PixelRect held = frameOf(window.managed());
    MessageWitness states(server_.displayName(), "_NET_WM_STATE");
    MessageWitness placements(server_.displayName(), "_NET_MOVERESIZE_WINDOW");
    passSilence();
    EXPECT_TRUE(staysAt(window.managed(), held));
    EXPECT_TRUE(states.messages().empty());
    EXPECT_TRUE(placements.messages().empty());
    mouse_.release();
}

INSTANTIATE_TEST_SUITE_P(Under, WindowLagX11,
                         ::testing::Values(WindowManagerKind::openbox, WindowManagerKind::xfwm4,
                                           WindowManagerKind::metacity, WindowManagerKind::kwin),
                         windowManagerName);

} // namespace

} // namespace tarvex::contract
