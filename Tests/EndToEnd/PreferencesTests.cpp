#include "Tests/EndToEnd/ShellFixture.h"

#include <cmath>
#include <string>

namespace tarvex::test {
namespace {

// Where the controls are, from the top-left of the window's content.
constexpr PixelPoint sliderMiddle{140 + (640 - 240) / 2, 40};
constexpr PixelPoint recordEditor{460, 99};
constexpr PixelPoint clearEditor{570, 99};
constexpr PixelPoint recordPreferences{460, 139};
constexpr PixelPoint clearPreferences{570, 139};
constexpr int singleRow = 190;
constexpr int multiRow = 230;
constexpr int superBox = 208;
constexpr int shiftBox = 252;
constexpr int altBox = 296;
constexpr int controlBox = 340;
constexpr PixelPoint launchAtLogin{30, 280};
constexpr PixelPoint hideIcon{30, 338};
constexpr PixelPoint restoreSize{30, 396};
constexpr PixelPoint closeButton{575, 465};

/// The preferences, opened at the start.
class Preferences : public ShellTest {
protected:
    Desktop& startPreferences(const Settings& settings = {}) {
        DesktopOptions options;
        options.settings = settings;
        options.startsTarvex = false;
        Desktop& desktop = start(options);
        // A press on the program's own window is a press on no window that could be dragged.
        desktop.tarvex.allowOnStandardError("CopyElementAtPosition returned nil element");
        desktop.tarvex.start({"--open-preferences"});
        window_ = awaitPreferences(desktop);
        return desktop;
    }

    void use(Desktop& desktop, PixelPoint place) { clickIn(desktop, window_, place); }

    /// Presses a "Record…" button and waits until the next key counts.
    void record(Desktop& desktop, PixelPoint button) {
        use(desktop, button);
        desktop.client.waitUntil([&] { return isKeyboardTaken(desktop); }, "the recording has begun");
    }

    /// Uses a control and waits until the file holds the value.
    void useAndExpect(Desktop& desktop, PixelPoint place, const char* name, const nlohmann::json& value) {
        use(desktop, place);
        expectSetting(desktop, name, value);
    }

