#include "Tests/Contract/X11/WindowPlacementFixture.h"

#include <string>

namespace tarvex::contract {

namespace {

class WindowDragPlacementX11 : public WindowPlacementTest {};

TEST_P(WindowDragPlacementX11, ReleaseOfTheDragIsFollowedByThePlacement) {
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

TEST_P(WindowDragPlacementX11, WindowPutBackDuringItsDragStaysThere) {
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

TEST_P(WindowDragPlacementX11, WindowPutBackDuringItsDragCanStillBePlaced) {
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

TEST_P(WindowDragPlacementX11, DragToTheEdgeOfTheScreenIsFollowedByThePlacement) {
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

TEST_P(WindowDragPlacementX11, WindowTakenOutOfATileIsNotPutBackIntoItLater) {
    // A window manager lays out its tiles anew when a panel comes or goes.
    for (const PixelPoint& edge : {PixelPoint{0, 500}, PixelPoint{1279, 1023}}) {
        for (const bool isHeld : {false, true}) {
            SCOPED_TRACE(std::to_string(edge.x) + (isHeld ? ", still held" : ", dropped"));
            test::TestWindow window(server_.displayName());
            const AccessibilityElementRef handle = handleOf(window.managed());
            const PixelRect before = adapters_.frameOf(handle);
            const PixelRect target = isHeld ? before : zone;
            dragAway(window.managed());
            mouse_.glideTo(edge, 5);
            manager_.barrier();
            if (isHeld) {
                ASSERT_EQ(adapters_.place(handle, target), 0);
                ASSERT_TRUE(comesTo(window.managed(), target));
                mouse_.release();
            } else {
                mouse_.release();
                ASSERT_EQ(adapters_.place(handle, target), 0);
                ASSERT_TRUE(comesTo(window.managed(), target));
            }
            settle();
            showPanelForAWhile();
            EXPECT_EQ(frameOf(window.managed()), target);
            EXPECT_FALSE(isMaximized(window.managed()));
        }
    }
}

TEST_P(WindowDragPlacementX11, DragThatKeepsTheSizeIsAnsweredByOneMessage) {
    test::TestWindow window(server_.displayName());
    const AccessibilityElementRef handle = handleOf(window.managed());
    ASSERT_EQ(adapters_.frameOf(handle), frameOf(window.managed()));
    dragAway(window.managed());
    mouse_.release();
    manager_.barrier();
    MessageWitness states(server_.displayName(), "_NET_WM_STATE");
    MessageWitness placements(server_.displayName(), "_NET_MOVERESIZE_WINDOW");
    ASSERT_EQ(adapters_.place(handle, zone), 0);
    EXPECT_TRUE(comesTo(window.managed(), zone));
    EXPECT_TRUE(staysAt(window.managed(), zone));
    EXPECT_TRUE(states.messages().empty());
    EXPECT_EQ(placements.messages().size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Under, WindowDragPlacementX11,
                         ::testing::Values(WindowManagerKind::openbox, WindowManagerKind::xfwm4),
                         windowManagerName);

} // namespace

} // namespace tarvex::contract
