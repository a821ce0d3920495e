#include "Tests/Contract/X11/WindowPlacementFixture.h"

#include <cstdint>
#include <vector>

namespace tarvex::contract {

namespace {

using Hints = std::vector<std::uint32_t>;

/// WM_NORMAL_HINTS with those flags, and pairs of words from an index on.
Hints hintsOf(std::uint32_t flags, std::size_t index, const Hints& words) {
    constexpr std::size_t length = 18;
    constexpr std::uint32_t placeAndSizeByUser = 3;
    Hints hints(length, 0);
    hints[0] = flags | placeAndSizeByUser;
    std::copy(words.begin(), words.end(), hints.begin() + static_cast<std::ptrdiff_t>(index));
    return hints;
}

/// Windows that do not take the size of the zone.
class WindowRefusalX11 : public WindowPlacementTest {
protected:
    static void setHints(test::TestWindow& window, const Hints& hints) {
        window.client().setWords(window.id(), "WM_NORMAL_HINTS", "WM_SIZE_HINTS", hints);
        window.client().sync();
    }

    /// All that may follow has followed, also from the silence.
    void settleForGood() {
        settle();
        passSilence();
        settle();
    }

    MessageWitness states_{server_.displayName(), "_NET_WM_STATE"};
    MessageWitness placements_{server_.displayName(), "_NET_MOVERESIZE_WINDOW"};
};

TEST_P(WindowRefusalX11, SizeThatTheProgramItselfChoosesIsLeftToIt) {
    // Smaller, as a player that keeps the ratio of its picture, and larger, as a program that says nothing of
    // its smallest size; the second time in place already.
    for (const int width : {300, 520}) {
        test::TestWindow window(server_.displayName());
        for (int round = 0; round < 2; ++round) {
            SCOPED_TRACE(std::to_string(width) + ", round " + std::to_string(round));
            const std::size_t placementsBefore = placements_.messages().size();
            placePatiently(window, zone);
            ASSERT_TRUE(comesTo(window.managed(), zone));
            const std::uint32_t size[] = {static_cast<std::uint32_t>(width), 200};
            xcb_configure_window(window.client().connection(), window.id(),
                                 XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, size);
            window.client().sync();
            settleForGood();
            const PixelRect client = window.managed().clientGeometry().value_or(PixelRect{});
            EXPECT_EQ(client.width, width);
            EXPECT_EQ(client.height, 200);
            EXPECT_EQ(frameOf(window.managed()).x, zone.x);
            EXPECT_EQ(frameOf(window.managed()).y, zone.y);
            EXPECT_EQ(placements_.messages().size(), placementsBefore + 1);
        }
    }
    EXPECT_TRUE(states_.messages().empty());
}

TEST_P(WindowRefusalX11, BaseSizeIsTheSmallestWhereNoneIsGiven) {
    constexpr std::uint32_t hasBaseSize = 1U << 8;
    test::TestWindowOptions options;
    options.geometry = {100, 100, 520, 440};
    test::TestWindow window(server_.displayName(), options);
    setHints(window, hintsOf(hasBaseSize, 15, {500, 420}));
    settle();
    placePatiently(window, {640, 40, 300, 200});
    const PixelExtents extents = window.managed().frameExtents();
    const PixelRect expected{640, 40, 500 + extents.left + extents.right, 420 + extents.top + extents.bottom};
    EXPECT_TRUE(comesTo(window.managed(), expected));
    settleForGood();
    EXPECT_EQ(frameOf(window.managed()), expected);
    EXPECT_TRUE(states_.messages().empty());
    EXPECT_EQ(placements_.messages().size(), 1U);
}

TEST_P(WindowRefusalX11, WindowMadeLargerByHandIsNotFreedFromATile) {
    test::TestWindow window(server_.displayName());
    const AccessibilityElementRef handle = handleOf(window.managed());
    static_cast<void>(adapters_.frameOf(handle));
    PixelRect client = window.managed().clientGeometry().value_or(PixelRect{});
    const int before = frameOf(window.managed()).height;
    client.height += 90;
    configure(window, client);
    ASSERT_TRUE(adapters_.waitUntil([&] { return frameOf(window.managed()).height == before + 90; }));
    ASSERT_EQ(adapters_.place(handle, zone), 0);
    EXPECT_TRUE(comesTo(window.managed(), zone));
    EXPECT_TRUE(staysAt(window.managed(), zone));
    EXPECT_TRUE(states_.messages().empty());
    EXPECT_EQ(placements_.messages().size(), 1U);
}

TEST_P(WindowRefusalX11, ZoneTooNarrowForTheWindowManagerIsNoTile) {
    test::TestWindow window(server_.displayName());
    const PixelRect before = frameOf(window.managed());
    placePatiently(window, {8, 35, 14, 600});
    EXPECT_TRUE(adapters_.waitUntil([&] { return frameOf(window.managed()).width < before.width; }));
    settleForGood();
    EXPECT_TRUE(states_.messages().empty());
    EXPECT_EQ(frameOf(window.managed()).y, 35);
}

TEST_P(WindowRefusalX11, WindowOfAFixedRatioIsAsLargeAsItCanBeWithinTheZone) {
    constexpr std::uint32_t hasRatio = 1U << 7;
    for (const PixelRect& place : {zone, PixelRect{600, 40, 600, 300}}) {
        test::TestWindow window(server_.displayName());
        setHints(window, hintsOf(hasRatio, 11, {4, 3, 4, 3}));
        settle();
        const PixelRect before = frameOf(window.managed());
        placePatiently(window, place);
        ASSERT_TRUE(adapters_.waitUntil([&] { return frameOf(window.managed()) != before; }));
        settleForGood();
        const PixelRect frame = frameOf(window.managed());
        const PixelRect client = window.managed().clientGeometry().value_or(PixelRect{});
        SCOPED_TRACE(test::describe(frame));
        EXPECT_EQ(frame.x, place.x);
        EXPECT_EQ(frame.y, place.y);
        EXPECT_LE(frame.width, place.width);
        EXPECT_LE(frame.height, place.height);
        // One more pixel would be too much for the zone or for the ratio.
        EXPECT_NEAR(client.width * 3.0, client.height * 4.0, 4.0);
        EXPECT_TRUE(frame.width >= place.width - 2 || frame.height >= place.height - 2);
    }
    EXPECT_TRUE(states_.messages().empty());
}

INSTANTIATE_TEST_SUITE_P(Under, WindowRefusalX11,
                         ::testing::Values(WindowManagerKind::openbox, WindowManagerKind::xfwm4,
                                           WindowManagerKind::metacity, WindowManagerKind::kwin),
                         windowManagerName);

/// A window manager that takes the place in a request for that of the client, and keeps most windows in tiles
/// of its own.
class WindowUnderTilingManagerX11 : public WindowRefusalX11 {};

TEST_P(WindowUnderTilingManagerX11, FloatingWindowLandsWithItsFrame) {
    test::TestWindowOptions dialog;
    dialog.type = "_NET_WM_WINDOW_TYPE_DIALOG";
    test::TestWindow window(server_.displayName(), dialog);
    // It says nothing of the borders that it draws.
    const auto frame = [&] { return window.managed().frameWindowGeometry(); };
    ASSERT_NE(frame(), window.managed().clientGeometry());
    placePatiently(window, zone);
    EXPECT_TRUE(adapters_.waitUntil([&] { return frame() == zone; }));
    settleForGood();
    EXPECT_EQ(frame(), zone);
    EXPECT_EQ(placements_.messages().size(), 2U);
    EXPECT_TRUE(states_.messages().empty());
    // Neither further requests nor looks.
    passSilence();
    settle();
    EXPECT_EQ(placements_.messages().size(), 2U);
    EXPECT_TRUE(loop_.timerIntervals().empty());
}

TEST_P(WindowUnderTilingManagerX11, WindowThatIsKeptInItsTileIsFreedOnceOnly) {
    test::TestWindow window(server_.displayName());
    const PixelRect tile = frameOf(window.managed());
    placePatiently(window, zone);
    settle();
    EXPECT_TRUE(states_.messages().empty());
    settleForGood();
    settleForGood();
    EXPECT_EQ(states_.messages().size(), 2U);
    EXPECT_EQ(placements_.messages().size(), 2U);
    EXPECT_EQ(frameOf(window.managed()), tile);
}

INSTANTIATE_TEST_SUITE_P(Under, WindowUnderTilingManagerX11, ::testing::Values(WindowManagerKind::i3),
                         windowManagerName);

} // namespace

} // namespace tarvex::contract
