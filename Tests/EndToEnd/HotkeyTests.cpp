#include "Tests/EndToEnd/ShellFixture.h"

#include <cstdint>

namespace tarvex::test {
namespace {

constexpr HotkeySetting editorHotkey{letter::eKeyCode, mask::control | mask::alt};
constexpr HotkeySetting preferencesHotkey{letter::pKeyCode, mask::super};

/// The two hotkeys, as the settings name them.
class Hotkeys : public ShellTest {
protected:
    Desktop& startWithHotkeys() {
        DesktopOptions options;
        options.settings = Settings{.editorHotkey = editorHotkey, .preferencesHotkey = preferencesHotkey};
        options.startsTarvex = false;
        Desktop& desktop = start(options);
        paintRoot(desktop);
        return desktop;
    }

    void expectEditorToOpenAndClose(Desktop& desktop) {
        bare_ = std::make_unique<Screenshot>(desktop.steadyScreen());
        focusBefore_ = focus(desktop);
        desktop.tarvex.allowOnStandardError("GridEditorController.showEditor");
        chord(desktop, {key::control, key::alt, letter::e});
        desktop.client.waitUntil([&] { return isDarkened(desktop); }, "the editor is open");
        desktop.keyboard.tap(key::escape);
        awaitClosed(desktop);
    }
};

INSTANTIATE_TEST_SUITE_P(Sessions, Hotkeys,
                         ::testing::ValuesIn(withFurtherPlain({{WindowManagerKind::openbox, false},
                                                               {WindowManagerKind::openbox, true},
                                                               {WindowManagerKind::xfwm4, false},
                                                               {WindowManagerKind::xfwm4Strict, false}})),
                         sessionName);

TEST_P(Hotkeys, OpenTheEditorWhicheverProgramIsActive) {
    Desktop& desktop = startWithHotkeys();
    TestWindow window(desktop.server.displayName());
    desktop.tarvex.start();
    click(desktop, window.managed().titleBarPoint());
    desktop.client.waitUntil([&] { return focus(desktop) == window.id(); }, "the window has the keyboard");
    expectEditorToOpenAndClose(desktop);
    EXPECT_EQ(focus(desktop), window.id());
}

TEST_P(Hotkeys, WorkWhateverLockIsOn) {
    Desktop& desktop = startWithHotkeys();
    desktop.tarvex.start();
    for (const std::uint32_t lock : {key::numLock, key::capsLock}) {
        desktop.keyboard.tap(lock);
        expectEditorToOpenAndClose(desktop);
    }
    desktop.keyboard.tap(key::numLock);
    expectEditorToOpenAndClose(desktop);
    desktop.keyboard.tap(key::capsLock);
}

TEST_P(Hotkeys, BringThePreferencesToTheFrontWithTheKeyboard) {
    Desktop& desktop = startWithHotkeys();
    TestWindowOptions besideThem;
    besideThem.geometry = {40, 40, 200, 120};
    TestWindow window(desktop.server.displayName(), besideThem);
    desktop.tarvex.start();
    for (int time = 0; time < 2; ++time) {
        // What brought the preferences to the front may still be under way: no person is as quick.
        const auto takesKeyboard = [&] {
            click(desktop, window.managed().requireVisibleFrame().center());
            return desktop.client.waitFor([&] { return focus(desktop) == window.id(); },
                                          Deadline(std::chrono::milliseconds(500)));
        };
        desktop.client.waitUntil(takesKeyboard, "the window has the keyboard");
        chord(desktop, {key::super, letter::p});
        awaitPreferences(desktop);
    }
    // The editor never covers them.
    chord(desktop, {key::control, key::alt, letter::e});
    desktop.tarvex.awaitOnStandardError("ApplicationController.handleOpenEditorHotkey");
    chord(desktop, {key::super, letter::p});
    desktop.windowManager->barrier();
    EXPECT_EQ(desktop.tarvex.standardError().find("GridEditorController.showEditor"), std::string::npos);
}

TEST_P(Hotkeys, BringBackPreferencesThatTheUserHasClosed) {
    Desktop& desktop = startWithHotkeys();
    TestWindowOptions besideThem;
    besideThem.geometry = {40, 40, 200, 120};
    TestWindow window(desktop.server.displayName(), besideThem);
    desktop.tarvex.start();
    for (int time = 0; time < 3; ++time) {
        chord(desktop, {key::super, letter::p});
        awaitPreferences(desktop);
        desktop.keyboard.tap(key::escape);
        awaitNoWindow(desktop, "Preferences");
        click(desktop, window.managed().requireVisibleFrame().center());
        desktop.client.waitUntil([&] { return focus(desktop) == window.id(); },
                                 "the window has the keyboard");
    }
}

TEST_P(Hotkeys, OneThatIsTakenIsLoggedAndTheOtherWorks) {
    Desktop& desktop = startWithHotkeys();
    XClient other(desktop.server.displayName());
    xcb_grab_key(other.connection(), 0, other.root(), XCB_MOD_MASK_4, letter::pServerCode,
                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    other.sync();
    desktop.tarvex.allowOnStandardError("RegisterEventHotKey failed: 10 (id=2)");
    desktop.tarvex.start();
    desktop.tarvex.awaitOnStandardError("RegisterEventHotKey failed: 10 (id=2)");
    desktop.awaitLog("RegisterEventHotKey failed: 10 (id=2)", 1);
    expectEditorToOpenAndClose(desktop);
}

TEST_P(Hotkeys, AreFreeForOthersAfterTheEnd) {
    Desktop& desktop = startWithHotkeys();
    desktop.tarvex.start();
    expectCleanExitNow();
    XClient other(desktop.server.displayName());
    for (const std::uint8_t keycode : {letter::eServerCode, letter::pServerCode}) {
        const Owned<xcb_generic_error_t> error(xcb_request_check(
            other.connection(), xcb_grab_key_checked(other.connection(), 0, other.root(), XCB_MOD_MASK_ANY,
                                                     keycode, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC)));
        EXPECT_EQ(error, nullptr) << "key " << int{keycode};
    }
}

} // namespace
} // namespace tarvex::test
