#include "Tests/Unit/ApplicationControllerFixture.h"

namespace tarvex {

namespace {

using Lines = std::vector<std::string>;

constexpr HotkeyDefinition editorKeys{14, 0x300};
constexpr HotkeyDefinition preferencesKeys{35, 0x900};

TEST_F(ApplicationControllerTest, NothingIsShownBeforeItStarts) {
    make();
    EXPECT_FALSE(preferences().isVisible);
    EXPECT_FALSE(about().isVisible);
    EXPECT_FALSE(statusBar_.hasItem());
    EXPECT_TRUE(hotkeys_.registered().empty());
}

TEST_F(ApplicationControllerTest, StartBringsEverythingUp) {
    store([](TarvexConfigFields& fields) {
        fields.openEditorHotkey = editorKeys;
        fields.openPreferencesHotkey = preferencesKeys;
    });
    start();
    EXPECT_FALSE(preferences().isVisible);
    EXPECT_TRUE(statusBar_.hasItem());
    EXPECT_EQ(statusBar_.appearance->toolTip, "Tarvex");
    EXPECT_TRUE(statusBar_.menu.has_value());
    EXPECT_EQ(hotkeys_.registered(),
              (std::vector<SimulatedHotkey>{{14, 0x300, {HotkeyManager::signature, 1}},
                                            {35, 0x900, {HotkeyManager::signature, 2}}}));
    const Lines lines = journal_.about({"status item", "log: Open", "log: Hotkey", "login", "log: Acc"});
    EXPECT_EQ(lines, (Lines{"status item made", "log: OpenEditor hotkey: keyCode=14 modifiers=768",
                            "log: HotkeyManager.unregister id=1",
                            "log: HotkeyManager.register id=1 keyCode=14 modifiers=768",
                            "log: OpenPreferences hotkey: keyCode=35 modifiers=2304",
                            "log: HotkeyManager.unregister id=2",
                            "log: HotkeyManager.register id=2 keyCode=35 modifiers=2304",
                            "log: AccessibilityService.ensureTrusted: trusted=true"}));
}

TEST_F(ApplicationControllerTest, WithoutHotkeysBothAreUnregistered) {
    start();
    EXPECT_TRUE(hotkeys_.registered().empty());
    const Lines expected{"OpenEditor hotkey: nil -> unregister", "HotkeyManager.unregister id=1",
                         "OpenPreferences hotkey: nil -> unregister", "HotkeyManager.unregister id=2"};
    EXPECT_EQ(desktop_.fileLog().lines(), expected);
}

TEST_F(ApplicationControllerTest, UnreadableSettingsCountAsTheDefaults) {
    desktop_.configFiles().put("{");
    start();
    EXPECT_TRUE(statusBar_.hasItem());
    EXPECT_TRUE(hotkeys_.registered().empty());
    EXPECT_EQ(desktop_.configFiles().text(), "{");
}

TEST_F(ApplicationControllerTest, WindowsSnapOnceItHasStarted) {
    start();
    const int window = desktop_.openWindow({100, 100, 400, 300});
    desktop_.grabWindow(window);
    desktop_.holdModifiers(event_flag::command);
    desktop_.moveTo({300, 500});
    desktop_.releaseButton();
    EXPECT_EQ(desktop_.windowFrame(window), (Rect{8, 8, 628, 1008}));
}

TEST_F(ApplicationControllerTest, EditorHotkeyOpensTheEditorOfTheMainDisplay) {
    store([](TarvexConfigFields& fields) { fields.openEditorHotkey = editorKeys; });
    start();
    press(1);
    ASSERT_EQ(viewWindows_.open().size(), 1U);
    EXPECT_EQ(viewWindows_.open().front()->attributes.contentRect, (Rect{0, 0, 1280, 1024}));
    EXPECT_EQ(journal_.about({"log: ApplicationController", "file log: ApplicationController"}),
              (Lines{"log: ApplicationController.handleOpenEditorHotkey",
                     "file log: ApplicationController.handleOpenEditorHotkey"}));
}

TEST_F(ApplicationControllerTest, EditorIsNeverOpenedOverThePreferences) {
    store([](TarvexConfigFields& fields) { fields.openEditorHotkey = editorKeys; });
    start();
    application_->showPreferences();
    press(1);
    EXPECT_TRUE(viewWindows_.open().empty());
    EXPECT_EQ(journal_.about({"log: ApplicationController"}).size(), 1U);
    preferences().use("closeButton");
    press(1);
    EXPECT_EQ(viewWindows_.open().size(), 1U);
}

TEST_F(ApplicationControllerTest, PreferencesHotkeyShowsThemInTheMiddle) {
    store([](TarvexConfigFields& fields) { fields.openPreferencesHotkey = preferencesKeys; });
    start();
    journal_.clear();
    press(2);
    EXPECT_EQ(journal_.about({"\"", "activate"}),
              (Lines{"\"Preferences\" center", "\"Preferences\" key and front", "activate"}));
}

TEST_F(ApplicationControllerTest, MenuOpensItsWindows) {
    start();
    journal_.clear();
    statusBar_.choose("About Tarvex");
    statusBar_.choose("Preferences\u2026");
    statusBar_.choose("About Tarvex");
    EXPECT_EQ(journal_.about({"\"", "activate"}),
              (Lines{"\"About Tarvex\" center", "\"About Tarvex\" key and front", "activate",
                     "\"Preferences\" center", "\"Preferences\" key and front", "activate",
                     "\"About Tarvex\" center", "\"About Tarvex\" key and front", "activate"}));
}

TEST_F(ApplicationControllerTest, MenuEditsTheChosenDisplay) {
    start();
    const auto display = statusBar_.menu->items.at(3).submenu->at(1);
    DisplayService displays(LoggerFactory(desktop_.log()).makeLogger("DisplayService"), desktop_.displays(),
                            desktop_.displays());
    EXPECT_EQ(display.title, displays.getDisplayTitle(rightDisplay));
    statusBar_.choose(display.title);
    ASSERT_EQ(viewWindows_.open().size(), 1U);
    EXPECT_EQ(viewWindows_.open().front()->attributes.contentRect, (Rect{1280, 0, 1920, 1080}));
}

TEST_F(ApplicationControllerTest, QuitEndsTheProgram) {
    start();
    statusBar_.choose("Quit");
    EXPECT_EQ(terminations_, 1);
}

TEST_F(ApplicationControllerTest, HiddenIconIsNotMade) {
    store([](TarvexConfigFields& fields) {
        fields.hideMenuBarIcon = true;
        fields.openPreferencesHotkey = preferencesKeys;
    });
    start();
    EXPECT_EQ(statusBar_.made(), 0);
}

TEST_F(ApplicationControllerTest, IconComesAndGoesWithItsSetting) {
    store([](TarvexConfigFields& fields) { fields.openPreferencesHotkey = preferencesKeys; });
    start();
    preferences().use("hideMenuBarIconCheckbox", 1);
    EXPECT_FALSE(statusBar_.hasItem());
    preferences().use("hideMenuBarIconCheckbox", 0);
    EXPECT_TRUE(statusBar_.hasItem());
    EXPECT_EQ(statusBar_.made(), 2);
    preferences().use("restoreWindowSizeOnUnsnapCheckbox", 0);
    EXPECT_EQ(statusBar_.made(), 2);
}

TEST_F(ApplicationControllerTest, RecordedHotkeysWorkAtOnce) {
    start();
    preferences().use("recordHotkeyButton");
    static_cast<void>(keyMonitors_.press({14, event_flag::command | event_flag::shift}));
    EXPECT_EQ(registeredIds(), std::vector<std::uint32_t>{1});
    preferences().use("recordPreferencesHotkeyButton");
    static_cast<void>(keyMonitors_.press({35, event_flag::command}));
    EXPECT_EQ(registeredIds(), (std::vector<std::uint32_t>{1, 2}));
    preferences().use("clearHotkeyButton");
    EXPECT_EQ(registeredIds(), std::vector<std::uint32_t>{2});
    preferences().use("clearPreferencesHotkeyButton");
    EXPECT_TRUE(hotkeys_.registered().empty());
}

// Who acts on a change, told by the lines that the registrations leave.
TEST_F(ApplicationControllerTest, OtherSettingsRegisterThePreferencesHotkeyAnewAndNotTheEditors) {
    store([](TarvexConfigFields& fields) {
        fields.openEditorHotkey = editorKeys;
        fields.openPreferencesHotkey = preferencesKeys;
    });
    start();
    const auto registrationsOf = [&](const std::string& control, double value) {
        desktop_.fileLog().clear();
        preferences().use(control, value);
        Lines lines;
        for (const std::string& line : desktop_.fileLog().lines()) {
            if (line.starts_with("Open")) {
                lines.push_back(line.substr(0, line.find(' ')));
            }
        }
        return lines;
    };
    for (const auto& [control, value] :
         std::vector<std::pair<std::string, double>>{{"marginSlider", 3},
                                                     {"singleShiftCheckbox", 1},
                                                     {"multiShiftCheckbox", 0},
                                                     {"launchAtLoginCheckbox", 1},
                                                     {"hideMenuBarIconCheckbox", 1},
                                                     {"restoreWindowSizeOnUnsnapCheckbox", 0}}) {
        EXPECT_EQ(registrationsOf(control, value), Lines{"OpenPreferences"}) << control;
    }
    EXPECT_EQ(registrationsOf("clearHotkeyButton", 0), (Lines{"OpenEditor", "OpenPreferences"}));
    // By its own notification, and by the one of every change.
    EXPECT_EQ(registrationsOf("clearPreferencesHotkeyButton", 0).front(), "OpenPreferences");
    EXPECT_GE(registrationsOf("clearPreferencesHotkeyButton", 0).size(), 2U);
}

TEST_F(ApplicationControllerTest, LoginItemIsRegisteredAndUnregisteredWithItsSetting) {
    start();
    preferences().use("launchAtLoginCheckbox", 1);
    preferences().use("marginSlider", 3);
    preferences().use("launchAtLoginCheckbox", 0);
    EXPECT_EQ(journal_.about({"login item"}), (Lines{"login item register", "login item unregister"}));
}

TEST_F(ApplicationControllerTest, SystemWinsAtStartWithoutAnybodyBeingTold) {
    loginItem_.current = LoginItemStatus::enabled;
    start();
    EXPECT_EQ(stored()->launchAtLogin(), true);
    EXPECT_TRUE(journal_.about({"login item"}).empty());
    EXPECT_EQ(statusBar_.made(), 1);
    EXPECT_EQ(desktop_.fileLog().lines().size(), 4U) << "the hotkeys are registered once";
}

TEST_F(ApplicationControllerTest, StoredWishGivesWayToTheSystemAtStart) {
    store([](TarvexConfigFields& fields) { fields.launchAtLogin = true; });
    start();
    EXPECT_EQ(stored()->launchAtLogin(), false);
    EXPECT_TRUE(journal_.about({"login item"}).empty());
}

TEST_F(ApplicationControllerTest, PendingApprovalCountsAsRegistered) {
    loginItem_.current = LoginItemStatus::requiresApproval;
    store([](TarvexConfigFields& fields) { fields.launchAtLogin = true; });
    start();
    EXPECT_EQ(stored()->launchAtLogin(), true);
    EXPECT_TRUE(journal_.about({"login item"}).empty());
    preferences().use("launchAtLoginCheckbox", 0);
    EXPECT_EQ(journal_.about({"login item"}), Lines{"login item unregister"});
}

TEST_F(ApplicationControllerTest, RefusalIsNotTriedAgainUntilTheWishChanges) {
    start();
    loginItem_.refuses = true;
    preferences().use("launchAtLoginCheckbox", 1);
    preferences().use("marginSlider", 3);
    EXPECT_EQ(journal_.about({"login item"}), Lines{"login item register"});
    EXPECT_EQ(stored()->launchAtLogin(), true);
    preferences().use("launchAtLoginCheckbox", 0);
    preferences().use("launchAtLoginCheckbox", 1);
    EXPECT_EQ(journal_.about({"login item"}), (Lines{"login item register", "login item register"}));
}

TEST_F(ApplicationControllerTest, OutsideABundleTheLoginItemIsNeverTouched) {
    loginItem_.isBundled = false;
    loginItem_.current = LoginItemStatus::enabled;
    start();
    EXPECT_TRUE(journal_.about({"login item"}).empty());
    EXPECT_EQ(loginItem_.current, LoginItemStatus::enabled);
}

TEST_F(ApplicationControllerTest, VersionIsThatOfThePackage) {
    bundle_.packed = "1.4.2\n";
    make();
    EXPECT_EQ(about().control("versionLabel").text, "Version 1.4.2");
}

TEST_F(ApplicationControllerTest, CallbacksThatOutliveItDoNothing) {
    store([](TarvexConfigFields& fields) { fields.openEditorHotkey = editorKeys; });
    start();
    hotkeys_.press({HotkeyManager::signature, 1});
    application_.reset();
    desktop_.mainLoop().runPosted();
    EXPECT_TRUE(viewWindows_.made().empty());
    EXPECT_FALSE(statusBar_.hasItem());
    EXPECT_TRUE(hotkeys_.registered().empty());
    center_.post(notification::configChanged);
    EXPECT_EQ(statusBar_.made(), 1);
}

} // namespace

} // namespace tarvex