    xcb_window_t window_ = XCB_NONE;
};

INSTANTIATE_TEST_SUITE_P(Sessions, Preferences, plainSessions(), sessionName);

TEST_P(Preferences, StandInTheMiddleAndHaveTheirSize) {
    Desktop& desktop = startPreferences();
    const auto content = desktop.client.geometryInRoot(window_);
    ASSERT_TRUE(content.has_value());
    EXPECT_EQ(content->width, preferencesWidth);
    EXPECT_EQ(content->height, preferencesHeight);
    const PixelRect frame = ManagedWindow(desktop.client, window_).requireVisibleFrame();
    EXPECT_NEAR(frame.x + frame.width / 2.0, 640, 1);
    EXPECT_NEAR(frame.y + frame.height / 2.0, 512, 1);
}

TEST_P(Preferences, MarginIsSavedWithEveryStepOfTheSlider) {
    Desktop& desktop = startPreferences();
    const auto content = desktop.client.geometryInRoot(window_);
    ASSERT_TRUE(content.has_value());
    const auto at = [&](int x) { return PixelPoint{content->x + x, content->y + sliderMiddle.y}; };
    const auto margin = [&] { return config(desktop)["cellMarginPoints"].get<double>(); };
    // The handle of 8 of 40 lies a fifth of the way along.
    press(desktop, at(140 + 80));
    double before = margin();
    for (const int x : {260, 320, 400}) {
        desktop.pointer.glideTo(at(x));
        EXPECT_TRUE(desktop.client.waitFor([&] { return margin() > before + 2; })) << configText(desktop);
        before = margin();
    }
    desktop.pointer.release();
    // The last steps may be under way still.
    const double expected = 40.0 * (400 - 140) / 400;
    EXPECT_TRUE(desktop.client.waitFor([&] { return std::abs(margin() - expected) < 2; }))
        << margin() << " is far from " << expected;
    // The next drag keeps that distance.
    clickIn(desktop, window_, closeButton);
    awaitNoWindow(desktop, "Preferences");
    TestWindow window(desktop.server.displayName());
    const PixelRect area = desktop.screenArea();
    snapAndExpect(desktop, window.managed(), pointIn(area, rightHalf), zoneFrame(area, rightHalf, margin()));
}

TEST_P(Preferences, ModifierBoxesAreSaved) {
    Desktop& desktop =
        startPreferences({.singleModifiers = mask::super, .multiModifiers = mask::super | mask::shift});
    useAndExpect(desktop, {altBox, singleRow}, "singleSnapModifiers",
                 {{"modifiers", mask::super | mask::alt}});
    useAndExpect(desktop, {superBox, singleRow}, "singleSnapModifiers", {{"modifiers", mask::alt}});
    useAndExpect(desktop, {altBox, singleRow}, "singleSnapModifiers", {{"modifiers", 0}});
    useAndExpect(desktop, {controlBox, multiRow}, "multiSnapModifiers",
                 {{"modifiers", mask::super | mask::shift | mask::control}});
    useAndExpect(desktop, {shiftBox, multiRow}, "multiSnapModifiers",
                 {{"modifiers", mask::super | mask::control}});
}

TEST_P(Preferences, RestoringIsSaved) {
    Desktop& desktop = startPreferences();
    useAndExpect(desktop, restoreSize, "restoreWindowSizeOnUnsnap", false);
    useAndExpect(desktop, restoreSize, "restoreWindowSizeOnUnsnap", true);
}

TEST_P(Preferences, IconCanBeHiddenOnlyWithAHotkeyForThePreferences) {
    Desktop& desktop = startPreferences();
    use(desktop, hideIcon);
    record(desktop, recordPreferences);
    chord(desktop, {key::control, key::alt, letter::p});
    expectSetting(desktop, "openPreferencesHotkey",
                  {{"keyCode", letter::pKeyCode}, {"modifiers", mask::control | mask::alt}});
    EXPECT_NE(config(desktop)["hideMenuBarIcon"], true) << "the click on the disabled box counted";
    useAndExpect(desktop, hideIcon, "hideMenuBarIcon", true);
    // Without the hotkey nobody could come back, so the icon does.
    use(desktop, clearPreferences);
    expectNoSetting(desktop, "openPreferencesHotkey");
    expectSetting(desktop, "hideMenuBarIcon", false);
}

TEST_P(Preferences, LaunchAtLoginIsNotOfferedFromABuildTree) {
    Desktop& desktop = startPreferences();
    use(desktop, launchAtLogin);
    useAndExpect(desktop, restoreSize, "restoreWindowSizeOnUnsnap", false);
    EXPECT_NE(config(desktop)["launchAtLogin"], true);
    EXPECT_FALSE(
        std::filesystem::exists(desktop.tarvex.configPath().parent_path().parent_path() / "autostart"));
}

TEST_P(Preferences, CloseHidesThemAndTheProgramGoesOn) {
    Desktop& desktop = startPreferences();
    use(desktop, closeButton);
    awaitNoWindow(desktop, "Preferences");
    TestWindow window(desktop.server.displayName());
    const PixelRect area = desktop.screenArea();
    snapAndExpect(desktop, window.managed(), pointIn(area, rightHalf), zoneFrame(area, rightHalf));
}

TEST_P(Preferences, TitleBarOfThePreferencesIsNeverSnapped) {
    Desktop& desktop = startPreferences();
    const ManagedWindow preferences(desktop.client, window_);
    Drag drag(desktop, preferences);
    desktop.keyboard.press(key::super);
    drag.moveTo({900, 500});
    desktop.windowManager->barrier();
    const PixelRect dragged = preferences.requireVisibleFrame();
    drag.drop();
    desktop.keyboard.release(key::super);
    awaitPointerFree(desktop);
    // Handled after the release of the button.
    useAndExpect(desktop, restoreSize, "restoreWindowSizeOnUnsnap", false);
    desktop.windowManager->barrier();
    EXPECT_EQ(preferences.requireVisibleFrame(), dragged);
    EXPECT_EQ(desktop.tarvex.countInLog("updateOverlayState"), 0);
}

TEST_P(Preferences, RecordedHotkeyOpensTheEditorOnceTheyAreClosed) {
    Desktop& desktop = startPreferences();
    record(desktop, recordEditor);
    chord(desktop, {key::super, key::shift, letter::e});
    expectSetting(desktop, "openEditorHotkey",
                  {{"keyCode", letter::eKeyCode}, {"modifiers", mask::super | mask::shift}});
    // Never over the preferences.
    awaitGrabbed(desktop, letter::eServerCode, XCB_MOD_MASK_4 | XCB_MOD_MASK_SHIFT);
    // The recording lets go of the keyboard when it has seen the release of the key.
    desktop.client.waitUntil([&] { return !isKeyboardTaken(desktop); }, "the recording has ended");
    chord(desktop, {key::super, key::shift, letter::e});
    desktop.tarvex.awaitOnStandardError("ApplicationController.handleOpenEditorHotkey");
    useAndExpect(desktop, restoreSize, "restoreWindowSizeOnUnsnap", false);
    EXPECT_EQ(desktop.tarvex.standardError().find("GridEditorController.showEditor"), std::string::npos);

    use(desktop, closeButton);
    awaitNoWindow(desktop, "Preferences");
    paintRoot(desktop);
    bare_ = std::make_unique<Screenshot>(desktop.steadyScreen());
    focusBefore_ = focus(desktop);
    desktop.tarvex.allowOnStandardError("GridEditorController.showEditor");
    desktop.tarvex.allowOnStandardError("CopyElementAtPosition returned nil element");
    chord(desktop, {key::super, key::shift, letter::e});
    desktop.client.waitUntil([&] { return isDarkened(desktop); }, "the editor is open");
    desktop.keyboard.tap(key::escape);
    awaitClosed(desktop);
}

TEST_P(Preferences, RecordingTakesACombinationThatAnotherProgramHasGrabbed) {
    Desktop& desktop = startPreferences();
    XClient other(desktop.server.displayName());
    xcb_grab_key(other.connection(), 0, other.root(), XCB_MOD_MASK_4, letter::eServerCode,
                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    other.sync();
    record(desktop, recordEditor);
    chord(desktop, {key::super, letter::e});
    expectSetting(desktop, "openEditorHotkey", {{"keyCode", letter::eKeyCode}, {"modifiers", mask::super}});
    // It is the other program's all the same.
    desktop.tarvex.allowOnStandardError("RegisterEventHotKey failed: 10 (id=1)");
    desktop.tarvex.awaitOnStandardError("RegisterEventHotKey failed: 10 (id=1)");
}

TEST_P(Preferences, EscapeEndsARecordingAndKeepsTheHotkey) {
    Desktop& desktop = startPreferences({.editorHotkey = HotkeySetting{letter::eKeyCode, mask::control}});
    record(desktop, recordEditor);
    desktop.keyboard.tap(key::escape);
    useAndExpect(desktop, restoreSize, "restoreWindowSizeOnUnsnap", false);
    expectSetting(desktop, "openEditorHotkey", {{"keyCode", letter::eKeyCode}, {"modifiers", mask::control}});
    EXPECT_TRUE(findWindow(desktop, "Preferences").has_value());
    use(desktop, clearEditor);
    expectNoSetting(desktop, "openEditorHotkey");
}

TEST_P(Preferences, ClosingThemByTheTitleBarEndsARecording) {
    constexpr HotkeySetting preferencesHotkey{letter::pKeyCode, mask::super};
    Desktop& desktop = startPreferences({.preferencesHotkey = preferencesHotkey});
    record(desktop, recordEditor);
    constexpr std::uint32_t fromAPager = 2;
    desktop.client.sendToWindowManager(window_, "_NET_CLOSE_WINDOW", {XCB_CURRENT_TIME, fromAPager, 0, 0, 0});
    awaitNoWindow(desktop, "Preferences");
    desktop.client.waitUntil([&] { return !isKeyboardTaken(desktop); }, "the recording has ended");
    chord(desktop, {key::super, letter::p});
    window_ = awaitPreferences(desktop);
    desktop.keyboard.tap(key::tab);
    chord(desktop, {key::control, letter::e});
    useAndExpect(desktop, restoreSize, "restoreWindowSizeOnUnsnap", false);
    EXPECT_FALSE(isKeyboardTaken(desktop));
    expectNoSetting(desktop, "openEditorHotkey");
}

// What the settings cannot say would be another combination, and taken from every program.
TEST_P(Preferences, RecordingWaitsOnWhileAltGrIsHeld) {
    Desktop& desktop = startPreferences();
    record(desktop, recordEditor);
    chord(desktop, {key::altGr, letter::e});
    EXPECT_TRUE(isKeyboardTaken(desktop));
    chord(desktop, {key::super, letter::p});
    expectSetting(desktop, "openEditorHotkey", {{"keyCode", letter::pKeyCode}, {"modifiers", mask::super}});
    EXPECT_EQ(desktop.tarvex.countInLog("OpenEditor hotkey: keyCode=" + std::to_string(letter::eKeyCode)), 0);
}

TEST_P(Preferences, UnreadableSettingsAreKeptBeforeTheyAreOverwritten) {
    Desktop& desktop = startPreferences();
    desktop.tarvex.allowOnStandardError("Failed to decode config: ");
    desktop.tarvex.writeConfig("{\"grids\": 7}");
    useAndExpect(desktop, restoreSize, "restoreWindowSizeOnUnsnap", false);
    std::ifstream kept(desktop.tarvex.configPath().string() + ".bak", std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(kept), {}), "{\"grids\": 7}");
}

TEST_P(Preferences, WorkInAWaylandSessionToo) {
    DesktopOptions options;
    options.settings = Settings{};
    options.startsTarvex = false;
    Desktop& desktop = start(options);
    desktop.tarvex.setVariable("XDG_SESSION_TYPE", "wayland");
    desktop.tarvex.setVariable("QT_QPA_PLATFORM", "wayland");
    desktop.tarvex.allowOnStandardError("CopyElementAtPosition returned nil element");
    desktop.tarvex.launch({"--open-preferences"});
    window_ = awaitPreferences(desktop);
    useAndExpect(desktop, restoreSize, "restoreWindowSizeOnUnsnap", false);
    // This X server is nobody's guest, whatever the environment says.
    desktop.tarvex.awaitOnStandardError("EventTapManager.start: event tap installed");
}

TEST_P(Preferences, ALinkStaysALink) {
    Desktop& desktop = startPreferences();
    const auto target = desktop.server.scratch().write("dotfiles/tarvex.json", Settings{.margin = 3}.json());
    std::filesystem::remove(desktop.tarvex.configPath());
    std::filesystem::create_symlink(target, desktop.tarvex.configPath());
    useAndExpect(desktop, restoreSize, "restoreWindowSizeOnUnsnap", false);
    expectSetting(desktop, "cellMarginPoints", 3.0);
    EXPECT_TRUE(std::filesystem::is_symlink(desktop.tarvex.configPath()));
    EXPECT_TRUE(std::filesystem::is_regular_file(std::filesystem::symlink_status(target)));
}

} // namespace
} // namespace tarvex::test
