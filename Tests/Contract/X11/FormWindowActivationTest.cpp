#include "Tests/Contract/X11/FormWindowFixture.h"
#include "Tests/Contract/X11/MessageWitness.h"

#include <array>

namespace tarvex::contract {

namespace {

using test::WindowManagerKind;

/// Whoever manages the windows, the window comes up with the keyboard.
class FormWindowActivation : public FormWindowFixture,
                             public ::testing::WithParamInterface<WindowManagerKind> {
protected:
    void ask(std::string_view type, const std::array<std::uint32_t, 5>& data) {
        desktop_->client.sendToWindowManager(desktop_->native("Window"), type, data);
        desktop_->settle();
    }

    void askRoot(std::string_view type, std::uint32_t value) {
        desktop_->client.sendToWindowManager(desktop_->client.root(), type,
                                             {value, XCB_CURRENT_TIME, 0, 0, 0});
        desktop_->settle();
    }

    [[nodiscard]] std::vector<std::uint32_t> rootWords(std::string_view property) {
        return desktop_->client.words(desktop_->client.root(), property);
    }
};

// What Qt knows of the user's last input is older than the click on the other program.
TEST_P(FormWindowActivation, TakesTheKeyboardFromTheProgramThatIsInUse) {
    start(GetParam());
    show();
    desktop_->click(desktop_->pixelIn("Window", "button"));
    window_->close();
    for (int round = 0; round < 2; ++round) {
        desktop_->useOther();
        show();
        EXPECT_TRUE(window_->isVisible());
        window_->close();
    }
}

TEST_P(FormWindowActivation, ShownWindowThatIsCoveredComesToTheFront) {
    start(GetParam());
    show();
    const test::PixelPoint inside = desktop_->pixelIn("Window", "button");
    test::TestWindowOptions options;
    options.geometry = managed().requireVisibleFrame();
    test::TestWindow cover(desktop_->server.displayName(), options);
    desktop_->click(inside);
    ASSERT_GT(cover.buttonEventCount(), 0);
    ASSERT_TRUE(window_->isVisible());
    const std::size_t usesBefore = owner_.uses.size();
    show();
    desktop_->click(desktop_->pixelIn("Window", "button"));
    EXPECT_EQ(owner_.uses.size(), usesBefore + 1);
}

TEST_P(FormWindowActivation, ComesToThePresentDesktop) {
    start(GetParam());
    askRoot("_NET_NUMBER_OF_DESKTOPS", 2);
    ASSERT_TRUE(
        waitUntil([&] { return rootWords("_NET_NUMBER_OF_DESKTOPS") == std::vector<std::uint32_t>{2}; }));
    show();
    askRoot("_NET_CURRENT_DESKTOP", 1);
    ASSERT_TRUE(waitUntil([&] { return !desktop_->client.isViewable(desktop_->native("Window")); }));
    EXPECT_TRUE(window_->isVisible());
    show();
    EXPECT_EQ(rootWords("_NET_CURRENT_DESKTOP"), std::vector<std::uint32_t>{1});
    EXPECT_TRUE(desktop_->client.isViewable(desktop_->native("Window")));
}

TEST_P(FormWindowActivation, ShadedWindowUnfolds) {
    start(GetParam());
    show();
    ask("_NET_WM_STATE", {1, desktop_->client.atom("_NET_WM_STATE_SHADED"), 0, 2, 0});
    ASSERT_TRUE(waitUntil([&] { return managed().hasState("_NET_WM_STATE_SHADED"); }));
    desktop_->useOther();
    show();
    EXPECT_TRUE(waitUntil([&] { return !managed().hasState("_NET_WM_STATE_SHADED"); }));
    EXPECT_TRUE(waitUntil([&] { return desktop_->client.isViewable(desktop_->native("Window")); }));
}

TEST_P(FormWindowActivation, IconifiedWindowIsNotVisibleAndUnfolds) {
    start(GetParam());
    show();
    constexpr std::uint32_t iconicState = 3;
    ask("WM_CHANGE_STATE", {iconicState, 0, 0, 0, 0});
    ASSERT_TRUE(waitUntil([&] { return !window_->isVisible(); }));
    show();
    EXPECT_EQ(owner_.closings, 0) << "iconified is not closed";
    EXPECT_TRUE(waitUntil([&] { return window_->isVisible(); }));
    EXPECT_TRUE(desktop_->client.isViewable(desktop_->native("Window")));
}

TEST_P(FormWindowActivation, WishEndsWithTheWindowsClosing) {
    start(GetParam());
    desktop_->useOther();
    MessageWitness wishes(desktop_->server.displayName(), "_NET_ACTIVE_WINDOW");
    call();
    window_->close();
    desktop_->settle();
    EXPECT_FALSE(window_->isVisible());
    EXPECT_FALSE(desktop_->hasKeyboard("Window"));
    // Shown by nobody who wishes for it.
    desktop_->widget("Window").show();
    ASSERT_TRUE(waitUntil([&] { return managed().isManagedAndViewable(); }));
    desktop_->settle();
    EXPECT_TRUE(wishes.messages().empty());
}

INSTANTIATE_TEST_SUITE_P(WindowManagers, FormWindowActivation,
                         ::testing::Values(WindowManagerKind::openbox, WindowManagerKind::xfwm4,
                                           WindowManagerKind::xfwm4Strict),
                         [](const auto& info) { return nameOf(info.param); });

using FormWindowWithoutManager = FormWindowFixture;

TEST_F(FormWindowWithoutManager, TakesTheKeyboardByItself) {
    start(std::nullopt);
    show();
    desktop_->keyboard.tap(0xFF53);
    desktop_->settle();
    ASSERT_EQ(owner_.uses.size(), 1U);
    EXPECT_EQ(owner_.uses.front().value, 9);
}

} // namespace

} // namespace tarvex::contract
