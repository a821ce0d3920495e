#include "Tests/Contract/X11/ViewWindowFixture.h"

#include <algorithm>

namespace tarvex::contract {

namespace {

/// A window manager and another program's window that has the keyboard.
class ViewWindowKeyboard : public ::testing::TestWithParam<test::WindowManagerKind> {
protected:
    void SetUp() override {
        pointer_.moveTo({1270, 1010});
        other_ = std::make_unique<test::TestWindow>(server_.displayName());
        activate(*other_);
        usePlatform({});
        adapters_.catchUp();
    }

    /// @param managedWindows those of this program
    void usePlatform(std::vector<XClientResources> managedWindows) {
        ViewWindowSurroundings surroundings;
        surroundings.managedWindows = std::move(managedWindows);
        platform_ = std::make_unique<XViewWindowPlatform>(
            *adapters_.connection, adapters_.pump, adapters_.monitors, fonts_, [] { return accentColor; },
            surroundings);
    }

    void activate(test::TestWindow& window) {
        client_.sendToWindowManager(window.id(), "_NET_ACTIVE_WINDOW", {2, XCB_CURRENT_TIME, 0, 0, 0});
        windowManager_.barrier();
        client_.waitUntil([&] { return focusedWindow(client_) == window.id(); },
                          "the window has the keyboard");
    }

    void open(const Rect& frame = {0, 0, 1280, 1024}) {
        WindowAttributes attributes;
        attributes.contentRect = frame;
        window_ = platform_->makeViewWindow(attributes, view_);
        window_->makeKeyAndOrderFront();
        adapters_.catchUp();
    }

    /// Leaves the right half of the screen to the others.
    void openOnTheLeft() { open({0, 0, 640, 1024}); }

    std::unique_ptr<test::TestWindow> makeWindowOnTheRight() {
        test::TestWindowOptions options;
        options.geometry = {760, 300, 400, 300};
        return std::make_unique<test::TestWindow>(server_.displayName(), options);
    }

    void press(test::PixelPoint point) {
        pointer_.moveTo(point);
        pointer_.press();
        windowManager_.barrier();
        pointer_.release();
    }

    /// The user goes to that window.
    void pressOn(test::TestWindow& window) {
        press(window.managed().requireVisibleFrame().center());
        client_.waitUntil([&] { return focusedWindow(client_) == window.id(); },
                          "a press gives the keyboard");
    }

    /// Takes the keyboard as a program without manners does.
    void seize(test::TestWindow& window) { seizeFor(window.client(), window.id()); }

