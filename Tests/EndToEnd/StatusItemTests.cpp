#include "Tests/EndToEnd/ShellFixture.h"
#include "Tests/Support/X11/SessionBus.h"
#include "Tests/Support/X11/TrayHost.h"

#include <algorithm>
#include <initializer_list>

namespace tarvex::test {
namespace {

constexpr PixelPoint hideIcon{30, 338};

/// Sessions with a tray, or one that comes later.
class StatusItem : public ShellTest {
protected:
    Desktop& startWithTray(const Settings& settings = {}, const std::vector<std::string>& arguments = {}) {
        Desktop& desktop = startWithoutTarvex(settings);
        tray_ = std::make_unique<TrayHost>(desktop.server);
        desktop.tarvex.start(arguments);
        awaitIcons(desktop, 1);
        return desktop;
    }

    Desktop& startWithoutTarvex(const Settings& settings) {
        DesktopOptions options;
        options.settings = settings;
        options.startsTarvex = false;
        Desktop& desktop = start(options);
        desktop.tarvex.allowOnStandardError("CopyElementAtPosition returned nil element");
        desktop.tarvex.allowOnStandardError("GridEditorController.showEditor");
        return desktop;
    }

    void awaitIcons(Desktop& desktop, std::size_t count) {
        desktop.client.waitUntil([&] { return tray_->icons().size() == count; },
                                 std::to_string(count) + " icons in the tray");
    }

    /// Clicks on the icon, and on the entry that the keys lead to.
    void choose(Desktop& desktop, std::initializer_list<std::uint32_t> keys) {
        const std::size_t before = popUps(desktop);
        click(desktop, tray_->icons().front().center());
        desktop.client.waitUntil([&] { return popUps(desktop) > before; }, "the menu is open");
        desktop.client.waitUntil([&] { return isKeyboardTaken(desktop); }, "the menu has the keyboard");
        for (const std::uint32_t keysym : keys) {
            desktop.keyboard.tap(keysym);
        }
        desktop.keyboard.tap(key::enter);
    }

    /// Windows that no window manager cares for and that are large enough for a menu.
    static std::size_t popUps(Desktop& desktop) {
        const auto children = desktop.client.children(desktop.client.root());
        return static_cast<std::size_t>(
            std::count_if(children.begin(), children.end(), [&](xcb_window_t child) {
                const auto attributes = desktop.client.attributes(child);
                const auto geometry = desktop.client.geometryInRoot(child);
                return attributes && attributes->override_redirect != 0 &&
                       attributes->map_state == XCB_MAP_STATE_VIEWABLE && geometry && geometry->width > 60 &&
                       geometry->height > 60 && geometry->width < 500;
            }));
    }

    std::unique_ptr<TrayHost> tray_;
};

INSTANTIATE_TEST_SUITE_P(Sessions, StatusItem, plainSessions(), sessionName);

TEST_P(StatusItem, MenuOpensTheAboutWindow) {
    Desktop& desktop = startWithTray();
    choose(desktop, {key::down});
    const xcb_window_t window = awaitWindow(desktop, "About Tarvex");
    const auto content = desktop.client.geometryInRoot(window);
    ASSERT_TRUE(content.has_value());
    EXPECT_EQ(content->width, 420);
    EXPECT_EQ(content->height, 200);
}

TEST_P(StatusItem, MenuOpensThePreferences) {
    Desktop& desktop = startWithTray();
    choose(desktop, {key::down, key::down});
    awaitPreferences(desktop);
}

TEST_P(StatusItem, MenuOpensTheEditorOfADisplay) {
    Desktop& desktop = startWithTray();
    paintRoot(desktop);
    bare_ = std::make_unique<Screenshot>(desktop.steadyScreen());
    focusBefore_ = focus(desktop);
    choose(desktop, {key::down, key::down, key::down, key::right});
    desktop.client.waitUntil([&] { return isDarkened(desktop); }, "the editor is open");
    desktop.keyboard.tap(key::escape);
    awaitClosed(desktop);
}

TEST_P(StatusItem, MenuEndsTheProgram) {
    Desktop& desktop = startWithTray();
    choose(desktop, {key::up});
    EXPECT_EQ(desktop.tarvex.process().waitForExit(), (ExitStatus{0, std::nullopt}));
    awaitIcons(desktop, 0);
    expectEndedAlready();
}

TEST_P(StatusItem, AppearsWhenATrayStartsLater) {
    Desktop& desktop = startWithoutTarvex({});
    desktop.tarvex.start();
    tray_ = std::make_unique<TrayHost>(desktop.server);
    awaitIcons(desktop, 1);
    tray_->end();
    tray_->start();
    awaitIcons(desktop, 1);
    choose(desktop, {key::down, key::down});
    awaitPreferences(desktop);
}

TEST_P(StatusItem, AppearsAndServesWhileTheSessionBusHangs) {
    const SessionBus bus;
    Desktop& desktop = startWithoutTarvex({});
    desktop.tarvex.setVariable("DBUS_SESSION_BUS_ADDRESS", bus.address());
    desktop.tarvex.start({"--open-preferences"});
    awaitPreferences(desktop);
    desktop.keyboard.tap(key::escape);
    awaitNoWindow(desktop, "Preferences");
    bus.freeze();
    tray_ = std::make_unique<TrayHost>(desktop.server);
    awaitIcons(desktop, 1);
    desktop.settle();
    choose(desktop, {key::down, key::down});
    awaitPreferences(desktop);
}

TEST_P(StatusItem, GoesAndComesBackAsThePreferencesSay) {
    Desktop& desktop = startWithTray({.preferencesHotkey = HotkeySetting{letter::pKeyCode, mask::super}},
                                     {"--open-preferences"});
    const xcb_window_t preferences = awaitPreferences(desktop);
    clickIn(desktop, preferences, hideIcon);
    awaitIcons(desktop, 0);
    expectSetting(desktop, "hideMenuBarIcon", true);
    clickIn(desktop, preferences, hideIcon);
    awaitIcons(desktop, 1);
    expectSetting(desktop, "hideMenuBarIcon", false);
}

TEST_P(StatusItem, KeysOfItsMenuAreNotRecorded) {
    Desktop& desktop = startWithTray({}, {"--open-preferences"});
    const xcb_window_t preferences = awaitPreferences(desktop);
    const PixelPoint recordEditor{460, 99};
    clickIn(desktop, preferences, recordEditor);
    choose(desktop, {key::down});
    awaitWindow(desktop, "About Tarvex");
    EXPECT_FALSE(config(desktop).contains("openEditorHotkey")) << configText(desktop);
}

TEST_P(StatusItem, StaysAwayFromTheStartWhenItIsHidden) {
    Desktop& desktop = startWithoutTarvex(
        {.preferencesHotkey = HotkeySetting{letter::pKeyCode, mask::super}, .hidesIcon = true});
    tray_ = std::make_unique<TrayHost>(desktop.server);
    desktop.tarvex.start();
    chord(desktop, {key::super, letter::p});
    const xcb_window_t preferences = awaitPreferences(desktop);
    EXPECT_EQ(tray_->icons().size(), 0U);
    clickIn(desktop, preferences, hideIcon);
    awaitIcons(desktop, 1);
}

} // namespace
} // namespace tarvex::test
