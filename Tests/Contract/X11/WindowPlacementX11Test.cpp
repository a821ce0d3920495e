#include "Tests/Contract/X11/WindowPlacementFixture.h"
#include "Tests/Support/X11/RealApplication.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdint>
#include <string_view>
#include <vector>

namespace tarvex::contract {

namespace {

class WindowPlacementX11 : public WindowPlacementTest {
protected:
    /// Takes a message off the list of those that the window manager says it understands.
    void withdrawSupport(std::string_view message) {
        test::XClient client(server_.displayName());
        std::vector<std::uint32_t> supported = client.words(client.root(), "_NET_SUPPORTED");
        ASSERT_EQ(std::erase(supported, client.atom(message)), 1U);
        client.setWords(client.root(), "_NET_SUPPORTED", "ATOM", supported);
        client.sync();
    }
};

TEST_P(WindowPlacementX11, FrameIsThatOfTheWindowManagersOwnWindow) {
    test::TestWindow window(server_.displayName());
    ASSERT_NE(window.managed().frameExtents(), PixelExtents{});
    EXPECT_EQ(adapters_.frameOf(handleOf(window.managed())), window.managed().frameWindowGeometry());
}

TEST_P(WindowPlacementX11, PositionAndSizeAreOneMessage) {
    test::TestWindow window(server_.displayName());
    const AccessibilityElementRef handle = handleOf(window.managed());
    MessageWitness witness(server_.displayName(), "_NET_MOVERESIZE_WINDOW");
    ASSERT_EQ(adapters_.place(handle, zone), 0);
    EXPECT_TRUE(comesTo(window.managed(), zone));
    settle();
    const std::vector<xcb_client_message_event_t>& messages = witness.messages();
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

TEST_P(WindowPlacementX11, WindowManagerThatTakesNoPlacingMessagesIsAskedByTheWindowItself) {
    test::TestWindow window(server_.displayName());
    const AccessibilityElementRef handle = handleOf(window.managed());
    withdrawSupport("_NET_MOVERESIZE_WINDOW");
    MessageWitness witness(server_.displayName(), "_NET_MOVERESIZE_WINDOW");
    ASSERT_EQ(adapters_.place(handle, zone), 0);
    EXPECT_TRUE(comesTo(window.managed(), zone));
    EXPECT_TRUE(staysAt(window.managed(), zone));
    EXPECT_EQ(window.managed().frameWindowGeometry(), zone);
    EXPECT_TRUE(witness.messages().empty());
}

TEST_P(WindowPlacementX11, WindowManagerThatCallsOffNoMovesIsNotAskedTo) {
    MessageWitness witness(server_.displayName(), "_NET_WM_MOVERESIZE");
    test::TestWindow window(server_.displayName());
    const AccessibilityElementRef handle = handleOf(window.managed());
    mouse_.press();
    ASSERT_EQ(adapters_.place(handle, zone), 0);
    settle();
    EXPECT_EQ(witness.messages().size(), 1U);
    withdrawSupport("_NET_WM_MOVERESIZE");
    ASSERT_EQ(adapters_.place(handle, otherZone), 0);
    EXPECT_TRUE(comesTo(window.managed(), otherZone));
    EXPECT_EQ(witness.messages().size(), 1U);
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

INSTANTIATE_TEST_SUITE_P(Under, WindowPlacementX11,
                         ::testing::Values(WindowManagerKind::openbox, WindowManagerKind::xfwm4),
                         windowManagerName);

} // namespace

} // namespace tarvex::contract
