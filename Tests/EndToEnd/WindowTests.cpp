#include "Tests/EndToEnd/DesktopTest.h"
#include "Tests/Support/X11/RealApplication.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <string>

namespace tarvex::test {
namespace {

/// A point inside the part of a window that is on the screen.
PixelPoint centerOf(const PixelRect& screen, const PixelRect& frame) {
    const int left = std::max(frame.x, screen.x);
    const int right = std::min(frame.x + frame.width, screen.x + screen.width);
    return {left + (right - left) / 2, frame.y + frame.height / 2};
}

/// Makes a window as high as the ratio of a picture wants it after each change of its size, as players of
/// films do that give no hints. It does so while somebody looks.
class PictureKeeper {
public:
    PictureKeeper(const std::string& displayName, xcb_window_t window) : client_{displayName} {
        client_.selectEvents(window, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
        client_.setEventHandler([this, window](const xcb_generic_event_t& event) {
            const auto& change = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
            if ((event.response_type & 0x7F) != XCB_CONFIGURE_NOTIFY || change.window != window) {
                return;
            }
            widest_ = std::max<int>(widest_, change.width);
            const std::uint32_t height = heightFor(change.width);
            if (change.height != height) {
                xcb_configure_window(client_.connection(), window, XCB_CONFIG_WINDOW_HEIGHT, &height);
                xcb_flush(client_.connection());
            }
        });
        client_.sync();
    }

    static std::uint32_t heightFor(int width) { return static_cast<std::uint32_t>(width * 9 / 16); }

    /// How wide the window has been at the most.
    int widest() {
        client_.sync();
        client_.handleEvents();
        return widest_;
    }

private:
    XClient client_;
    int widest_ = 0;
};

// Windows that are not plain ones.
class Windows : public DesktopTest {};

INSTANTIATE_TEST_SUITE_P(Sessions, Windows, manySessions(), sessionName);

TEST_P(Windows, ATerminalEndsWithinOneCharacterCellBelowItsZone) {
    Desktop& desktop = start();
    RealApplication terminal(desktop.server, RealApplication::xterm());
    const std::vector<std::uint32_t> hints = desktop.client.words(terminal.window().id(), "WM_NORMAL_HINTS");
    ASSERT_GE(hints.size(), 11U);
    const int cellWidth = static_cast<int>(hints[9]);
    const int cellHeight = static_cast<int>(hints[10]);
    ASSERT_GT(cellWidth, 1);
    ASSERT_GT(cellHeight, 1);
    const PixelRect area = desktop.screenArea();
    const PixelRect zone = zoneFrame(area, rightHalf);
    const auto fits = [&] {
        const PixelRect frame = terminal.window().visibleFrame().value_or(PixelRect{});
        return frame.x == zone.x && frame.y == zone.y && frame.width <= zone.width &&
               frame.width > zone.width - cellWidth && frame.height <= zone.height &&
               frame.height > zone.height - cellHeight;
    };
    Drag drag(desktop, terminal.window());
    drag.pressToMatch(key::super);
    drag.moveTo(pointIn(area, rightHalf));
    drag.drop();
    EXPECT_TRUE(desktop.client.waitFor(fits));
    drag.releaseKeys();
    desktop.settle();
    EXPECT_TRUE(fits()) << describe(terminal.window().visibleFrame().value_or(PixelRect{}));
}

TEST_P(Windows, OneThatDrawsItsOwnFrameLandsWithItsVisiblePartOnTheZone) {
    Desktop& desktop = start();
    RealApplication application(desktop.server, {TARVEX_HEADER_BAR_WINDOW});
    const bool hasShadow = GetParam().windowManager != WindowManagerKind::openbox && GetParam().isComposited;
    desktop.client.waitUntil(
        [&] { return (application.window().invisibleExtents() != PixelExtents{}) == hasShadow; },
        "the window has the invisible borders that such a session brings");
    ASSERT_EQ(application.window().frameExtents(), PixelExtents{});
    snapAndExpect(desktop, application.window(), rightHalf);
    snapAndExpect(desktop, application.window(), leftHalf);
}

TEST_P(Windows, AMaximisedOneIsRestoredIntoTheZone) {
    Desktop& desktop = start();
    TestWindowOptions options;
    options.states = {"_NET_WM_STATE_MAXIMIZED_VERT", "_NET_WM_STATE_MAXIMIZED_HORZ"};
    TestWindow window(desktop.server.displayName(), options);
    const PixelRect area = desktop.screenArea();
    ASSERT_EQ(window.managed().visibleFrame(), area);
    // One of the window managers moves a maximised window only once it is restored.
    const auto begin = GetParam().windowManager == WindowManagerKind::xfwm4 ? Drag::Begin::followed
                                                                            : Drag::Begin::unfollowed;
    {
        Drag drag(desktop, window.managed(), begin);
        drag.pressToMatch(key::super);
        drag.moveTo(pointIn(area, rightHalf));
        drag.drop();
        desktop.expectFrame(window.managed(), zoneFrame(area, rightHalf));
        drag.releaseKeys();
    }
    // A maximised window leaves no bare desktop, so it is there only now.
    desktop.expectFrameUnchanged(window.managed(), zoneFrame(area, rightHalf));
    EXPECT_FALSE(window.managed().hasState("_NET_WM_STATE_MAXIMIZED_VERT"));
    EXPECT_FALSE(window.managed().hasState("_NET_WM_STATE_MAXIMIZED_HORZ"));
}

TEST_P(Windows, OneMaximisedVerticallyIsRestoredIntoTheZone) {
    Desktop& desktop = start();
    TestWindow window(desktop.server.displayName());
    window.changeState(true, "_NET_WM_STATE_MAXIMIZED_VERT");
    desktop.client.waitUntil([&] { return window.managed().hasState("_NET_WM_STATE_MAXIMIZED_VERT"); },
                             "the window is maximised vertically");
    snapAndExpect(desktop, window.managed(), rightHalf);
    EXPECT_FALSE(window.managed().hasState("_NET_WM_STATE_MAXIMIZED_VERT"));
}

TEST_P(Windows, AShadedOneIsUnrolledIntoTheZone) {
    Desktop& desktop = start();
    TestWindow window(desktop.server.displayName());
    window.changeState(true, "_NET_WM_STATE_SHADED");
    desktop.client.waitUntil([&] { return window.managed().hasState("_NET_WM_STATE_SHADED"); },
                             "the window is shaded");
    snapAndExpect(desktop, window.managed(), rightHalf);
    EXPECT_FALSE(window.managed().hasState("_NET_WM_STATE_SHADED"));
}

TEST_P(Windows, OneDraggedToAnEdgeOfTheScreenIsTakenOverByTheZone) {
    const bool tiles = GetParam().windowManager == WindowManagerKind::xfwm4;
    Desktop& desktop = start();
    const PixelRect area = desktop.screenArea();

    struct Edge {
        PixelPoint point;
        PixelRect tile;
        ZoneSpan zone;
    };

    for (const Edge& edge :
         {Edge{{0, 500}, {0, 0, 640, 1024}, leftHalf}, Edge{{1279, 500}, {640, 0, 640, 1024}, rightHalf},
          Edge{{900, 0}, area, rightHalf}, Edge{{1279, 1023}, {640, 512, 640, 512}, rightHalf}}) {
        SCOPED_TRACE(describe(edge.tile));
        TestWindow window(desktop.server.displayName());
        const PixelRect before = window.managed().requireVisibleFrame();
        Drag drag(desktop, window.managed());
        drag.pressToMatch(key::super);
        drag.moveTo(edge.point);
        desktop.windowManager->barrier();
        if (tiles) {
            // Such a window manager tiles or maximises it there while the button is still down.
            desktop.expectFrame(window.managed(), edge.tile);
        } else {
            // Others let it hang over the edge, some until the drop.
            const PixelRect dragged = window.managed().requireVisibleFrame();
            EXPECT_EQ(dragged.width, before.width);
            EXPECT_EQ(dragged.height, before.height);
        }
        drag.dropAndExpect(zoneFrame(area, edge.zone));
        EXPECT_FALSE(window.managed().hasState("_NET_WM_STATE_MAXIMIZED_VERT"));
    }
}

TEST_P(Windows, OneThatWasTiledEarlierGoesToItsZone) {
    Desktop& desktop = start();
    const PixelRect area = desktop.screenArea();
    TestWindow window(desktop.server.displayName());
    {
        Drag drag(desktop, window.managed());
        drag.moveTo({0, 500});
        desktop.windowManager->barrier();
        drag.drop();
    }
    if (GetParam().windowManager != WindowManagerKind::openbox) {
        desktop.expectFrame(window.managed(), {0, 0, 640, 1024});
    }
    desktop.windowManager->barrier();
    // By its inside, so that no window manager drags it out of its tile.
    const PixelRect zone = zoneFrame(area, rightHalf);
    desktop.pointer.moveTo(centerOf(area, window.managed().requireVisibleFrame()));
    desktop.pointer.press();
    const int shown = desktop.tarvex.countInLog("updateOverlayState match");
    desktop.keyboard.press(key::super);
    desktop.awaitLog("updateOverlayState match", shown + 1);
    desktop.pointer.glideTo(pointIn(area, rightHalf));
    desktop.pointer.release();
    desktop.expectFrame(window.managed(), zone);
    desktop.keyboard.release(key::super);
    desktop.expectFrameUnchanged(window.managed(), zone);
}

TEST_P(Windows, OneWithAMinimumSizeKeepsItAtTheOriginOfTheZone) {
    Desktop& desktop = start();
    TestWindowOptions options;
    options.geometry = {200, 150, 760, 400};
    options.minimumSize = Size{740, 350};
    TestWindow window(desktop.server.displayName(), options);
    const PixelRect area = desktop.screenArea();
    const PixelExtents frame = window.managed().frameExtents();
    PixelRect expected = zoneFrame(area, leftHalf);
    expected.width = 740 + frame.left + frame.right;
    snapAndExpect(desktop, window.managed(), pointIn(area, leftHalf), expected);
}

TEST_P(Windows, OneThatKeepsTheRatioOfItsPictureIsNeverLargerThanItsZone) {
    Desktop& desktop = start();
    TestWindowOptions options;
    options.geometry = {200, 200, 480, 270};
    TestWindow window(desktop.server.displayName(), options);
    PictureKeeper picture(desktop.server.displayName(), window.id());
    const PixelRect zone = zoneFrame(desktop.screenArea(), rightHalf);
    Drag drag(desktop, window.managed());
    drag.pressToMatch(key::super);
    drag.moveTo(pointIn(desktop.screenArea(), rightHalf));
    drag.drop();
    const auto isInPlace = [&] {
        const int widest = picture.widest();
        const PixelRect frame = window.managed().requireVisibleFrame();
        const PixelRect client = window.managed().clientGeometry().value_or(PixelRect{});
        return widest > 480 && frame.x == zone.x && frame.y == zone.y && frame.width == zone.width &&
               client.height == static_cast<int>(PictureKeeper::heightFor(client.width));
    };
    EXPECT_TRUE(desktop.client.waitFor(isInPlace));
    // For longer than tarvex takes to look whether the window has got to its zone.
    const auto isTooLarge = [&] { return picture.widest() > zone.width; };
    EXPECT_FALSE(desktop.client.waitFor(isTooLarge, Deadline(std::chrono::milliseconds(500))));
    EXPECT_TRUE(isInPlace()) << describe(window.managed().requireVisibleFrame());
    drag.releaseKeys();
}

TEST_P(Windows, OneWithStaticGravityLandsOnTheZone) {
    Desktop& desktop = start();
    TestWindowOptions options;
    options.windowGravity = XCB_GRAVITY_STATIC;
    TestWindow window(desktop.server.displayName(), options);
    snapAndExpect(desktop, window.managed(), rightHalf);
}

TEST_P(Windows, ADialogSnapsAndItsOwnerStays) {
    Desktop& desktop = start();
    TestWindow owner(desktop.server.displayName());
    TestWindowOptions options;
    options.type = "_NET_WM_WINDOW_TYPE_DIALOG";
    options.transientFor = owner.id();
    options.geometry = {320, 280, 200, 150};
    TestWindow dialog(desktop.server.displayName(), options);
    const PixelRect ownerFrame = owner.managed().requireVisibleFrame();
    snapAndExpect(desktop, dialog.managed(), rightHalf);
    EXPECT_EQ(owner.managed().visibleFrame(), ownerFrame);
}

TEST_P(Windows, AMenuIsNoWindowToSnap) {
    Desktop& desktop = start();
    TestWindowOptions options;
    options.isOverrideRedirect = true;
    options.geometry = {300, 300, 200, 300};
    TestWindow menu(desktop.server.displayName(), options);
    dragAndExpectNoWindow(desktop, {350, 350});
    EXPECT_EQ(desktop.client.geometryInRoot(menu.id()), (PixelRect{300, 300, 200, 300}));
}

} // namespace
} // namespace tarvex::test
