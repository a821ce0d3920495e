#include "Tests/Contract/X11/ViewWindowFixture.h"

#include <algorithm>
#include <string>
#include <vector>

namespace tarvex::contract {

namespace {

constexpr std::uint32_t white = 0xFFFFFF;
constexpr std::uint32_t windowColor = 0x336699;

/// What may lie over the view window, and what may not. It is white.
class ViewWindowLevel : public ViewWindowTest {
protected:
    void SetUp() override {
        ViewWindowTest::SetUp();
        view_.scene = {{FillRect{whole_, {ColorName::white, 1}}}};
    }

    /// @param type of the window; none for an empty one
    static test::TestWindowOptions optionsOf(const std::string& type, bool isOverrideRedirect) {
        test::TestWindowOptions options;
        options.geometry = {150, 250, 100, 100};
        options.isOverrideRedirect = isOverrideRedirect;
        options.type = type;
        return options;
    }

    std::unique_ptr<test::TestWindow> show(const test::TestWindowOptions& options) {
        auto window = std::make_unique<test::TestWindow>(desktop_->server.displayName(), options);
        desktop_->settle();
        return window;
    }

    std::unique_ptr<test::TestWindow> showUntyped() {
        auto window = std::make_unique<test::TestWindow>(desktop_->server.displayName(),
                                                         optionsOf("_NET_WM_WINDOW_TYPE_NORMAL", true));
        xcb_delete_property(window->client().connection(), window->id(),
                            window->client().atom("_NET_WM_WINDOW_TYPE"));
        raise(*window);
        return window;
    }

    /// Puts the window where window managers put those that they look after.
    static void putInto(test::TestWindow& frame, const test::TestWindow& window) {
        xcb_reparent_window(frame.client().connection(), window.id(), frame.id(), 0, 0);
        frame.client().sync();
    }

    /// The root's child that is or holds the window.
    xcb_window_t topLevelOf(xcb_window_t window) {
        const auto children = desktop_->client.children(desktop_->client.root());
        const auto found = std::find_if(children.begin(), children.end(), [&](xcb_window_t child) {
            const auto inside = desktop_->client.children(child);
            return child == window || std::find(inside.begin(), inside.end(), window) != inside.end();
        });
        return found == children.end() ? xcb_window_t{XCB_WINDOW_NONE} : *found;
    }

    bool isAboveView(xcb_window_t window) {
        const auto children = desktop_->client.children(desktop_->client.root());
        return std::find(children.begin(), children.end(), topLevelOf(window)) >
               std::find(children.begin(), children.end(), native());
    }

    /// In the window's place.
    std::uint32_t colorThere() {
        desktop_->settle();
        return pixel(60, 60);
    }

