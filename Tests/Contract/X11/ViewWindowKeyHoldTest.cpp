#include "Tests/Contract/X11/ViewWindowFixture.h"

#include <chrono>

namespace tarvex::contract {

namespace {

constexpr std::uint32_t letterB = 0x62;

/// A key that closes the window while it is down, and another program's window that gets the keyboard back.
class ViewWindowKeyHold : public ::testing::Test {
protected:
    void SetUp() override {
        xcb_connection_t* const connection = other_.client().connection();
        const std::uint32_t events = XCB_EVENT_MASK_KEY_PRESS;
        xcb_change_window_attributes(connection, other_.id(), XCB_CW_EVENT_MASK, &events);
        xcb_set_input_focus(connection, XCB_INPUT_FOCUS_POINTER_ROOT, other_.id(), XCB_CURRENT_TIME);
        other_.client().sync();
        other_.client().setEventHandler([this](const xcb_generic_event_t& event) {
            if ((event.response_type & 0x7F) == XCB_KEY_PRESS) {
                typed_.push_back(reinterpret_cast<const xcb_key_press_event_t&>(event).detail);
            }
        });
        view_.reaction = [this] { window_.reset(); };
    }

    static test::TestWindowOptions unmanaged() {
        test::TestWindowOptions options;
        options.isOverrideRedirect = true;
        return options;
    }

    void start(std::chrono::milliseconds longestKeyHold) {
        ViewWindowSurroundings surroundings;
        surroundings.longestKeyHold = longestKeyHold;
        platform_ = std::make_unique<XViewWindowPlatform>(
            *adapters_.connection, adapters_.pump, adapters_.monitors, fonts_, [] { return accentColor; },
            surroundings);
        WindowAttributes attributes;
        attributes.contentRect = {0, 0, 1280, 1024};
        window_ = platform_->makeViewWindow(attributes, view_);
        window_->makeKeyAndOrderFront();
        adapters_.catchUp();
    }

    bool waitUntil(const std::function<bool()>& condition) {
        return adapters_.waitUntil([&] {
            application_.settle();
            return condition();
        });
    }

    /// What the other window has been told of up to now.
    const std::vector<xcb_keycode_t>& typed() {
        other_.client().sync();
        other_.client().handleEvents();
        return typed_;
    }

    /// Whether somebody holds the keyboard.
    bool isKeyboardHeld() {
        xcb_connection_t* const connection = client_.connection();
        const test::Owned<xcb_grab_keyboard_reply_t> reply(
            xcb_grab_keyboard_reply(connection,
                                    xcb_grab_keyboard(connection, 0, client_.root(), XCB_CURRENT_TIME,
                                                      XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                                    nullptr));
        xcb_ungrab_keyboard(connection, XCB_CURRENT_TIME);
        client_.sync();
        return reply->status != XCB_GRAB_STATUS_SUCCESS;
    }

    MainLoopApplication application_;
    test::XServer server_;
    test::XClient client_{server_.displayName()};
    test::TestWindow other_{server_.displayName(), unmanaged()};
    std::vector<xcb_keycode_t> typed_;
    XOverlayAdapters adapters_{server_.displayName()};
    QtFonts fonts_;
    RecordingView view_;
    std::unique_ptr<XViewWindowPlatform> platform_;
    std::unique_ptr<ViewWindow> window_;
    test::Keyboard keyboard_{server_.displayName()};
};

TEST_F(ViewWindowKeyHold, KeyboardIsHeldUntilTheKeyIsReleased) {
    start(std::chrono::minutes(1));
    keyboard_.press(test::key::enter);
    ASSERT_TRUE(waitUntil([&] { return window_ == nullptr; }));
    EXPECT_EQ(findViewWindow(client_, adapters_), XCB_WINDOW_NONE);
    EXPECT_EQ(focusedWindow(client_), other_.id());
    // Neither its repetitions nor anything else is typed blindly.
    keyboard_.tap(letterB);
    adapters_.catchUp();
    EXPECT_TRUE(typed().empty());
    EXPECT_TRUE(isKeyboardHeld());
    keyboard_.release(test::key::enter);
    EXPECT_TRUE(waitUntil([&] { return !isKeyboardHeld(); }));
    keyboard_.tap(letterB);
    EXPECT_EQ(typed().size(), 1U);
}

TEST_F(ViewWindowKeyHold, KeyThatHasBeenReleasedIsNotWaitedFor) {
    start(std::chrono::minutes(1));
    keyboard_.tap(test::key::escape);
    ASSERT_TRUE(waitUntil([&] { return window_ == nullptr; }));
    adapters_.catchUp();
    EXPECT_FALSE(isKeyboardHeld());
    keyboard_.tap(letterB);
    EXPECT_EQ(typed().size(), 1U);
}

TEST_F(ViewWindowKeyHold, WindowThatIsClosedByTheMouseHoldsNothing) {
    start(std::chrono::minutes(1));
    // Down, but no business of the window's.
    keyboard_.press(test::key::shift);
    test::Pointer pointer(server_.displayName());
    pointer.moveTo({600, 500});
    pointer.press();
    ASSERT_TRUE(waitUntil([&] { return window_ == nullptr; }));
    adapters_.catchUp();
    EXPECT_FALSE(isKeyboardHeld());
}

TEST_F(ViewWindowKeyHold, KeyThatIsNeverReleasedIsGivenUp) {
    start(std::chrono::milliseconds(50));
    keyboard_.press(test::key::enter);
    ASSERT_TRUE(waitUntil([&] { return window_ == nullptr; }));
    EXPECT_TRUE(waitUntil([&] { return !isKeyboardHeld(); }));
    keyboard_.tap(letterB);
    EXPECT_TRUE(waitUntil([&] { return !typed().empty(); }));
}

TEST_F(ViewWindowKeyHold, WindowThatIsOpenedMeanwhileGetsTheKeysAfterwards) {
    start(std::chrono::minutes(1));
    keyboard_.press(test::key::enter);
    ASSERT_TRUE(waitUntil([&] { return window_ == nullptr; }));
    view_.reaction = [] {};
    view_.keys.clear();
    WindowAttributes attributes;
    attributes.contentRect = {0, 0, 1280, 1024};
    window_ = platform_->makeViewWindow(attributes, view_);
    window_->makeKeyAndOrderFront();
    adapters_.catchUp();
    keyboard_.release(test::key::enter);
    EXPECT_TRUE(waitUntil([&] { return !isKeyboardHeld(); }));
    EXPECT_TRUE(view_.keys.empty());
    keyboard_.tap(letterB);
    EXPECT_TRUE(waitUntil([&] { return view_.keys.size() == 1; }));
}

} // namespace

} // namespace tarvex::contract
