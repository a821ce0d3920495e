#include "Tests/Unit/PreferencesViewFixture.h"

namespace tarvex {

namespace {

class PreferencesViewControllerTest : public PreferencesViewTest {};

constexpr HotkeyDefinition commandShiftE{14, 0x300};

TEST_F(PreferencesViewControllerTest, WindowIsMadeHidden) {
    EXPECT_EQ(window().attributes.title, "Preferences");
    EXPECT_EQ(window().attributes.styleMask, 3U);
    EXPECT_EQ(window().attributes.contentSize, (Size{640, 500}));
    EXPECT_EQ(window().attributes.level, 0);
    EXPECT_FALSE(window().attributes.isReleasedWhenClosed);
    EXPECT_FALSE(window().isVisible);
}

TEST_F(PreferencesViewControllerTest, ShowsTheSettings) {
    store([](TarvexConfigFields& fields) {
        fields.cellMarginPoints = 12.7;
        fields.openEditorHotkey = commandShiftE;
        fields.openPreferencesHotkey = HotkeyDefinition{49, 0x800};
        fields.singleSnapModifiers = ModifierDefinition{0x900};
        fields.multiSnapModifiers = ModifierDefinition{0x1200};
        fields.hideMenuBarIcon = true;
        fields.restoreWindowSizeOnUnsnap = false;
    });
    loginItem_.current = LoginItemStatus::requiresApproval;
    EXPECT_EQ(control("marginSlider").value, 12.7);
    EXPECT_EQ(text("marginValueLabel"), "12 pt");
    EXPECT_EQ(text("editorHotkeyValueLabel"), "\u2318 + \u21E7 + E");
    EXPECT_EQ(text("preferencesHotkeyValueLabel"), "\u2325 + Space");
    EXPECT_EQ(control("singleCmdCheckbox").value, 1);
    EXPECT_EQ(control("singleShiftCheckbox").value, 0);
    EXPECT_EQ(control("singleOptionCheckbox").value, 1);
    EXPECT_EQ(control("singleControlCheckbox").value, 0);
    EXPECT_EQ(control("multiCmdCheckbox").value, 0);
    EXPECT_EQ(control("multiShiftCheckbox").value, 1);
    EXPECT_EQ(control("multiOptionCheckbox").value, 0);
    EXPECT_EQ(control("multiControlCheckbox").value, 1);
    EXPECT_EQ(control("launchAtLoginCheckbox").value, 1);
    EXPECT_EQ(control("hideMenuBarIconCheckbox").value, 1);
    EXPECT_EQ(control("restoreWindowSizeOnUnsnapCheckbox").value, 0);
}

TEST_F(PreferencesViewControllerTest, ShowsTheDefaultsWithoutAFile) {
    EXPECT_EQ(text("marginValueLabel"), "8 pt");
    EXPECT_EQ(text("editorHotkeyValueLabel"), "Not set");
    EXPECT_EQ(text("preferencesHotkeyValueLabel"), "Not set");
    EXPECT_EQ(control("singleCmdCheckbox").value, 1);
    EXPECT_EQ(control("multiShiftCheckbox").value, 1);
    EXPECT_EQ(control("restoreWindowSizeOnUnsnapCheckbox").value, 1);
    EXPECT_EQ(files_.text(), "");
}

TEST_F(PreferencesViewControllerTest, MarginIsSavedAtEveryMovement) {
    int changes = 0;
    const auto observation = center_.addObserver("TarvexConfigChanged", [&] { ++changes; });
    for (const double margin : {12.7, 12.9, 40.0, 0.0}) {
        use("marginSlider", margin);
        EXPECT_EQ(stored()->cellMarginPoints(), margin);
    }
    EXPECT_EQ(changes, 4);
    EXPECT_EQ(text("marginValueLabel"), "0 pt");
    use("marginSlider", 12.7);
    EXPECT_EQ(text("marginValueLabel"), "12 pt");
}

TEST_F(PreferencesViewControllerTest, RecordsTheEditorsHotkey) {
    use("recordHotkeyButton");
    EXPECT_EQ(text("recordHotkeyButton"), "Press keys\u2026");
    EXPECT_TRUE(control("recordHotkeyButton").isEnabled);
    EXPECT_FALSE(keyMonitors_.press({14, event_flag::command | event_flag::shift}));
    EXPECT_EQ(stored()->openEditorHotkey(), commandShiftE);
    EXPECT_EQ(text("editorHotkeyValueLabel"), "\u2318 + \u21E7 + E");
    EXPECT_EQ(text("recordHotkeyButton"), "Record\u2026");
    EXPECT_GT(window().layouts, 0) << "the key came from outside the controls";
}

TEST_F(PreferencesViewControllerTest, RecordsThePreferencesHotkeyUnderTheEditorsButton) {
    use("recordPreferencesHotkeyButton");
    // One flag for both: the editor's button is the one that says so.
    EXPECT_EQ(text("recordHotkeyButton"), "Press keys\u2026");
    EXPECT_EQ(text("recordPreferencesHotkeyButton"), "Record\u2026");
    EXPECT_FALSE(control("hideMenuBarIconCheckbox").isEnabled);
    static_cast<void>(keyMonitors_.press({14, event_flag::command | event_flag::shift}));
    EXPECT_EQ(stored()->openPreferencesHotkey(), commandShiftE);
    EXPECT_EQ(text("preferencesHotkeyValueLabel"), "\u2318 + \u21E7 + E");
    EXPECT_EQ(text("editorHotkeyValueLabel"), "Not set");
    EXPECT_EQ(text("recordHotkeyButton"), "Record\u2026");
    EXPECT_TRUE(control("hideMenuBarIconCheckbox").isEnabled);
    EXPECT_TRUE(control("hideMenuBarIconInfoLabel").isHidden);
}

TEST_F(PreferencesViewControllerTest, EscapeEndsARecordingAndSavesNothing) {
    for (const char* button : {"recordHotkeyButton", "recordPreferencesHotkeyButton"}) {
        use(button);
        static_cast<void>(keyMonitors_.press({53, 0}));
        EXPECT_EQ(files_.text(), "");
        EXPECT_EQ(text("recordHotkeyButton"), "Record\u2026");
        EXPECT_EQ(keyMonitors_.count(), 0U);
    }
}

TEST_F(PreferencesViewControllerTest, SecondRecordingTakesOverFromTheFirst) {
    use("recordHotkeyButton");
    use("recordPreferencesHotkeyButton");
    EXPECT_EQ(keyMonitors_.count(), 1U);
    static_cast<void>(keyMonitors_.press({14, 0}));
    EXPECT_FALSE(stored()->openEditorHotkey());
    EXPECT_EQ(stored()->openPreferencesHotkey(), (HotkeyDefinition{14, 0}));
}

TEST_F(PreferencesViewControllerTest, ClearTakesTheHotkeyAwayAndEndsARecording) {
    store([](TarvexConfigFields& fields) {
        fields.openEditorHotkey = commandShiftE;
        fields.openPreferencesHotkey = commandShiftE;
    });
    use("recordHotkeyButton");
    use("clearHotkeyButton");
    EXPECT_FALSE(stored()->openEditorHotkey());
    EXPECT_EQ(text("editorHotkeyValueLabel"), "Not set");
    EXPECT_EQ(text("recordHotkeyButton"), "Record\u2026");
    EXPECT_EQ(keyMonitors_.count(), 0U);
    EXPECT_TRUE(stored()->openPreferencesHotkey().has_value());
    use("clearPreferencesHotkeyButton");
    EXPECT_FALSE(stored()->openPreferencesHotkey());
    EXPECT_EQ(text("preferencesHotkeyValueLabel"), "Not set");
}

TEST_F(PreferencesViewControllerTest, ClearingThePreferencesHotkeyShowsTheIconAgain) {
    store([](TarvexConfigFields& fields) {
        fields.openPreferencesHotkey = commandShiftE;
        fields.hideMenuBarIcon = true;
    });
    EXPECT_TRUE(control("hideMenuBarIconCheckbox").isEnabled);
    use("clearPreferencesHotkeyButton");
    EXPECT_FALSE(control("hideMenuBarIconCheckbox").isEnabled);
    EXPECT_EQ(control("hideMenuBarIconCheckbox").value, 0);
    EXPECT_FALSE(control("hideMenuBarIconInfoLabel").isHidden);
    EXPECT_EQ(stored()->hideMenuBarIcon(), false);
}

TEST_F(PreferencesViewControllerTest, IconThatIsHiddenWithoutAHotkeyIsShownOnLoading) {
    store([](TarvexConfigFields& fields) { fields.hideMenuBarIcon = true; });
    EXPECT_EQ(control("hideMenuBarIconCheckbox").value, 0);
    EXPECT_EQ(stored()->hideMenuBarIcon(), false);
}

TEST_F(PreferencesViewControllerTest, BoxesMakeUpTheModifiers) {
    use("singleCmdCheckbox", 0);
    EXPECT_EQ(stored()->singleSnapModifiers(), ModifierDefinition{0});
    use("singleShiftCheckbox", 1);
    use("singleOptionCheckbox", 1);
    use("singleControlCheckbox", 1);
    EXPECT_EQ(stored()->singleSnapModifiers(), ModifierDefinition{0x1A00});
    use("multiControlCheckbox", 1);
    EXPECT_EQ(stored()->multiSnapModifiers(), ModifierDefinition{0x1300});
    // Both may be the same.
    use("multiCmdCheckbox", 0);
    use("multiOptionCheckbox", 1);
    EXPECT_EQ(stored()->multiSnapModifiers(), stored()->singleSnapModifiers());
}

TEST_F(PreferencesViewControllerTest, CheckboxesSaveTheirSettings) {
    store([](TarvexConfigFields& fields) { fields.openPreferencesHotkey = commandShiftE; });
    use("launchAtLoginCheckbox", 1);
    use("hideMenuBarIconCheckbox", 1);
    use("restoreWindowSizeOnUnsnapCheckbox", 0);
    EXPECT_EQ(stored()->launchAtLogin(), true);
    EXPECT_EQ(stored()->hideMenuBarIcon(), true);
    EXPECT_EQ(stored()->restoreWindowSizeOnUnsnap(), false);
    use("launchAtLoginCheckbox", 0);
    use("hideMenuBarIconCheckbox", 0);
    use("restoreWindowSizeOnUnsnapCheckbox", 1);
    EXPECT_EQ(stored()->launchAtLogin(), false);
    EXPECT_EQ(stored()->hideMenuBarIcon(), false);
    EXPECT_EQ(stored()->restoreWindowSizeOnUnsnap(), true);
}

TEST_F(PreferencesViewControllerTest, OutsideABundleLaunchAtLoginIsOff) {
    loginItem_.isBundled = false;
    loginItem_.current = LoginItemStatus::enabled;
    store([](TarvexConfigFields& fields) { fields.launchAtLogin = true; });
    EXPECT_FALSE(control("launchAtLoginCheckbox").isEnabled);
    EXPECT_EQ(control("launchAtLoginCheckbox").value, 0);
    EXPECT_FALSE(control("launchAtLoginInfoLabel").isHidden);
    EXPECT_EQ(stored()->launchAtLogin(), false);
}

TEST_F(PreferencesViewControllerTest, DisabledBoxesDoNothingEvenWhenTheyAreUsed) {
    loginItem_.isBundled = false;
    window().owner->controlChanged("launchAtLoginCheckbox", 1);
    window().owner->controlChanged("hideMenuBarIconCheckbox", 1);
    EXPECT_EQ(files_.text(), "");
    EXPECT_EQ(control("launchAtLoginCheckbox").value, 0);
    EXPECT_EQ(control("hideMenuBarIconCheckbox").value, 0);
}

TEST_F(PreferencesViewControllerTest, InsideABundleTheExplanationIsHidden) {
    EXPECT_TRUE(control("launchAtLoginCheckbox").isEnabled);
    EXPECT_TRUE(control("launchAtLoginInfoLabel").isHidden);
    EXPECT_FALSE(control("hideMenuBarIconInfoLabel").isHidden);
}

TEST_F(PreferencesViewControllerTest, CloseEndsARecordingAndClosesTheWindow) {
    use("recordHotkeyButton");
    controller_->window().makeKeyAndOrderFront();
    use("closeButton");
    EXPECT_FALSE(window().isVisible);
    EXPECT_EQ(keyMonitors_.count(), 0U);
    EXPECT_FALSE(controller_->viewController().isRecordingHotkey());
    EXPECT_EQ(text("recordHotkeyButton"), "Record\u2026");
    EXPECT_TRUE(keyMonitors_.press({48, 0}));
    EXPECT_EQ(files_.text(), "");
}

TEST_F(PreferencesViewControllerTest, ClosingTheWindowByItsTitleBarEndsARecordingToo) {
    window();
    for (const char* button : {"recordHotkeyButton", "recordPreferencesHotkeyButton"}) {
        controller_->window().makeKeyAndOrderFront();
        use(button);
        ASSERT_EQ(keyMonitors_.count(), 1U);
        window().hide();
        EXPECT_EQ(keyMonitors_.count(), 0U) << "the next key belongs to nobody here";
        EXPECT_FALSE(controller_->viewController().isRecordingHotkey());
        controller_->window().makeKeyAndOrderFront();
        EXPECT_EQ(text("recordHotkeyButton"), "Record\u2026");
        EXPECT_TRUE(keyMonitors_.press({48, 0}));
        EXPECT_EQ(files_.text(), "");
    }
}

TEST_F(PreferencesViewControllerTest, ClosedWindowRecordsAgainWhenItIsShownAgain) {
    window();
    controller_->window().makeKeyAndOrderFront();
    use("recordHotkeyButton");
    window().hide();
    controller_->window().makeKeyAndOrderFront();
    use("recordHotkeyButton");
    EXPECT_EQ(text("recordHotkeyButton"), "Press keys\u2026");
    EXPECT_FALSE(keyMonitors_.press({14, event_flag::command | event_flag::shift}));
    EXPECT_EQ(stored()->openEditorHotkey(), commandShiftE);
}

TEST_F(PreferencesViewControllerTest, UnknownControlsAreIgnored) {
    window().owner->controlChanged("nobody's", 1);
    window().owner->controlChanged("marginLabel", 1);
    EXPECT_EQ(files_.text(), "");
}

} // namespace

} // namespace tarvex
