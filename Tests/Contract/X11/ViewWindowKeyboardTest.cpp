#include "Tests/Contract/X11/ViewWindowFixture.h"

namespace tarvex::contract {

namespace {

/// A window manager and another program's window that has the keyboard.
class ViewWindowKeyboard : public ::testing::TestWithParam<test::WindowManagerKind> {
protected:
    void SetUp() override {
        other_ = std::make_unique<test::TestWindow>(server_.displayName());
        activate(*other_);
        adapters_.catchUp();
    }

    void activate(test::TestWindow& window) {
        client_.sendToWindowManager(window.id(), "_NET_ACTIVE_WINDOW", {2, XCB_CURRENT_TIME, 0, 0, 0});
        windowManager_.barrier();
        client_.waitUntil([&] { return focusedWindow(client_) == window.id(); },
                          "the window has the keyboard");
    }

    void open() {
        WindowAttributes attributes;
        attributes.contentRect = {0, 0, 1280, 1024};
        window_ = platform_.makeViewWindow(attributes, view_);
        window_->makeKeyAndOrderFront();
        adapters_.catchUp();
    }

    xcb_window_t native() { return findViewWindow(client_, adapters_); }

    MainLoopApplication application_;
    test::XServer server_;
    test::XClient client_{server_.displayName()};
    test::WindowManager windowManager_{server_, GetParam()};
    XOverlayAdapters adapters_{server_.displayName()};
    QtFonts fonts_;
    XViewWindowPlatform platform_{*adapters_.connection, adapters_.pump, adapters_.monitors, fonts_,
                                  [] { return accentColor; }};
    std::unique_ptr<test::TestWindow> other_;
    RecordingView view_;
    std::unique_ptr<ViewWindow> window_;
};

TEST_P(ViewWindowKeyboard, IsTakenAtOnceAndKept) {
    open();
    EXPECT_EQ(focusedWindow(client_), native());
    windowManager_.barrier();
    adapters_.catchUp();
    EXPECT_EQ(focusedWindow(client_), native());
    test::Keyboard(server_.displayName()).tap(0xFF0D);
    EXPECT_TRUE(adapters_.waitUntil([&] { return view_.keys.size() == 1; }));
    EXPECT_EQ(view_.keys.front().keyCode, 36);
}

TEST_P(ViewWindowKeyboard, GoesBackToTheWindowThatHadIt) {
    open();
    windowManager_.barrier();
    window_.reset();
    adapters_.catchUp();
    windowManager_.barrier();
    EXPECT_EQ(focusedWindow(client_), other_->id());
}

TEST_P(ViewWindowKeyboard, StaysWithWhoeverTookItMeanwhile) {
    open();
    test::TestWindow later(server_.displayName());
    activate(later);
    adapters_.catchUp();
    window_.reset();
    adapters_.catchUp();
    windowManager_.barrier();
    EXPECT_EQ(focusedWindow(client_), later.id());
}

TEST_P(ViewWindowKeyboard, ComesBackWithAPress) {
    open();
    activate(*other_);
    adapters_.catchUp();
    test::Pointer pointer(server_.displayName());
    pointer.moveTo({600, 500});
    pointer.press();
    pointer.release();
    EXPECT_TRUE(adapters_.waitUntil([&] { return focusedWindow(client_) == native(); }));
}

TEST_P(ViewWindowKeyboard, GoesBackToTheLatestHolder) {
    open();
    test::TestWindow later(server_.displayName());
    activate(later);
    adapters_.catchUp();
    test::Pointer pointer(server_.displayName());
    pointer.moveTo({600, 500});
    pointer.press();
    pointer.release();
    ASSERT_TRUE(adapters_.waitUntil([&] { return focusedWindow(client_) == native(); }));
    window_.reset();
    adapters_.catchUp();
    windowManager_.barrier();
    EXPECT_EQ(focusedWindow(client_), later.id());
}

TEST_P(ViewWindowKeyboard, FormerHolderMayBeGone) {
    open();
    other_.reset();
    windowManager_.barrier();
    adapters_.catchUp();
    window_.reset();
    adapters_.catchUp();
    windowManager_.barrier();
    // The next window can have it as ever.
    test::TestWindow next(server_.displayName());
    activate(next);
    EXPECT_FALSE(adapters_.connection->isBroken());
}

TEST_P(ViewWindowKeyboard, StaysAboveAWindowThatIsManagedLater) {
    view_.scene = {{FillRect{{0, 0, 1280, 1024}, {ColorName::white, 1}}}};
    open();
    test::TestWindow later(server_.displayName());
    windowManager_.barrier();
    const test::PixelPoint inside = later.managed().requireVisibleFrame().center();
    EXPECT_TRUE(adapters_.waitUntil([&] { return test::Screenshot(client_).pixel(inside) == 0xFFFFFF; }));
}

INSTANTIATE_TEST_SUITE_P(WindowManagers, ViewWindowKeyboard,
                         ::testing::Values(test::WindowManagerKind::openbox, test::WindowManagerKind::xfwm4,
                                           test::WindowManagerKind::xfwm4Strict),
                         [](const auto& info) { return nameOf(info.param); });

} // namespace

} // namespace tarvex::contract
