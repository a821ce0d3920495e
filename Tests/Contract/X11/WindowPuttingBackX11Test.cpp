#include "Tests/Contract/X11/WindowPlacementFixture.h"

#include <algorithm>
#include <string>
#include <vector>

namespace tarvex::contract {

namespace {

using States = std::vector<std::string>;

const std::vector<States> everyState{{"_NET_WM_STATE_MAXIMIZED_VERT", "_NET_WM_STATE_MAXIMIZED_HORZ"},
                                     {"_NET_WM_STATE_MAXIMIZED_VERT"},
                                     {"_NET_WM_STATE_MAXIMIZED_HORZ"},
                                     {"_NET_WM_STATE_FULLSCREEN"},
                                     {"_NET_WM_STATE_SHADED"}};

/// A window goes back to where somebody took hold of it.
class WindowPuttingBackX11 : public WindowPlacementTest {
protected:
    static bool hasExactly(const ManagedWindow& window, const States& wanted) {
        for (const States& states : everyState) {
            for (const std::string& state : states) {
                const bool isWanted = std::find(wanted.begin(), wanted.end(), state) != wanted.end();
                if (window.hasState(state) != isWanted) {
                    return false;
                }
            }
        }
        return true;
    }

    /// As the user does it some other time.
    void change(test::TestWindow& window, const States& states, bool isAdded) {
        ASSERT_NE(handleOf(window.managed()), nullptr);
        window.changeState(isAdded, states.front(), states.size() > 1 ? states.back() : "");
        window.client().sync();
        ASSERT_TRUE(
            adapters_.waitUntil([&] { return hasExactly(window.managed(), isAdded ? states : States{}); }));
        settle();
    }
};

TEST_P(WindowPuttingBackX11, FrameOfAShadedWindowIsWhatCanBeSeen) {
    test::TestWindow window(server_.displayName());
    const AccessibilityElementRef handle = handleOf(window.managed());
    const PixelRect unrolled = adapters_.frameOf(handle);
    change(window, {"_NET_WM_STATE_SHADED"}, true);
    const PixelRect rolledUp = adapters_.frameOf(handle);
    EXPECT_EQ(rolledUp, window.managed().frameWindowGeometry());
    EXPECT_EQ(rolledUp.width, unrolled.width);
    EXPECT_LT(rolledUp.height, 60);
    change(window, {"_NET_WM_STATE_SHADED"}, false);
    EXPECT_EQ(adapters_.frameOf(handle), unrolled);
}

TEST_P(WindowPuttingBackX11, WindowThatHasNotMovedKeepsItsStates) {
    for (const States& states : everyState) {
        SCOPED_TRACE(states.front());
        test::TestWindow window(server_.displayName());
        const PixelRect normal = frameOf(window.managed());
        change(window, states, true);
        const AccessibilityElementRef handle = handleOf(window.managed());
        const PixelRect before = adapters_.frameOf(handle);
        MessageWitness requests(server_.displayName(), "_NET_WM_STATE");
        MessageWitness placements(server_.displayName(), "_NET_MOVERESIZE_WINDOW");
        ASSERT_EQ(adapters_.place(handle, before), 0);
        settle();
        EXPECT_TRUE(requests.messages().empty());
        EXPECT_TRUE(placements.messages().empty());
        EXPECT_TRUE(hasExactly(window.managed(), states));
        EXPECT_EQ(adapters_.frameOf(handle), before);
        // It also remembers how large it was before.
        change(window, states, false);
        EXPECT_TRUE(comesTo(window.managed(), normal));
    }
}

TEST_P(WindowPuttingBackX11, StatesComeBackWithTheFrame) {
    for (const States& states : everyState) {
        SCOPED_TRACE(states.front());
        test::TestWindow window(server_.displayName());
        const PixelRect normal = frameOf(window.managed());
        change(window, states, true);
        const AccessibilityElementRef handle = handleOf(window.managed());
        const PixelRect before = adapters_.frameOf(handle);
        // What a window manager does with one that is dragged.
        change(window, states, false);
        ASSERT_TRUE(comesTo(window.managed(), normal));
        const AccessibilityElementRef another = handleOf(window.managed());
        const PixelRect dragged{700, 460, normal.width, normal.height};
        ASSERT_EQ(adapters_.place(another, dragged), 0);
        ASSERT_TRUE(comesTo(window.managed(), dragged));

        ASSERT_EQ(adapters_.place(handle, before), 0);
        EXPECT_TRUE(adapters_.waitUntil([&] { return hasExactly(window.managed(), states); }));
        settle();
        EXPECT_TRUE(hasExactly(window.managed(), states));
        EXPECT_EQ(adapters_.frameOf(handle), before);
        change(window, states, false);
        const PixelRect after = frameOf(window.managed());
        EXPECT_EQ(after.width, normal.width);
        EXPECT_EQ(after.height, normal.height);
    }
}

TEST_P(WindowPuttingBackX11, StatesThatItHadNotAreTakenAway) {
    test::TestWindow window(server_.displayName());
    change(window, {"_NET_WM_STATE_SHADED"}, true);
    const AccessibilityElementRef handle = handleOf(window.managed());
    const PixelRect before = adapters_.frameOf(handle);
    change(window, {"_NET_WM_STATE_SHADED"}, false);
    change(window, {"_NET_WM_STATE_MAXIMIZED_VERT", "_NET_WM_STATE_MAXIMIZED_HORZ"}, true);
    ASSERT_EQ(adapters_.place(handle, before), 0);
    EXPECT_TRUE(adapters_.waitUntil([&] { return hasExactly(window.managed(), {"_NET_WM_STATE_SHADED"}); }));
    settle();
    EXPECT_TRUE(hasExactly(window.managed(), {"_NET_WM_STATE_SHADED"}));
    EXPECT_EQ(adapters_.frameOf(handle), before);
}

TEST_P(WindowPuttingBackX11, StatesThatGoWhenTheRequestIsOutComeBack) {
    test::TestWindow window(server_.displayName());
    maximize(window);
    settle();
    const AccessibilityElementRef handle = handleOf(window.managed());
    const PixelRect before = adapters_.frameOf(handle);
    ASSERT_EQ(adapters_.place(handle, before), 0);
    // What a window manager does that comes to handle the motion of the drag only now.
    window.changeState(false, "_NET_WM_STATE_MAXIMIZED_VERT", "_NET_WM_STATE_MAXIMIZED_HORZ");
    window.client().sync();
    MessageWitness requests(server_.displayName(), "_NET_WM_STATE");
    EXPECT_TRUE(adapters_.waitUntil([&] { return !requests.messages().empty(); }));
    settle();
    EXPECT_TRUE(isMaximized(window.managed()));
    EXPECT_TRUE(comesTo(window.managed(), before));
}

TEST_P(WindowPuttingBackX11, ZoneIsNoPuttingBack) {
    test::TestWindow window(server_.displayName());
    maximize(window);
    settle();
    const AccessibilityElementRef handle = handleOf(window.managed());
    static_cast<void>(adapters_.frameOf(handle));
    ASSERT_EQ(adapters_.place(handle, zone), 0);
    EXPECT_TRUE(comesTo(window.managed(), zone));
    EXPECT_TRUE(staysAt(window.managed(), zone));
    EXPECT_TRUE(hasExactly(window.managed(), {}));
}

INSTANTIATE_TEST_SUITE_P(Under, WindowPuttingBackX11,
                         ::testing::Values(WindowManagerKind::openbox, WindowManagerKind::xfwm4),
                         windowManagerName);

} // namespace

} // namespace tarvex::contract
