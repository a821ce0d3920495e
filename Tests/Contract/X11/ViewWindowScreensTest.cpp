#include "Tests/Contract/X11/ViewWindowFixture.h"
#include "Tests/Support/X11/Monitors.h"

#include <QTimer>

#include <chrono>

namespace tarvex::contract {

namespace {

class ViewWindowMonitors : public ViewWindowTest {
protected:
    void arrange(const std::vector<test::MonitorLayout>& layouts) {
        test::Monitors(desktop_->server.displayName()).set(layouts);
        desktop_->adapters.catchUp();
    }
};

TEST_P(ViewWindowMonitors, WindowCoversItsFrameToThePixel) {
    arrange({{"Left", {0, 100, 500, 700}}, {"Right", {500, 0, 780, 900}, true, true}});

    // Screen space begins at the bottom left of the primary monitor, which ends at the row 900.
    struct Case {
        Rect frame;
        test::PixelRect pixels;
    };

    for (const auto& [frame, pixels] :
         {Case{{0, 0, 780, 900}, {500, 0, 780, 900}}, Case{{0, 30, 780, 840}, {500, 30, 780, 840}},
          Case{{-500, 100, 500, 700}, {0, 100, 500, 700}}, Case{{-500, 101, 463, 669}, {0, 130, 463, 669}}}) {
        WindowAttributes attributes;
        attributes.contentRect = frame;
        window_ = platform_->makeViewWindow(attributes, view_);
        EXPECT_EQ(window_->frame(), frame);
        window_->makeKeyAndOrderFront();
        desktop_->adapters.catchUp();
        EXPECT_EQ(desktop_->client.geometryInRoot(native()), pixels);
        window_.reset();
    }
}

TEST_P(ViewWindowMonitors, ChangeOfTheMonitorsIsToldOnce) {
    open();
    EXPECT_EQ(view_.screenChanges, 0);
    arrange({{"Left", {0, 0, 500, 700}}, {"Right", {500, 0, 780, 900}, true, true}});
    EXPECT_TRUE(waitUntil([&] { return view_.screenChanges > 0; }));
    const int changes = view_.screenChanges;
    desktop_->settle();
    EXPECT_EQ(view_.screenChanges, changes);
}

TEST_P(ViewWindowMonitors, WindowMayCloseWhenTheMonitorsChange) {
    open();
    view_.reaction = [this] { window_.reset(); };
    arrange({{"Left", {0, 0, 500, 700}}, {"Right", {500, 0, 780, 900}, true, true}});
    EXPECT_TRUE(waitUntil([&] { return window_ == nullptr; }));
    desktop_->settle();
    EXPECT_EQ(view_.screenChanges, 1);
    EXPECT_EQ(native(), XCB_WINDOW_NONE);
}

TEST_P(ViewWindowMonitors, AnotherPrimaryMonitorChangesNothing) {
    // The server itself makes a monitor of an output that no other shows.
    arrange({{"Left", {0, 0, 640, 700}, true}, {"Right", {640, 100, 640, 900}, false, true}});
    WindowAttributes attributes;
    // All of the right monitor, which ends below the primary one.
    attributes.contentRect = {640, -300, 640, 900};
    window_ = platform_->makeViewWindow(attributes, view_);
    window_->makeKeyAndOrderFront();
    desktop_->adapters.catchUp();
    ASSERT_EQ(desktop_->client.geometryInRoot(native()), (test::PixelRect{640, 100, 640, 900}));
    const auto expectUntouched = [&] {
        EXPECT_EQ(view_.screenChanges, 0);
        EXPECT_EQ(desktop_->client.geometryInRoot(native()), (test::PixelRect{640, 100, 640, 900}));
        EXPECT_EQ(window_->frame(), (Rect{0, 0, 640, 900}));
        test::Pointer pointer(desktop_->server.displayName());
        view_.down.clear();
        pointer.moveTo({650, 120});
        pointer.press();
        pointer.release();
        EXPECT_TRUE(waitUntil([&] { return view_.down.size() == 1; }));
        EXPECT_EQ(view_.down.front().location, (Point{10.5, 879.5}));
    };
    EXPECT_EQ(window_->frame(), attributes.contentRect);
    arrange({{"Left", {0, 0, 640, 700}}, {"Right", {640, 100, 640, 900}, true, true}});
    expectUntouched();
    arrange({{"Right", {640, 100, 640, 900}, true, true}});
    expectUntouched();
}

TEST_P(ViewWindowMonitors, AnotherMonitorInItsPlaceIsTold) {
    arrange({{"Left", {0, 0, 640, 1024}, true, true}, {"Right", {640, 0, 640, 1024}}});
    open();
    arrange({{"Other", {0, 0, 640, 1024}, true, true}, {"Right", {640, 0, 640, 1024}}});
    EXPECT_TRUE(waitUntil([&] { return view_.screenChanges == 1; }));
}

INSTANTIATE_TEST_SUITE_P(Desktops, ViewWindowMonitors, ::testing::Values(Composition::none), compositionName);

class ViewWindowPanels : public ViewWindowMonitors {
protected:
    static test::TestWindowOptions topPanel(int x, int width) {
        test::TestWindowOptions options;
        options.geometry = {x, 0, width, 40};
        options.type = "_NET_WM_WINDOW_TYPE_DOCK";
        options.strut = test::Strut{};
        options.strut->top = 40;
        options.strut->topStart = static_cast<std::uint32_t>(x);
        options.strut->topEnd = static_cast<std::uint32_t>(x + width - 1);
        return options;
    }

