#include "Tests/Contract/X11/ViewWindowFixture.h"

namespace tarvex::contract {

namespace {

constexpr Color backdrop{ColorName::black, 0.45};
constexpr std::uint32_t white = 0xFFFFFF;

class ViewWindowPixels : public ViewWindowTest {
protected:
    static std::uint32_t darkened() { return blend(0x000000, 0.45, OverlayDesktop::backgroundColor); }

    /// Has the server no longer paint the background when something uncovers it.
    void leaveBackgroundToItsProgram() {
        const std::uint32_t none = XCB_BACK_PIXMAP_NONE;
        xcb_change_window_attributes(desktop_->background.client().connection(), desktop_->background.id(),
                                     XCB_CW_BACK_PIXMAP, &none);
        desktop_->background.client().sync();
    }

    /// Another program that paints its window when it gets round to it.
    void paintBackground(std::uint32_t color) {
        xcb_connection_t* const connection = desktop_->background.client().connection();
        const xcb_gcontext_t context = xcb_generate_id(connection);
        xcb_create_gc(connection, context, desktop_->background.id(), XCB_GC_FOREGROUND, &color);
        const xcb_rectangle_t all{0, 0, OverlayDesktop::width, OverlayDesktop::height};
        xcb_poly_fill_rectangle(connection, desktop_->background.id(), context, 1, &all);
        xcb_free_gc(connection, context);
        desktop_->background.client().sync();
    }
};

TEST_P(ViewWindowPixels, DesktopIsDarkenedInTheFrameAlone) {
    view_.scene = {{FillRect{whole_, backdrop}}};
    open();
    for (const auto& [x, y] : {std::pair(0, 0), std::pair(599, 0), std::pair(0, 399), std::pair(599, 399)}) {
        EXPECT_LE(distance(pixel(x, y), darkened()), 2) << x << ", " << y;
    }
    for (const auto& [x, y] : {std::pair(-1, 5), std::pair(600, 5), std::pair(5, -1), std::pair(5, 400)}) {
        EXPECT_EQ(pixel(x, y), OverlayDesktop::backgroundColor) << x << ", " << y;
    }
}

TEST_P(ViewWindowPixels, PrimitivesAreOnTheirPixels) {
    view_.scene = {{FillRect{whole_, backdrop}, StrokeRect{{10, 20, 100, 50}, {ColorName::white, 1}, 1},
                    StrokeLine{{300, 0}, {300, 400}, {ColorName::blue, 1}, 6},
                    StrokeLine{{0, 200}, {600, 200}, {ColorName::red, 1}, 2},
                    FillEllipse{{494, 294, 12, 12}, {ColorName::white, 1}},
                    FillRoundedRect{{400, 50, 40, 20}, {6, 6}, {ColorName::gray, 1, 0.2}}}};
    open();
    // The outline runs just inside its edge.
    EXPECT_EQ(pixel(10, 400 - 21), white);
    EXPECT_LE(distance(pixel(9, 400 - 21), darkened()), 2);
    EXPECT_LE(distance(pixel(11, 400 - 22), darkened()), 2);
    EXPECT_EQ(pixel(109, 400 - 70), white);
    EXPECT_LE(distance(pixel(110, 400 - 70), darkened()), 2);
    // Lines lie half on either side.
    EXPECT_EQ(pixel(297, 100), 0x0A84FFU);
    EXPECT_EQ(pixel(302, 100), 0x0A84FFU);
    EXPECT_LE(distance(pixel(296, 100), darkened()), 2);
    EXPECT_LE(distance(pixel(303, 100), darkened()), 2);
    EXPECT_EQ(pixel(20, 199), 0xFF453AU);
    EXPECT_EQ(pixel(20, 200), 0xFF453AU);
    EXPECT_LE(distance(pixel(20, 201), darkened()), 2);
    EXPECT_EQ(pixel(500, 100), white);
    EXPECT_LE(distance(pixel(494, 94), darkened()), 2);
    EXPECT_EQ(pixel(420, 340), 0x333333U);
    EXPECT_LE(distance(pixel(400, 330), darkened()), 4);
}

TEST_P(ViewWindowPixels, NewPictureReplacesTheOldOneEverywhere) {
    view_.scene = {{FillRect{whole_, backdrop}, FillRect{{0, 0, 100, 100}, {ColorName::white, 1}}}};
    open();
    EXPECT_EQ(pixel(50, 350), white);
    redraw({{FillRect{whole_, backdrop}, FillRect{{200, 0, 100, 100}, {ColorName::white, 0.5}}}});
    EXPECT_LE(distance(pixel(50, 350), darkened()), 2);
    EXPECT_LE(distance(pixel(250, 350), blend(white, 0.5, darkened())), 2);
}

TEST_P(ViewWindowPixels, NothingIsSeenBeforeItIsShownAndAfterItHasGone) {
    view_.scene = {{FillRect{whole_, {ColorName::white, 1}}}};
    WindowAttributes attributes;
    attributes.contentRect = frame_;
    window_ = platform_->makeViewWindow(attributes, view_);
    window_->setNeedsDisplay();
    desktop_->settle();
    EXPECT_EQ(pixel(300, 200), OverlayDesktop::backgroundColor);
    EXPECT_EQ(view_.draws, 0);
    window_->makeKeyAndOrderFront();
    desktop_->settle();
    EXPECT_EQ(pixel(300, 200), white);
    window_.reset();
    desktop_->settle();
    EXPECT_TRUE(waitUntil([&] { return pixel(300, 200) == OverlayDesktop::backgroundColor; }));
    EXPECT_EQ(native(), XCB_WINDOW_NONE);
}

TEST_P(ViewWindowPixels, WindowOpenedAfterAnotherInOneTurnShowsTheDesktopAndNotTheOther) {
    view_.scene = {{FillRect{whole_, {ColorName::white, 1}}}};
    open();
    view_.scene = {{FillRect{whole_, backdrop}}};
    window_.reset();
    open();
    EXPECT_LE(distance(pixel(300, 200), darkened()), 2);
}

TEST_P(ViewWindowPixels, LostPixelsComeBack) {
    view_.scene = {{FillRect{whole_, {ColorName::white, 1}}}};
    open();
    {
        test::TestWindowOptions options;
        options.geometry = {150, 250, 100, 100};
        options.isOverrideRedirect = true;
        const test::TestWindow cover(desktop_->server.displayName(), options);
        desktop_->settle();
    }
    desktop_->settle();
    EXPECT_TRUE(waitUntil([&] { return pixel(60, 60) == white && pixel(140, 140) == white; }));
}

TEST_P(ViewWindowPixels, StaysAboveWindowsThatComeLater) {
    view_.scene = {{FillRect{whole_, {ColorName::white, 1}}}};
    open();
    test::TestWindowOptions options;
    options.geometry = {150, 250, 100, 100};
    options.isOverrideRedirect = true;
    test::TestWindow later(desktop_->server.displayName(), options);
    makeManagersAndRaise(later);
    EXPECT_TRUE(waitUntil([&] {
        const auto children = desktop_->client.children(desktop_->client.root());
        return std::find(children.begin(), children.end(), native()) >
               std::find(children.begin(), children.end(), later.id());
    }));
    desktop_->settle();
    EXPECT_TRUE(waitUntil([&] { return pixel(60, 60) == white; }));
}

TEST_P(ViewWindowPixels, GivesInToAWindowThatInsistsOnBeingAbove) {
    open();
    test::TestWindowOptions options;
    options.geometry = {150, 250, 100, 100};
    options.isOverrideRedirect = true;
    test::TestWindow rival(desktop_->server.displayName(), options);
    makeManagersAndRaise(rival);
    int raises = 0;
    const auto isRivalAbove = [&] {
        const auto children = desktop_->client.children(desktop_->client.root());
        return std::find(children.begin(), children.end(), native()) <
               std::find(children.begin(), children.end(), rival.id());
    };
    const auto raiseRival = [&] {
        const std::uint32_t above = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(rival.client().connection(), rival.id(), XCB_CONFIG_WINDOW_STACK_MODE, &above);
        rival.client().sync();
        desktop_->adapters.catchUp();
        desktop_->adapters.catchUp();
        ++raises;
    };
    raiseRival();
    EXPECT_FALSE(isRivalAbove());
    // Far more often than anybody gives in, at least once within a second.
    EXPECT_TRUE(waitUntil([&] {
        raiseRival();
        return isRivalAbove();
    }));
    EXPECT_GE(raises, 8);
}

INSTANTIATE_TEST_SUITE_P(Desktops, ViewWindowPixels,
                         ::testing::Values(Composition::none, Composition::picom, Composition::xfwm4),
                         compositionName);

class ViewWindowCompositor : public ViewWindowPixels {
protected:
    static bool isBlended() { return GetParam() != Composition::none; }
};

TEST_P(ViewWindowCompositor, PictureIsNeverBlackWhoeverComposesTheScreen) {
    view_.scene = {{FillRect{whole_, backdrop}, FillRect{{0, 0, 100, 100}, {ColorName::white, 1}}}};
    open();
    const auto looksRight = [&] {
        const std::uint32_t ground = pixel(300, 200);
        return pixel(50, 350) == white && distance(ground, 0) > 15 && distance(ground, white) > 100 &&
               ground != OverlayDesktop::backgroundColor;
    };
    EXPECT_TRUE(looksRight());
    for (const bool isRunning : {!isBlended(), isBlended()}) {
        if (isRunning) {
            desktop_->startCompositor();
        } else {
            desktop_->stopCompositor();
        }
        EXPECT_TRUE(waitUntil(looksRight));
        desktop_->settle();
        EXPECT_TRUE(looksRight());
        EXPECT_TRUE(waitUntil([&] { return focusedWindow(desktop_->client) == native(); }));
    }
}

TEST_P(ViewWindowCompositor, GroundIsTheDesktopWhenNobodyComposesTheScreenAnyMore) {
    view_.scene = {{FillRect{whole_, backdrop}}};
    if (!isBlended()) {
        desktop_->startCompositor();
    }
    open();
    const auto isDesktop = [&] { return distance(pixel(300, 200), darkened()) <= 2; };
    EXPECT_TRUE(isDesktop());
    leaveBackgroundToItsProgram();
    desktop_->stopCompositor();
    paintBackground(OverlayDesktop::backgroundColor);
    EXPECT_TRUE(waitUntil(isDesktop));
    EXPECT_TRUE(waitUntil([&] { return focusedWindow(desktop_->client) == native(); }));
    // Nor has one that follows inherited anything else.
    window_.reset();
    open();
    EXPECT_TRUE(isDesktop());
}

TEST_P(ViewWindowCompositor, PictureIsWholeAgainWhenTheCompositorStartsAnew) {
    view_.scene = {{FillRect{whole_, backdrop}, FillRect{{0, 0, 100, 100}, {ColorName::white, 1}}}};
    if (!isBlended()) {
        desktop_->startCompositor();
    }
    open();
    desktop_->stopCompositor();
    desktop_->startCompositor();
    const auto looksRight = [&] {
        return pixel(50, 350) == white && distance(pixel(300, 200), darkened()) <= 2;
    };
    EXPECT_TRUE(waitUntil(looksRight));
    EXPECT_EQ(focusedWindow(desktop_->client), native());
}

INSTANTIATE_TEST_SUITE_P(From, ViewWindowCompositor, ::testing::Values(Composition::none, Composition::picom),
                         compositionName);

class ViewWindowAfterAMenu : public ViewWindowPixels {
protected:
    /// Lays something white over the desktop and takes it away again.
    void closeMenu() {
        leaveBackgroundToItsProgram();
        test::TestWindowOptions menu;
        menu.geometry = {300, 300, 200, 200};
        menu.isOverrideRedirect = true;
        menu.backgroundPixel = white;
        { const test::TestWindow shown(desktop_->server.displayName(), menu); }
        desktop_->client.sync();
        platform_->noteMenuClosing();
    }

