#include "Tests/EndToEnd/DesktopTest.h"

#include <algorithm>
#include <array>

namespace tarvex::test {
namespace {

class Overlay : public DesktopTest {};

INSTANTIATE_TEST_SUITE_P(Sessions, Overlay, allSessions(), sessionName);

// Parts of the two zones that the dragged window never covers here, just inside the lower edge: without a
// compositor a band along the edge is all that shows of a fill.
constexpr PixelRect insideLeft{60, 1008, 500, 6};
constexpr PixelRect insideRight{720, 1008, 500, 6};

DesktopOptions withoutRestore() {
    DesktopOptions options;
    options.settings = Settings{.restoresWindow = false};
    return options;
}

bool isFilled(Desktop& desktop, const Screenshot& before, const PixelRect& part) {
    return Screenshot(desktop.client).countDifferences(before, part) == part.width * part.height;
}

bool isUntouched(Desktop& desktop, const Screenshot& before, const PixelRect& part) {
    return Screenshot(desktop.client).countDifferences(before, part) == 0;
}

// Narrow strips across the four edges of a zone, away from the dragged window and from the corners.
std::array<PixelRect, 4> edgeStrips(const PixelRect& zone) {
    return {PixelRect{zone.x - 1, zone.y + zone.height - 200, 3, 1},
            PixelRect{zone.x + zone.width - 2, zone.y + zone.height - 200, 3, 1},
            PixelRect{zone.x + 100, zone.y - 1, 1, 3},
            PixelRect{zone.x + 100, zone.y + zone.height - 2, 1, 3}};
}

bool isOutlined(Desktop& desktop, const Screenshot& before, const PixelRect& zone) {
    const Screenshot now(desktop.client);
    for (const PixelRect& strip : edgeStrips(zone)) {
        if (now.countDifferences(before, strip) == 0) {
            return false;
        }
    }
    return true;
}

/// Between the two zones and at the lower edge.
void expectMarginsUntouched(Desktop& desktop, const Screenshot& before) {
    EXPECT_TRUE(isUntouched(desktop, before, {638, 700, 4, 300}));
    EXPECT_TRUE(isUntouched(desktop, before, {0, 1020, 1280, 4}));
}

TEST_P(Overlay, ShowsTheZonesWhileTheKeysAreHeld) {
    Desktop& desktop = start(withoutRestore());
    TestWindow window(desktop.server.displayName());
    const PixelRect area = desktop.screenArea();
    Drag drag(desktop, window.managed());
    drag.moveTo({900, 300});
    const Screenshot before = desktop.steadyScreen();
    drag.pressToMatch(key::super);
    desktop.client.waitUntil([&] { return isFilled(desktop, before, insideRight); },
                             "the right zone is filled");
    desktop.client.waitUntil([&] { return isOutlined(desktop, before, zoneFrame(area, leftHalf)); },
                             "the left zone is outlined");
    EXPECT_TRUE(isUntouched(desktop, before, insideLeft))
        << "the zone that is not selected is not see-through";
    expectMarginsUntouched(desktop, before);
    drag.releaseToNoMatch(key::super);
    desktop.client.waitUntil([&] { return Screenshot(desktop.client) == before; }, "the zones are gone");
}

class OverlayAtScale : public DesktopTest {
protected:
    /// The toolkit's scale factor is no business of the overlay, which counts the server's pixels.
    void expectToChangeNoPixel(const char* scale) {
        DesktopOptions options = withoutRestore();
        options.startsTarvex = false;
        Desktop& desktop = start(options);
        desktop.tarvex.setVariable("QT_SCALE_FACTOR", scale);
        desktop.tarvex.start({});
        TestWindow window(desktop.server.displayName());
        const PixelRect area = desktop.screenArea();
        Drag drag(desktop, window.managed());
        drag.moveTo({900, 300});
        const Screenshot before = desktop.steadyScreen();
        drag.pressToMatch(key::super);
        for (const ZoneSpan& zone : {leftHalf, rightHalf}) {
            desktop.client.waitUntil([&] { return isOutlined(desktop, before, zoneFrame(area, zone)); },
                                     "the zone is outlined at its edges");
        }
        expectMarginsUntouched(desktop, before);
        drag.dropAndExpect(zoneFrame(area, rightHalf));
    }
};

INSTANTIATE_TEST_SUITE_P(Sessions, OverlayAtScale,
                         ::testing::Values(SessionKind{WindowManagerKind::openbox, false},
                                           SessionKind{WindowManagerKind::openbox, true}),
                         sessionName);

TEST_P(OverlayAtScale, OneAndAQuarterChangesNoPixel) {
    expectToChangeNoPixel("1.25");
}

TEST_P(OverlayAtScale, TwoChangesNoPixel) {
    expectToChangeNoPixel("2");
}

TEST_P(Overlay, TheFillFollowsThePointer) {
    Desktop& desktop = start(withoutRestore());
    TestWindow window(desktop.server.displayName());
    Drag drag(desktop, window.managed());
    const Screenshot before = desktop.steadyScreen();
    drag.pressToMatch(key::super);
    desktop.client.waitUntil([&] { return isFilled(desktop, before, insideLeft); },
                             "the left zone is filled");
    EXPECT_TRUE(isUntouched(desktop, before, insideRight));
    drag.moveTo({900, 300});
    desktop.client.waitUntil(
        [&] { return isFilled(desktop, before, insideRight) && isUntouched(desktop, before, insideLeft); },
        "the right zone is filled instead");
    drag.pressToMatch(key::shift);
    drag.moveTo({300, 300});
    desktop.client.waitUntil(
        [&] { return isFilled(desktop, before, insideRight) && isFilled(desktop, before, insideLeft); },
        "both zones are filled");
    drag.dropAndExpect(zoneFrame(desktop.screenArea(), {}));
}

TEST_P(Overlay, IsGoneAfterTheSnap) {
    Desktop& desktop = start();
    TestWindow window(desktop.server.displayName());
    const PixelRect area = desktop.screenArea();
    const Screenshot bare = desktop.steadyScreen();
    Drag drag(desktop, window.managed());
    drag.pressToMatch(key::super);
    drag.moveTo(pointIn(area, leftHalf));
    desktop.client.waitUntil([&] { return isOutlined(desktop, bare, zoneFrame(area, rightHalf)); },
                             "the right zone is outlined");
    drag.dropAndExpect(zoneFrame(area, leftHalf));
    const PixelRect uncovered{644, 0, 636, 1024};
    desktop.client.waitUntil([&] { return isUntouched(desktop, bare, uncovered); }, "the zones are gone");
}

TEST_P(Overlay, LetsThePointerThrough) {
    Desktop& desktop = start(withoutRestore());
    TestWindow window(desktop.server.displayName());
    TestWindowOptions below;
    below.geometry = {700, 700, 400, 200};
    TestWindow other(desktop.server.displayName(), below);
    const xcb_window_t frame = desktop.client.topLevelOf(window.id()).value_or(XCB_NONE);
    ASSERT_NE(frame, XCB_NONE);
    Drag drag(desktop, window.managed());
    const Screenshot before = desktop.steadyScreen();
    drag.pressToMatch(key::super);
    desktop.client.waitUntil([&] { return isFilled(desktop, before, insideLeft); },
                             "the left zone is filled");
    const auto pointerWindow = [&] {
        const Owned<xcb_query_pointer_reply_t> reply(xcb_query_pointer_reply(
            desktop.client.connection(),
            xcb_query_pointer(desktop.client.connection(), desktop.client.root()), nullptr));
        return reply ? reply->child : XCB_NONE;
    };
    // Across the zone's edge, where the overlay is sure to have pixels.
    const PixelPoint start = desktop.pointer.position();
    const int edge = zoneFrame(desktop.screenArea(), leftHalf).x;
    for (int x = edge; x < edge + 16; ++x) {
        desktop.pointer.moveTo({x, start.y});
        // The window manager brings the window along in its own time.
        desktop.client.waitUntil([&] { return pointerWindow() == frame; },
                                 "the pointer is over the window at x " + std::to_string(x));
    }
    drag.drop();
    drag.releaseKeys();
    desktop.settle();
    // Hidden, it lets clicks through as well.
    desktop.pointer.moveTo({800, 850});
    const int clicks = other.buttonEventCount();
    desktop.pointer.press();
    desktop.pointer.release();
    desktop.client.waitUntil([&] { return other.buttonEventCount() >= clicks + 2; }, "the click arrives");
}

TEST_P(Overlay, LiesOverWhatIsShownOrRaisedInMidDrag) {
    Desktop& desktop = start(withoutRestore());
    TestWindow other(desktop.server.displayName());
    TestWindow window(desktop.server.displayName());
    Drag drag(desktop, window.managed());
    drag.moveTo({900, 300});
    drag.pressToMatch(key::super);
    TestWindowOptions options;
    options.title = "Notification";
    options.geometry = {700, 900, 560, 120};
    options.isOverrideRedirect = true;
    const TestWindow notification(desktop.server.displayName(), options);
    const auto isAbove = [&](xcb_window_t topLevel) {
        const auto stack = desktop.client.children(desktop.client.root());
        const auto place = std::find(stack.begin(), stack.end(), topLevel);
        return std::any_of(place, stack.end(), [&](xcb_window_t above) {
            const auto geometry = desktop.client.geometryInRoot(above);
            return desktop.client.text(above, "_NET_WM_NAME") == "Tarvex Zones" && geometry &&
                   geometry->width > 1;
        });
    };
    desktop.client.waitUntil([&] { return isAbove(notification.id()); }, "the zones lie over it");
    other.changeState(true, "_NET_WM_STATE_ABOVE");
    const xcb_window_t frame = desktop.client.topLevelOf(other.id()).value_or(XCB_NONE);
    ASSERT_NE(frame, XCB_NONE);
    desktop.client.waitUntil(
        [&] { return desktop.client.words(other.id(), "_NET_WM_STATE").size() == 1 && isAbove(frame); },
        "the zones lie over a window that the window manager raises");
    drag.releaseToNoMatch(key::super);
    desktop.client.waitUntil([&] { return !isAbove(notification.id()); }, "the zones are gone");
    drag.drop();
}

// The colours are exact where a compositor blends them: half of the selection, half of what is below.
TEST_P(Overlay, BlendsTheSelectionWithWhatIsBelowWhenComposited) {
    Desktop& desktop = start(withoutRestore());
    if (!desktop.compositor) {
        desktop.compositor = std::make_unique<Compositor>(desktop.server);
    }
    TestWindowOptions below;
    below.geometry = {100, 780, 200, 120};
    below.backgroundPixel = 0x204060;
    TestWindow other(desktop.server.displayName(), below);
    TestWindow window(desktop.server.displayName());
    Drag drag(desktop, window.managed());
    const Screenshot before = desktop.steadyScreen();
    drag.pressToMatch(key::super);
    desktop.client.waitUntil([&] { return isFilled(desktop, before, insideLeft); },
                             "the left zone is filled");
    const Screenshot shown = desktop.steadyScreen();
    const PixelPoint onWindow{200, 850};
    const PixelPoint onDesktop{450, 850};
    ASSERT_EQ(before.pixel(onWindow), 0x204060U);
    for (const unsigned shift : {0U, 8U, 16U}) {
        const auto channel = [shift](std::uint32_t pixel) {
            return static_cast<int>((pixel >> shift) & 0xFFU);
        };
        const int differenceBefore = channel(before.pixel(onDesktop)) - channel(before.pixel(onWindow));
        const int differenceShown = channel(shown.pixel(onDesktop)) - channel(shown.pixel(onWindow));
        EXPECT_NEAR(differenceShown, differenceBefore * 0.5, 2) << "shift " << shift;
    }
    EXPECT_NE(shown.pixel(onWindow), before.pixel(onWindow));
    // The white outline adds 0.22 of what is missing to white, on one pixel at each edge.
    const PixelRect right = zoneFrame(desktop.screenArea(), rightHalf);
    int brightest = 0;
    for (int x = right.x - 1; x <= right.x + 1; ++x) {
        brightest = std::max(brightest, static_cast<int>(shown.pixel({x, 850}) & 0xFFU));
    }
    const int background = static_cast<int>(before.pixel({right.x, 850}) & 0xFFU);
    EXPECT_NEAR(brightest, background + 0.22 * (255 - background), 3);
    drag.releaseToNoMatch(key::super);
    drag.drop();
    desktop.settle();
}

TEST_P(Overlay, WorksOnWhenACompositorStartsOrStops) {
    Desktop& desktop = start(withoutRestore());
    TestWindow window(desktop.server.displayName());
    const auto toggle = [&] {
        if (desktop.compositor) {
            desktop.compositor.reset();
        } else {
            desktop.compositor = std::make_unique<Compositor>(desktop.server);
        }
    };
    const auto showAndHide = [&] {
        Drag drag(desktop, window.managed());
        const Screenshot before = desktop.steadyScreen();
        drag.pressToMatch(key::super);
        desktop.client.waitUntil([&] { return isFilled(desktop, before, insideLeft); },
                                 "the left zone is filled");
        EXPECT_TRUE(isUntouched(desktop, before, insideRight)) << "the other zone is not see-through";
        drag.releaseToNoMatch(key::super);
        desktop.client.waitUntil([&] { return Screenshot(desktop.client) == before; }, "the zones are gone");
        drag.drop();
        desktop.settle();
    };
    showAndHide();
    toggle();
    showAndHide();
    toggle();
    showAndHide();
}

TEST_P(Overlay, StaysRightWhenACompositorStartsOrStopsWhileItShows) {
    Desktop& desktop = start(withoutRestore());
    TestWindow window(desktop.server.displayName());
    const auto toggle = [&] {
        if (desktop.compositor) {
            desktop.compositor.reset();
        } else {
            desktop.compositor = std::make_unique<Compositor>(desktop.server);
        }
    };
    Drag drag(desktop, window.managed());
    const Screenshot before = desktop.steadyScreen();
    toggle();
    // The bare desktop has another colour in the other kind of session.
    const Screenshot beforeToggled = desktop.steadyScreen();
    toggle();
    desktop.client.waitUntil([&] { return Screenshot(desktop.client) == before; },
                             "the screen is as at first");
    drag.pressToMatch(key::super);
    desktop.client.waitUntil([&] { return isFilled(desktop, before, insideLeft); },
                             "the left zone is filled");
    toggle();
    desktop.client.waitUntil(
        [&] {
            return isFilled(desktop, beforeToggled, insideLeft) &&
                   isUntouched(desktop, beforeToggled, insideRight) &&
                   isOutlined(desktop, beforeToggled, zoneFrame(desktop.screenArea(), rightHalf));
        },
        "the zones show in the other kind of session");
    drag.releaseToNoMatch(key::super);
    desktop.client.waitUntil([&] { return Screenshot(desktop.client) == beforeToggled; },
                             "the zones are gone");
    drag.drop();
}

} // namespace
} // namespace tarvex::test