    static const std::vector<std::string>& popups() {
        static const std::vector<std::string> types{
            "_NET_WM_WINDOW_TYPE_MENU", "_NET_WM_WINDOW_TYPE_POPUP_MENU", "_NET_WM_WINDOW_TYPE_DROPDOWN_MENU",
            "_NET_WM_WINDOW_TYPE_COMBO", "_NET_WM_WINDOW_TYPE_TOOLTIP", "_NET_WM_WINDOW_TYPE_NOTIFICATION",
            "_NET_WM_WINDOW_TYPE_DND",
            // What some toolkits say of all their windows.
            "_NET_WM_WINDOW_TYPE_NORMAL"};
        return types;
    }
};

TEST_P(ViewWindowLevel, PopupsStayAbove) {
    open();
    for (const std::string& type : popups()) {
        const auto popup = show(optionsOf(type, true));
        EXPECT_TRUE(isAboveView(popup->id())) << type;
        EXPECT_EQ(colorThere(), windowColor) << type;
    }
}

TEST_P(ViewWindowLevel, PopupThatSaysNothingOfItselfStaysAbove) {
    open();
    const auto menu = showUntyped();
    EXPECT_TRUE(isAboveView(menu->id()));
    EXPECT_EQ(colorThere(), windowColor);
}

TEST_P(ViewWindowLevel, FramesDoNotStayAbove) {
    open();
    const auto frame = show(optionsOf("_NET_WM_WINDOW_TYPE_NORMAL", true));
    makeManagersAndRaise(*frame);
    EXPECT_TRUE(waitUntil([&] { return !isAboveView(frame->id()); }));
    EXPECT_EQ(colorThere(), white);
}

TEST_P(ViewWindowLevel, ManagedWindowOfAnyOrdinaryTypeDoesNot) {
    open();
    for (const std::string type : {"_NET_WM_WINDOW_TYPE_NORMAL", "_NET_WM_WINDOW_TYPE_DIALOG",
                                   "_NET_WM_WINDOW_TYPE_MENU", "_NET_WM_WINDOW_TYPE_UTILITY"}) {
        const auto window = show(optionsOf(type, false));
        EXPECT_TRUE(waitUntil([&] { return !isAboveView(window->id()); })) << type;
    }
}

TEST_P(ViewWindowLevel, FramesOfPanelsAndNotificationsStayAboveAndOthersDoNot) {
    open();
    const auto frame = show(optionsOf("_NET_WM_WINDOW_TYPE_NORMAL", true));
    makeManagersAndRaise(*frame);
    for (const std::string type : {"_NET_WM_WINDOW_TYPE_DOCK", "_NET_WM_WINDOW_TYPE_NOTIFICATION"}) {
        const auto panel = show(optionsOf(type, true));
        putInto(*frame, *panel);
        raise(*frame);
        EXPECT_TRUE(isAboveView(frame->id())) << type;
        panel->close();
    }
    const auto window = show(optionsOf("_NET_WM_WINDOW_TYPE_MENU", true));
    putInto(*frame, *window);
    raise(*frame);
    EXPECT_TRUE(waitUntil([&] { return !isAboveView(frame->id()); }));
}

TEST_P(ViewWindowLevel, PopupAboveTheViewStaysThereWhenAWindowComesBetween) {
    open();
    const auto popup = show(optionsOf("_NET_WM_WINDOW_TYPE_POPUP_MENU", true));
    const auto frame = show(optionsOf("_NET_WM_WINDOW_TYPE_NORMAL", true));
    makeManagersAndRaise(*frame);
    EXPECT_TRUE(waitUntil([&] { return !isAboveView(frame->id()); }));
    raise(*popup);
    xcb_configure_window_value_list_t values{};
    values.sibling = popup->id();
    values.stack_mode = XCB_STACK_MODE_BELOW;
    xcb_configure_window_aux(frame->client().connection(), frame->id(),
                             XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE, &values);
    frame->client().sync();
    desktop_->settle();
    EXPECT_TRUE(waitUntil([&] { return !isAboveView(frame->id()); }));
    EXPECT_TRUE(isAboveView(popup->id()));
    EXPECT_EQ(colorThere(), windowColor);
}

TEST_P(ViewWindowLevel, ComesUpBelowManagedPanelsAndNotifications) {
    for (const std::string type : {"_NET_WM_WINDOW_TYPE_DOCK", "_NET_WM_WINDOW_TYPE_NOTIFICATION"}) {
        const auto panel = show(optionsOf(type, false));
        open();
        EXPECT_TRUE(waitUntil([&] { return isAboveView(panel->id()); })) << type;
        window_.reset();
    }
}

TEST_P(ViewWindowLevel, ComesUpBelowWhatBelongsAboveIt) {
    const auto window = show(optionsOf("_NET_WM_WINDOW_TYPE_NORMAL", false));
    const auto notification = show(optionsOf("_NET_WM_WINDOW_TYPE_NOTIFICATION", true));
    open();
    EXPECT_TRUE(waitUntil([&] { return isAboveView(notification->id()); }));
    EXPECT_FALSE(isAboveView(window->id()));
    EXPECT_EQ(colorThere(), windowColor);
    EXPECT_EQ(pixel(300, 300), white);
}

TEST_P(ViewWindowLevel, ComesUpAboveAPopupThatLiesUnderAWindow) {
    const auto notification = show(optionsOf("_NET_WM_WINDOW_TYPE_NOTIFICATION", true));
    const auto frame = show(optionsOf("_NET_WM_WINDOW_TYPE_NORMAL", true));
    makeManagersAndRaise(*frame);
    open();
    EXPECT_FALSE(isAboveView(frame->id()));
    EXPECT_EQ(colorThere(), white);
}

TEST_P(ViewWindowLevel, LockerStaysAboveAndAFrameOfItsSizeDoesNot) {
    open();
    test::TestWindowOptions options = optionsOf("_NET_WM_WINDOW_TYPE_NORMAL", true);
    options.geometry = {100, 200, 600, 400};
    const auto locker = show(options);
    EXPECT_TRUE(isAboveView(locker->id()));
    // The frames of some window managers are override-redirect as well.
    makeManagersAndRaise(*locker);
    EXPECT_TRUE(waitUntil([&] { return !isAboveView(locker->id()); }));
}

INSTANTIATE_TEST_SUITE_P(Desktops, ViewWindowLevel, ::testing::Values(Composition::none, Composition::picom),
                         compositionName);

} // namespace

} // namespace tarvex::contract