    void request() {
        WindowAttributes attributes;
        attributes.contentRect = frame_;
        window_ = platform_->makeViewWindow(attributes, view_);
        window_->makeKeyAndOrderFront();
        desktop_->adapters.catchUp();
    }
};

TEST_P(ViewWindowAfterAMenu, WhatTheMenuCoveredIsPaintedFirst) {
    view_.scene = {{FillRect{whole_, backdrop}}};
    const xcb_window_t holder = focusedWindow(desktop_->client);
    closeMenu();
    request();
    EXPECT_EQ(native(), XCB_WINDOW_NONE);
    EXPECT_EQ(focusedWindow(desktop_->client), holder);
    paintBackground(OverlayDesktop::backgroundColor);
    EXPECT_TRUE(waitUntil([&] { return native() != XCB_WINDOW_NONE; }));
    desktop_->settle();
    EXPECT_LE(distance(pixel(300, 200), darkened()), 2);
    EXPECT_EQ(focusedWindow(desktop_->client), native());
}

TEST_P(ViewWindowAfterAMenu, WindowMayCloseBeforeItIsShown) {
    closeMenu();
    request();
    window_.reset();
    request();
    EXPECT_EQ(native(), XCB_WINDOW_NONE);
    EXPECT_TRUE(waitUntil([&] { return native() != XCB_WINDOW_NONE; }));
}

INSTANTIATE_TEST_SUITE_P(Desktops, ViewWindowAfterAMenu, ::testing::Values(Composition::none),
                         compositionName);

class ViewWindowAfterAMenuBlended : public ViewWindowAfterAMenu {};

TEST_P(ViewWindowAfterAMenuBlended, OpensAtOnce) {
    platform_->noteMenuClosing();
    request();
    EXPECT_NE(native(), XCB_WINDOW_NONE);
}

INSTANTIATE_TEST_SUITE_P(Desktops, ViewWindowAfterAMenuBlended, ::testing::Values(Composition::picom),
                         compositionName);

} // namespace

} // namespace tarvex::contract