    std::unique_ptr<test::TestWindow> makePanel(int x, int width) {
        return std::make_unique<test::TestWindow>(desktop_->server.displayName(), topPanel(x, width));
    }
};

TEST_P(ViewWindowPanels, PanelThatAppearsIsToldOnce) {
    open();
    const auto panel = makePanel(0, OverlayDesktop::width);
    EXPECT_TRUE(waitUntil([&] { return view_.screenChanges > 0; }));
    desktop_->settle();
    application_.settle();
    EXPECT_EQ(view_.screenChanges, 1);
}

TEST_P(ViewWindowPanels, PanelThatGrowsOrGoesIsTold) {
    auto panel = makePanel(0, OverlayDesktop::width);
    desktop_->adapters.catchUp();
    open();
    panel->client().setWords(panel->id(), "_NET_WM_STRUT_PARTIAL", "CARDINAL",
                             {0, 0, 60, 0, 0, 0, 0, 0, 0, OverlayDesktop::width - 1, 0, 0});
    panel->client().sync();
    EXPECT_TRUE(waitUntil([&] { return view_.screenChanges == 1; }));
    window_.reset();
    open();
    panel.reset();
    EXPECT_TRUE(waitUntil([&] { return view_.screenChanges == 2; }));
}

TEST_P(ViewWindowPanels, WindowMayCloseWhenAPanelAppears) {
    open();
    view_.reaction = [this] { window_.reset(); };
    const auto panel = makePanel(0, OverlayDesktop::width);
    EXPECT_TRUE(waitUntil([&] { return window_ == nullptr; }));
    desktop_->settle();
    EXPECT_EQ(view_.screenChanges, 1);
    EXPECT_EQ(native(), XCB_WINDOW_NONE);
}

TEST_P(ViewWindowPanels, PanelOfAnotherMonitorIsNotTold) {
    arrange({{"Left", {0, 0, 700, 1024}, true, true}, {"Right", {700, 0, 580, 1024}}});
    open();
    const auto other = makePanel(700, 580);
    desktop_->adapters.catchUp();
    // A later change that does count shows that the earlier one had its time.
    const auto own = makePanel(0, 700);
    EXPECT_TRUE(waitUntil([&] { return view_.screenChanges > 0; }));
    EXPECT_EQ(view_.screenChanges, 1);
}

TEST_P(ViewWindowPanels, PanelThatStartsAnewIsNotTold) {
    auto panel = makePanel(0, OverlayDesktop::width);
    desktop_->adapters.catchUp();
    open();
    panel.reset();
    desktop_->adapters.catchUp();
    ASSERT_TRUE(struts_->panels().empty());
    panel = makePanel(0, OverlayDesktop::width);
    ASSERT_TRUE(desktop_->adapters.waitUntil([&] { return !struts_->panels().empty(); }));
    desktop_->adapters.catchUp();
    // Longer than anybody waits for a panel.
    QTimer patience;
    patience.setSingleShot(true);
    patience.start(std::chrono::milliseconds(1000));
    EXPECT_TRUE(waitUntil([&] { return !patience.isActive(); }));
    EXPECT_EQ(view_.screenChanges, 0);
}

INSTANTIATE_TEST_SUITE_P(Desktops, ViewWindowPanels, ::testing::Values(Composition::none), compositionName);

} // namespace

} // namespace tarvex::contract
