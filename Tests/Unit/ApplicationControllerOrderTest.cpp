#include "Tests/Unit/ApplicationControllerFixture.h"

namespace tarvex {

namespace {

using Lines = std::vector<std::string>;

constexpr HotkeyDefinition editorKeys{14, 0x300};
constexpr HotkeyDefinition preferencesKeys{35, 0x900};

const Lines editorRegistered{"log: OpenEditor hotkey: keyCode=14 modifiers=768",
                             "log: HotkeyManager.unregister id=1",
                             "log: HotkeyManager.register id=1 keyCode=14 modifiers=768"};
const Lines preferencesRegistered{"log: OpenPreferences hotkey: keyCode=35 modifiers=2304",
                                  "log: HotkeyManager.unregister id=2",
                                  "log: HotkeyManager.register id=2 keyCode=35 modifiers=2304"};

/// Who is called, and in what order, told by the lines that each leaves.
class ApplicationOrder : public ApplicationControllerTest {
protected:
    using Setter = std::function<void(PreferencesController&, bool)>;

    void storeState(bool isOn) {
        store([&](TarvexConfigFields& fields) {
            fields.openEditorHotkey = editorKeys;
            fields.openPreferencesHotkey = preferencesKeys;
            fields.hideMenuBarIcon = isOn;
            fields.launchAtLogin = isOn;
        });
    }

    [[nodiscard]] Lines lines() {
        return journal_.about(
            {"status item", "login item", "log: Open", "log: HotkeyManager", "log: AccessibilityService"});
    }

    PreferencesController settings_{
        std::make_shared<ConfigStore>(LoggerFactory(desktop_.log()).makeLogger("ConfigStore"),
                                      desktop_.configFiles()),
        center_};
};

// Before each setter the file is edited by hand, so that icon and login item have something to do as well.
TEST_F(ApplicationOrder, EverySetterIsFollowedByIconLoginItemAndPreferencesHotkey) {
    const std::vector<std::pair<Lines, Setter>> setters{
        {{}, [](PreferencesController& settings, bool isOn) { settings.setLaunchAtLogin(isOn); }},
        {{}, [](PreferencesController& settings, bool) { settings.setCellMarginPoints(3); }},
        {editorRegistered,
         [](PreferencesController& settings, bool) { settings.setOpenEditorHotkey(editorKeys); }},
        {preferencesRegistered,
         [](PreferencesController& settings, bool) { settings.setOpenPreferencesHotkey(preferencesKeys); }},
        {{}, [](PreferencesController& settings, bool) { settings.setSingleSnapModifiers(0x200); }},
        {{}, [](PreferencesController& settings, bool) { settings.setMultiSnapModifiers(0x800); }},
        {{}, [](PreferencesController& settings, bool isOn) { settings.setHideMenuBarIcon(isOn); }},
        {{}, [](PreferencesController& settings, bool) { settings.setRestoreWindowSizeOnUnsnap(false); }},
    };
    storeState(false);
    start();
    bool isOn = false;
    for (const auto& [before, set] : setters) {
        isOn = !isOn;
        storeState(isOn);
        journal_.clear();
        set(settings_, isOn);
        Lines expected = before;
        expected.emplace_back(isOn ? "status item removed" : "status item made");
        expected.emplace_back(isOn ? "login item register" : "login item unregister");
        expected.insert(expected.end(), preferencesRegistered.begin(), preferencesRegistered.end());
        EXPECT_EQ(lines(), expected);
    }
}

TEST_F(ApplicationOrder, StartObservesThenAppliesTheLoginItemThenSnaps) {
    // What cannot be saved cannot give way to the system.
    storeState(true);
    make();
    desktop_.configFiles().setFull(true);
    // Heard only by who observes already.
    loginItem_.onRequest = [this] { center_.post(notification::hotkeyChanged); };
    application_->start();
    Lines expected = editorRegistered;
    expected.insert(expected.end(), preferencesRegistered.begin(), preferencesRegistered.end());
    expected.emplace_back("login item register");
    expected.insert(expected.end(), editorRegistered.begin(), editorRegistered.end());
    expected.emplace_back("log: AccessibilityService.ensureTrusted: trusted=true");
    EXPECT_EQ(lines(), expected);
    EXPECT_EQ(stored()->launchAtLogin(), true);
}

TEST_F(ApplicationOrder, WishThatCannotBeSavedIsAppliedOnceAndNotRepeated) {
    loginItem_.current = LoginItemStatus::enabled;
    storeState(false);
    desktop_.configFiles().setFull(true);
    start();
    EXPECT_EQ(journal_.about({"login item"}), Lines{"login item unregister"});
    loginItem_.current = LoginItemStatus::enabled;
    settings_.setCellMarginPoints(3);
    EXPECT_EQ(journal_.about({"login item"}), Lines{"login item unregister"});
    EXPECT_EQ(stored()->cellMarginPoints(), 8);
}

TEST_F(ApplicationOrder, WhatTheSystemIsToldElsewhereAfterTheStartStands) {
    start();
    loginItem_.current = LoginItemStatus::enabled;
    settings_.setCellMarginPoints(3);
    EXPECT_EQ(journal_.about({"login item"}), Lines{});
    EXPECT_EQ(stored()->launchAtLogin(), false);
    // Until the wish changes, and with it what was applied last.
    settings_.setLaunchAtLogin(true);
    EXPECT_EQ(journal_.about({"login item"}), Lines{}) << "it is registered already";
    settings_.setLaunchAtLogin(false);
    EXPECT_EQ(journal_.about({"login item"}), Lines{"login item unregister"});
}

TEST_F(ApplicationOrder, WhatWasTakenOverFromTheSystemCountsAsApplied) {
    loginItem_.current = LoginItemStatus::enabled;
    make();
    // Taken out of the system's list as soon as the settings hold it.
    desktop_.configFiles().onLoad([this](int) {
        const bool isTakenOver = !desktop_.configFiles().text().empty() && stored()->launchAtLogin() == true;
        loginItem_.current = isTakenOver ? LoginItemStatus::notRegistered : loginItem_.current;
    });
    application_->start();
    EXPECT_EQ(stored()->launchAtLogin(), true);
    EXPECT_EQ(loginItem_.current, LoginItemStatus::notRegistered);
    EXPECT_EQ(journal_.about({"login item"}), Lines{});
}

} // namespace

} // namespace tarvex