    static void seizeFor(test::XClient& client, xcb_window_t window) {
        xcb_set_input_focus(client.connection(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
        client.sync();
    }

    /// The one that has the keyboard while the window manager finds a window to give it to.
    xcb_window_t windowManagersOwn() {
        const auto own = client_.words(client_.root(), "_NET_SUPPORTING_WM_CHECK");
        return own.empty() ? xcb_window_t{XCB_WINDOW_NONE} : own.front();
    }

    /// After everybody has dealt with everything.
    xcb_window_t finalHolder() {
        for (int round = 0; round < 3; ++round) {
            windowManager_.barrier();
            adapters_.catchUp();
        }
        return focusedWindow(client_);
    }

    bool isAbove(xcb_window_t upper, xcb_window_t lower) {
        const auto children = client_.children(client_.root());
        return std::find(children.begin(), children.end(), upper) >
               std::find(children.begin(), children.end(), lower);
    }

    xcb_window_t native() { return findViewWindow(client_, adapters_); }

    MainLoopApplication application_;
    test::XServer server_;
    test::XClient client_{server_.displayName()};
    test::WindowManager windowManager_{server_, GetParam()};
    XOverlayAdapters adapters_{server_.displayName()};
    QtFonts fonts_;
    std::unique_ptr<XViewWindowPlatform> platform_;
    std::unique_ptr<test::TestWindow> other_;
    test::Pointer pointer_{server_.displayName()};
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

TEST_P(ViewWindowKeyboard, IsKeptWhenAWindowIsShownLater) {
    open();
    const test::TestWindow later(server_.displayName());
    EXPECT_EQ(finalHolder(), native());
}

TEST_P(ViewWindowKeyboard, IsTakenBackFromAWindowThatTheUserDidNotGoTo) {
    open();
    test::TestWindow later(server_.displayName());
    activate(later);
    EXPECT_TRUE(adapters_.waitUntil([&] { return focusedWindow(client_) == native(); }));
    EXPECT_EQ(finalHolder(), native());
    // The one that would have it now gets it in the end.
    window_.reset();
    EXPECT_EQ(finalHolder(), later.id());
}

TEST_P(ViewWindowKeyboard, StaysWithTheWindowThatTheUserWentTo) {
    const auto elsewhere = makeWindowOnTheRight();
    openOnTheLeft();
    pressOn(*elsewhere);
    EXPECT_EQ(finalHolder(), elsewhere->id());
    window_.reset();
    EXPECT_EQ(finalHolder(), elsewhere->id());
}

TEST_P(ViewWindowKeyboard, ComesBackWithThePointer) {
    const auto elsewhere = makeWindowOnTheRight();
    openOnTheLeft();
    pressOn(*elsewhere);
    EXPECT_EQ(finalHolder(), elsewhere->id());
    pointer_.moveTo({300, 500});
    EXPECT_TRUE(adapters_.waitUntil([&] { return focusedWindow(client_) == native(); }));
    // The press that follows is the view's.
    pointer_.press();
    pointer_.release();
    EXPECT_TRUE(adapters_.waitUntil([&] { return view_.up.size() == 1; }));
    EXPECT_EQ(finalHolder(), native());
}

TEST_P(ViewWindowKeyboard, GoesBackToTheLatestHolder) {
    const auto elsewhere = makeWindowOnTheRight();
    activate(*other_);
    openOnTheLeft();
    pressOn(*elsewhere);
    adapters_.catchUp();
    pointer_.moveTo({300, 500});
    ASSERT_TRUE(adapters_.waitUntil([&] { return focusedWindow(client_) == native(); }));
    window_.reset();
    EXPECT_EQ(finalHolder(), elsewhere->id());
}

TEST_P(ViewWindowKeyboard, GoesBackToAnEarlierHolderWhenTheLatestHasGone) {
    open();
    auto later = std::make_unique<test::TestWindow>(server_.displayName());
    activate(*later);
    ASSERT_TRUE(adapters_.waitUntil([&] { return focusedWindow(client_) == native(); }));
    later.reset();
    EXPECT_EQ(finalHolder(), native());
    window_.reset();
    EXPECT_EQ(finalHolder(), other_->id());
}

TEST_P(ViewWindowKeyboard, DoesNotGoBackToAWindowOfTheWindowManager) {
    ASSERT_TRUE(client_.isViewable(windowManagersOwn()));
    open();
    seizeFor(client_, windowManagersOwn());
    // As is the case already if the window manager was faster.
    EXPECT_TRUE(adapters_.waitUntil([&] { return focusedWindow(client_) == native(); }));
    EXPECT_EQ(finalHolder(), native());
    window_.reset();
    EXPECT_EQ(finalHolder(), other_->id());
}

TEST_P(ViewWindowKeyboard, IsLeftToAProgramThatInsists) {
    test::TestWindowOptions unmanaged;
    unmanaged.isOverrideRedirect = true;
    unmanaged.geometry = {1200, 0, 50, 50};
    test::TestWindow rival(server_.displayName(), unmanaged);
    openOnTheLeft();
    int seizures = 0;
    // Far more often than anybody gives in, at least once within a second.
    EXPECT_TRUE(adapters_.waitUntil([&] {
        seize(rival);
        ++seizures;
        adapters_.catchUp();
        adapters_.catchUp();
        return focusedWindow(client_) == rival.id();
    }));
    EXPECT_GE(seizures, 8);
    // The struggle does not make the mouse useless.
    pointer_.moveTo({300, 500});
    pointer_.press();
    pointer_.release();
    EXPECT_TRUE(adapters_.waitUntil([&] { return view_.up.size() == 1; }));
    EXPECT_EQ(view_.down.size(), 1U);
}

TEST_P(ViewWindowKeyboard, StepsBehindAManagedWindowOfTheProgram) {
    test::TestWindow own(server_.displayName());
    activate(*other_);
    usePlatform({XClientResources(own.client().connection())});
    open();
    activate(own);
    EXPECT_EQ(finalHolder(), own.id());
    const xcb_window_t frame = client_.topLevelOf(own.id()).value_or(XCB_WINDOW_NONE);
    EXPECT_TRUE(isAbove(frame, native()));
    EXPECT_TRUE(isAbove(native(), client_.topLevelOf(other_->id()).value_or(XCB_WINDOW_NONE)));
    // To move over it is no wish to have it.
    pointer_.moveTo({5, 1000});
    EXPECT_EQ(finalHolder(), own.id());
    // A press brings it forward and does no more; the next one is the view's.
    press({5, 1000});
    EXPECT_EQ(finalHolder(), native());
    EXPECT_TRUE(isAbove(native(), frame));
    EXPECT_TRUE(view_.down.empty());
    press({5, 1000});
    EXPECT_TRUE(adapters_.waitUntil([&] { return view_.up.size() == 1; }));
}

TEST_P(ViewWindowKeyboard, ComesForwardWhenTheProgramsOtherWindowGoes) {
    auto own = std::make_unique<test::TestWindow>(server_.displayName());
    activate(*other_);
    usePlatform({XClientResources(own->client().connection())});
    open();
    activate(*own);
    EXPECT_EQ(finalHolder(), own->id());
    // Closed with the mouse, as people do.
    press(own->managed().requireVisibleFrame().center());
    adapters_.catchUp();
    own.reset();
    EXPECT_TRUE(adapters_.waitUntil([&] { return focusedWindow(client_) == native(); }));
    EXPECT_EQ(finalHolder(), native());
    window_.reset();
    EXPECT_EQ(finalHolder(), other_->id());
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
