#include "Tests/Contract/X11/WindowPlacementFixture.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tarvex::contract {

namespace {

/// Under a window manager that takes no messages to place windows, a window is placed as if it asked for that
/// itself; what a window asks for counts from the corner, the side or the middle that its gravity names.
class WindowGravityX11 : public WindowPlacementTest {
protected:
    void SetUp() override {
        test::XClient client(server_.displayName());
        std::vector<std::uint32_t> supported = client.words(client.root(), "_NET_SUPPORTED");
        ASSERT_EQ(std::erase(supported, client.atom("_NET_MOVERESIZE_WINDOW")), 1U);
        client.setWords(client.root(), "_NET_SUPPORTED", "ATOM", supported);
        client.sync();
    }

    static test::TestWindowOptions optionsOf(std::uint32_t gravity) {
        test::TestWindowOptions options;
        options.windowGravity = gravity;
        return options;
    }

    /// ICCCM leaves no doubt about the corners; about the middle of a side window managers disagree.
    static bool isOfACorner(std::uint32_t gravity) {
        return gravity == XCB_GRAVITY_NORTH_WEST || gravity == XCB_GRAVITY_NORTH_EAST ||
               gravity == XCB_GRAVITY_SOUTH_WEST || gravity == XCB_GRAVITY_SOUTH_EAST;
    }
};

TEST_P(WindowGravityX11, OfACornerOrNoneIsAllowedForAtOnce) {
    for (std::uint32_t gravity = XCB_GRAVITY_NORTH_WEST; gravity <= XCB_GRAVITY_STATIC; ++gravity) {
        if (!isOfACorner(gravity) && gravity != XCB_GRAVITY_STATIC) {
            continue;
        }
        SCOPED_TRACE("gravity " + std::to_string(gravity));
        test::TestWindow window(server_.displayName(), optionsOf(gravity));
        const AccessibilityElementRef handle = handleOf(window.managed());
        ASSERT_NE(window.managed().frameExtents(), PixelExtents{});
        MessageWitness witness(server_.displayName(), "_NET_MOVERESIZE_WINDOW");
        ASSERT_EQ(adapters_.place(handle, zone), 0);
        EXPECT_TRUE(comesTo(window.managed(), zone));
        EXPECT_TRUE(staysAt(window.managed(), zone));
        EXPECT_EQ(window.managed().frameWindowGeometry(), zone);
        ASSERT_EQ(adapters_.place(handle, otherZone), 0);
        EXPECT_TRUE(comesTo(window.managed(), otherZone));
        EXPECT_TRUE(witness.messages().empty());
    }
}

TEST_P(WindowGravityX11, OfAnyKindIsAllowedForWhenTheWindowWentAstray) {
    for (std::uint32_t gravity = XCB_GRAVITY_NORTH_WEST; gravity <= XCB_GRAVITY_STATIC; ++gravity) {
        SCOPED_TRACE("gravity " + std::to_string(gravity));
        test::TestWindow window(server_.displayName(), optionsOf(gravity));
        const AccessibilityElementRef handle = handleOf(window.managed());
        for (const PixelRect& target : {zone, otherZone}) {
            ASSERT_EQ(adapters_.place(handle, target), 0);
            ASSERT_TRUE(adapters_.waitUntil([&] { return frameOf(window.managed()).width == target.width; }));
            settle();
            ASSERT_EQ(adapters_.place(handle, target), 0);
            EXPECT_TRUE(comesTo(window.managed(), target));
            EXPECT_TRUE(staysAt(window.managed(), target));
        }
    }
}

TEST_P(WindowGravityX11, IsNotMadeUpForWhereSomebodyElsePutTheWindow) {
    test::TestWindow window(server_.displayName(), optionsOf(XCB_GRAVITY_NORTH_EAST));
    const AccessibilityElementRef handle = handleOf(window.managed());
    ASSERT_EQ(adapters_.place(handle, zone), 0);
    ASSERT_TRUE(comesTo(window.managed(), zone));
    dragAway(window.managed());
    mouse_.release();
    settle();
    ASSERT_EQ(adapters_.place(handle, zone), 0);
    EXPECT_TRUE(comesTo(window.managed(), zone));
    EXPECT_TRUE(staysAt(window.managed(), zone));
}

INSTANTIATE_TEST_SUITE_P(Under, WindowGravityX11,
                         ::testing::Values(WindowManagerKind::openbox, WindowManagerKind::xfwm4),
                         windowManagerName);

} // namespace

} // namespace tarvex::contract
