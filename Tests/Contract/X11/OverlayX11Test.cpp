#include "Tests/Contract/X11/OverlayFixture.h"
#include "Tests/Support/X11/Monitors.h"

#include <xcb/shape.h>

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace tarvex::contract {

namespace {

class OverlayX11 : public OverlayTest {
protected:
    static test::TestWindowOptions overIt() {
        test::TestWindowOptions options;
        options.geometry = {150, 250, 200, 200};
        options.isOverrideRedirect = true;
        return options;
    }

    /// After a window is shown, it does not mind for a while which ones are shown above it.
    void distractIt() {
        test::TestWindowOptions options = overIt();
        options.geometry = {-50, -50, 10, 10};
        const test::TestWindow passing(desktop_->server.displayName(), options);
        desktop_->settle();
    }
};

TEST_P(OverlayX11, NativeWindowCoversTheFrameRoundedToPixels) {
    window_ = makeWindow({100.4, 99.6, 300.2, 200.5});
    show(filled({0, 0, 10, 10}));
    const xcb_window_t native = shownNative();
    ASSERT_NE(native, XCB_WINDOW_NONE);
    // Edges at 100.4 and 400.6 from the left, at 99.6 and 300.1 from the bottom.
    EXPECT_EQ(desktop_->client.geometryInRoot(native), (test::PixelRect{100, 724, 301, 200}));
}

TEST_P(OverlayX11, NativeWindowIsNobodysToManage) {
    show(filled(whole_));
    const xcb_window_t native = shownNative();
    const auto attributes = desktop_->client.attributes(native);
    ASSERT_NE(attributes, nullptr);
    EXPECT_NE(attributes->override_redirect, 0);
    EXPECT_TRUE(desktop_->client.managedWindows().empty());
    EXPECT_EQ(desktop_->client.text(native, "_NET_WM_NAME"), "Tarvex Zones");
    EXPECT_EQ(desktop_->client.text(native, "WM_CLASS"), std::string("tarvex\0Tarvex\0", 14));
    EXPECT_EQ(desktop_->client.words(native, "_NET_WM_WINDOW_TYPE"),
              std::vector<std::uint32_t>{desktop_->client.atom("_NET_WM_WINDOW_TYPE_DND")});
}

TEST_P(OverlayX11, PointerNeverFindsIt) {
    show(filled(whole_));
    xcb_connection_t* connection = desktop_->client.connection();
    const test::Owned<xcb_translate_coordinates_reply_t> reply(xcb_translate_coordinates_reply(
        connection,
        xcb_translate_coordinates(connection, desktop_->client.root(), desktop_->client.root(), 300, 400),
        nullptr));
    ASSERT_NE(reply, nullptr);
    EXPECT_EQ(reply->child, desktop_->background.id());
    const test::Owned<xcb_shape_get_rectangles_reply_t> input(xcb_shape_get_rectangles_reply(
        connection, xcb_shape_get_rectangles(connection, shownNative(), XCB_SHAPE_SK_INPUT), nullptr));
    ASSERT_NE(input, nullptr);
    EXPECT_EQ(xcb_shape_get_rectangles_rectangles_length(input.get()), 0);
}

TEST_P(OverlayX11, WindowThatTakesMouseEventsGetsThem) {
    WindowAttributes solid = attributes(frame_);
    solid.ignoresMouseEvents = false;
    window_ = desktop_->adapters.windows.makeWindow(solid);
    show(filled(whole_));
    xcb_connection_t* connection = desktop_->client.connection();
    const test::Owned<xcb_translate_coordinates_reply_t> reply(xcb_translate_coordinates_reply(
        connection,
        xcb_translate_coordinates(connection, desktop_->client.root(), desktop_->client.root(), 300, 400),
        nullptr));
    ASSERT_NE(reply, nullptr);
    EXPECT_EQ(reply->child, shownNative());
}

TEST_P(OverlayX11, ScreenIsTheSameBeforeAndAfter) {
    const test::Screenshot before = desktop_->screenshot();
    const test::PixelRect belowMarker{0, 4, OverlayDesktop::width, OverlayDesktop::height - 4};
    show(filled(whole_, accent));
    EXPECT_GT(desktop_->screenshot().countDifferences(before, belowMarker), 10000);
    window_->orderOut();
    desktop_->settle();
    EXPECT_EQ(desktop_->screenshot().countDifferences(before, belowMarker), 0);
}

TEST_P(OverlayX11, HiddenWindowLeavesNothingOnOtherWindows) {
    test::TestWindowOptions options;
    options.geometry = {150, 250, 300, 200};
    // No window manager's frame around it, which may be drawn at any later time.
    options.isOverrideRedirect = true;
    const test::TestWindow application(desktop_->server.displayName(), options);
    desktop_->settle();
    const test::Screenshot before = desktop_->screenshot();
    const test::PixelRect area{0, 4, OverlayDesktop::width, OverlayDesktop::height - 4};
    const auto zones = [](double selected) {
        return Scene{{StrokeRect{{0, 0, 300, 400}, faint, 1}, StrokeRect{{300, 0, 300, 400}, faint, 1},
                      FillRect{{selected, 0, 300, 400}, accent}}};
    };
    for (int round = 0; round < 3; ++round) {
        show(zones(0));
        show(zones(300));
        EXPECT_GT(desktop_->screenshot().countDifferences(before, area), 10000);
        window_->orderOut();
        desktop_->settle();
        EXPECT_EQ(desktop_->screenshot().countDifferences(before, area), 0) << "round " << round;
    }
}

TEST_P(OverlayX11, HiddenWindowWaitsOffTheScreenBelowAllOthers) {
    show(filled(whole_));
    window_->orderOut();
    desktop_->settle();
    const auto natives = desktop_->nativeWindows();
    ASSERT_FALSE(natives.empty());
    for (const xcb_window_t native : natives) {
        const auto geometry = desktop_->client.geometryInRoot(native);
        ASSERT_TRUE(geometry.has_value());
        EXPECT_LT(geometry->x, -50);
        EXPECT_EQ(geometry->width * geometry->height, 1);
    }
    const auto stack = desktop_->client.children(desktop_->client.root());
    const auto lowest = std::find(stack.begin(), stack.end(), desktop_->background.id());
    for (const xcb_window_t native : natives) {
        EXPECT_NE(std::find(stack.begin(), lowest, native), lowest);
    }
}

TEST_P(OverlayX11, ShownAgainItNeverShowsItsFormerPicture) {
    const Rect former{0, 0, 300, 400};
    const Rect latter{300, 0, 300, 400};
    show(filled(former));
    for (int round = 0; round < 10; ++round) {
        window_->orderOut();
        desktop_->settle();
        window_->orderFront();
        window_->setScene(filled(round % 2 == 0 ? latter : former));
        const int staleX = round % 2 == 0 ? 150 : 450;
        const int freshX = 600 - staleX;
        bool wasStale = false;
        EXPECT_TRUE(desktop_->adapters.waitUntil([&] {
            wasStale = wasStale || pixel(staleX, 200) != OverlayDesktop::backgroundColor;
            return pixel(freshX, 200) == 0xFFFFFF;
        }));
        EXPECT_FALSE(wasStale) << "round " << round;
    }
}

TEST_P(OverlayX11, ColorsAreLaidOverEachOther) {
    // Outline, selection, selection over the outline, and two selections over each other.
    show({{StrokeRect{{0, 0, 200, 400}, faint, 1}, FillRect{{100, 0, 200, 400}, accent},
           FillRect{{250, 0, 200, 400}, accent}}});
    if (!isComposited()) {
        // Without a compositor the same places are marked, opaquely.
        EXPECT_NE(pixel(0, 200), OverlayDesktop::backgroundColor);
        EXPECT_EQ(pixel(100, 200), accentColor);
        EXPECT_EQ(pixel(50, 200), OverlayDesktop::backgroundColor);
        return;
    }
    const std::uint32_t ground = OverlayDesktop::backgroundColor;
    const std::uint32_t line = blend(0xFFFFFF, 0.22, ground);
    const std::uint32_t selected = blend(accentColor, 0.5, ground);
    EXPECT_LE(distance(pixel(0, 200), line), 2);
    EXPECT_EQ(pixel(50, 200), ground);
    EXPECT_LE(distance(pixel(230, 200), selected), 2);
    EXPECT_LE(distance(pixel(199, 200), blend(accentColor, 0.5, line)), 2);
    EXPECT_LE(distance(pixel(270, 200), blend(accentColor, 0.5, selected)), 2);
}

TEST_P(OverlayX11, AccentColorIsAskedForWhenItDraws) {
    std::uint32_t color = 0x00FF00;
    XOverlayAdapters& adapters = desktop_->adapters;
    XWindowPlatform green(*adapters.connection, adapters.pump, adapters.mainLoop, adapters.monitors,
                          [&color] { return color; });
    auto window = green.makeWindow(attributes(frame_));
    window->setScene(filled(whole_, {ColorName::accent, 1}));
    window->orderFront();
    desktop_->settle();
    EXPECT_EQ(pixel(300, 200), 0x00FF00U);
    color = 0xFF0000;
    window->setScene(filled({0, 0, 600, 300}, {ColorName::accent, 1}));
    desktop_->settle();
    EXPECT_EQ(pixel(300, 200), 0xFF0000U);
}

TEST_P(OverlayX11, PictureComesBackFromUnderAnotherWindow) {
    show(filled(whole_, accent));
    distractIt();
    const test::Screenshot before = desktop_->screenshot();
    {
        const test::TestWindow other(desktop_->server.displayName(), overIt());
        desktop_->settle();
        EXPECT_GT(desktop_->screenshot().countDifferences(before, {150, 250, 200, 200}), 30000);
    }
    desktop_->settle();
    EXPECT_EQ(desktop_->screenshot().countDifferences(before, {100, 200, 600, 400}), 0);
}

TEST_P(OverlayX11, OrderFrontRaisesItAgain) {
    show(filled(whole_));
    distractIt();
    const test::TestWindow other(desktop_->server.displayName(), overIt());
    desktop_->settle();
    ASSERT_NE(pixel(100, 100), 0xFFFFFFU);
    window_->orderFront();
    desktop_->settle();
    EXPECT_EQ(pixel(100, 100), 0xFFFFFFU);
}

TEST_P(OverlayX11, ComesUpAboveMenusNotificationsAndPanels) {
    for (const char* const type :
         {"_NET_WM_WINDOW_TYPE_POPUP_MENU", "_NET_WM_WINDOW_TYPE_NOTIFICATION", "_NET_WM_WINDOW_TYPE_DOCK"}) {
        test::TestWindowOptions options = overIt();
        options.type = type;
        const test::TestWindow other(desktop_->server.displayName(), options);
        desktop_->settle();
        ASSERT_NE(pixel(100, 100), 0xFFFFFFU) << type;
        show(filled(whole_));
        EXPECT_EQ(pixel(100, 100), 0xFFFFFFU) << type;
        window_->orderOut();
    }
}

TEST_P(OverlayX11, ScenesOfManyZonesAreShownWhole) {
    Scene scene;
    for (int row = 0; row < 100; ++row) {
        for (int column = 0; column < 100; ++column) {
            scene.primitives.emplace_back(
                StrokeRect{{column * 6.0, row * 4.0, 6, 4}, {ColorName::white, 1}, 1});
        }
    }
    show(std::move(scene));
    const test::Screenshot screen = desktop_->screenshot();
    int lines = 0;
    for (int y = 200; y < 600; ++y) {
        for (int x = 100; x < 700; ++x) {
            lines += screen.pixel({x, y}) == 0xFFFFFF ? 1 : 0;
        }
    }
    // Of each zone's 24 pixels, 8 lie inside its outline.
    EXPECT_EQ(lines, 10000 * 16);
}

INSTANTIATE_TEST_SUITE_P(On, OverlayX11,
                         ::testing::Values(Composition::none, Composition::picom, Composition::xfwm4),
                         compositionName);

} // namespace

} // namespace tarvex::contract
