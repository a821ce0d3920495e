#include "Tests/Unit/PreferencesViewFixture.h"

#include <map>
#include <vector>

namespace tarvex {

namespace {

class PreferencesLayoutTest : public PreferencesViewTest {};

struct Expected {
    std::string id;
    ControlKind kind;
    std::string text;
    Rect frame;
};

// W is the width; the y of a row counts from the top.
std::vector<Expected> expectedControls(double width, double top) {
    using enum ControlKind;
    return {
        {"marginLabel", label, "Cell margin", {20, top - 50, 120, 22}},
        {"marginValueLabel", label, "8 pt", {width - 100, top - 50, 80, 22}},
        {"marginSlider", slider, "Cell margin", {140, top - 52, width - 240, 24}},
        {"editorHotkeyLabel", label, "Open Zone Editor", {20, top - 110, 160, 22}},
        {"editorHotkeyValueLabel", label, "Not set", {180, top - 110, width - 410, 22}},
        {"recordHotkeyButton", pushButton, "Record\u2026", {width - 230, top - 114, 100, 30}},
        {"clearHotkeyButton", pushButton, "Clear", {width - 120, top - 114, 100, 30}},
        {"preferencesHotkeyLabel", label, "Open Preferences", {20, top - 150, 160, 22}},
        {"preferencesHotkeyValueLabel", label, "Not set", {180, top - 150, width - 410, 22}},
        {"recordPreferencesHotkeyButton", pushButton, "Record\u2026", {width - 230, top - 154, 100, 30}},
        {"clearPreferencesHotkeyButton", pushButton, "Clear", {width - 120, top - 154, 100, 30}},
        {"singleSnapLabel", label, "Single-zone snap", {20, top - 200, 160, 22}},
        {"singleCmdCheckbox", checkbox, "\u2318", {200, top - 202, 44, 24}},
        {"singleShiftCheckbox", checkbox, "\u21E7", {244, top - 202, 44, 24}},
        {"singleOptionCheckbox", checkbox, "\u2325", {288, top - 202, 44, 24}},
        {"singleControlCheckbox", checkbox, "\u2303", {332, top - 202, 44, 24}},
        {"multiSnapLabel", label, "Multi-zone snap", {20, top - 240, 160, 22}},
        {"multiCmdCheckbox", checkbox, "\u2318", {200, top - 242, 44, 24}},
        {"multiShiftCheckbox", checkbox, "\u21E7", {244, top - 242, 44, 24}},
        {"multiOptionCheckbox", checkbox, "\u2325", {288, top - 242, 44, 24}},
        {"multiControlCheckbox", checkbox, "\u2303", {332, top - 242, 44, 24}},
        {"launchAtLoginCheckbox", checkbox, "Launch at login", {20, top - 292, width - 40, 24}},
        {"launchAtLoginInfoLabel",
         label,
         "Launch at login works only when running as an .app bundle (not via swift run).",
         {38, top - 320, width - 58, 34}},
        {"hideMenuBarIconCheckbox", checkbox, "Hide menu bar icon", {20, top - 350, width - 40, 24}},
        {"hideMenuBarIconInfoLabel",
         label,
         "Set an 'Open Preferences' hotkey first to ensure you can reopen Preferences after hiding the icon.",
         {38, top - 378, width - 58, 34}},
        {"restoreWindowSizeOnUnsnapCheckbox",
         checkbox,
         "Restore window size on unsnap",
         {20, top - 408, width - 40, 24}},
        {"closeButton", pushButton, "Close", {width - 110, 20, 90, 30}},
    };
}

TEST_F(PreferencesLayoutTest, ControlsStandWhereTheyBelong) {
    for (const Size& size : {Size{640, 500}, Size{800, 620}}) {
        const Form form = window().owner->form(size);
        const std::vector<Expected> expected = expectedControls(size.width, size.height);
        ASSERT_EQ(form.controls.size(), expected.size());
        for (std::size_t index = 0; index < expected.size(); ++index) {
            SCOPED_TRACE(expected[index].id);
            EXPECT_EQ(form.controls[index].id, expected[index].id);
            EXPECT_EQ(form.controls[index].kind, expected[index].kind);
            EXPECT_EQ(form.controls[index].text, expected[index].text);
            EXPECT_EQ(form.controls[index].frame, expected[index].frame);
        }
    }
}

TEST_F(PreferencesLayoutTest, FontsTellHeadingsValuesAndExplanationsApart) {
    for (const char* id : {"marginLabel", "editorHotkeyLabel", "preferencesHotkeyLabel", "singleSnapLabel",
                           "multiSnapLabel"}) {
        EXPECT_EQ(control(id).font, (Font{13, 600, false})) << id;
    }
    for (const char* id : {"marginValueLabel", "editorHotkeyValueLabel", "preferencesHotkeyValueLabel"}) {
        EXPECT_EQ(control(id).font, (Font{13, 400, true})) << id;
    }
    for (const char* id : {"launchAtLoginInfoLabel", "hideMenuBarIconInfoLabel"}) {
        EXPECT_EQ(control(id).font, (Font{12, 400, false})) << id;
        EXPECT_EQ(control(id).textColor, TextColor::secondaryLabel) << id;
        EXPECT_TRUE(control(id).wrapsText) << id;
    }
}

TEST_F(PreferencesLayoutTest, SliderGoesFromNoneToForty) {
    const Control slider = control("marginSlider");
    EXPECT_EQ(slider.minimumValue, 0);
    EXPECT_EQ(slider.maximumValue, 40);
    EXPECT_EQ(slider.value, 8);
}

TEST_F(PreferencesLayoutTest, ButtonsHaveTheRoundedBezel) {
    for (const char* id : {"recordHotkeyButton", "clearHotkeyButton", "recordPreferencesHotkeyButton",
                           "clearPreferencesHotkeyButton", "closeButton"}) {
        ASSERT_TRUE(control(id).buttonStyle.has_value()) << id;
        EXPECT_EQ(control(id).buttonStyle->bezelStyle, 1) << id;
    }
}

TEST_F(PreferencesLayoutTest, HotkeysAreExplainedInThePlatformsTerms) {
    store([](TarvexConfigFields& fields) {
        fields.openEditorHotkey = HotkeyDefinition{14, 0x900};
        fields.openPreferencesHotkey = HotkeyDefinition{14, 0};
    });
    EXPECT_EQ(control("editorHotkeyValueLabel").toolTip, "Super + Alt + E");
    EXPECT_EQ(control("editorHotkeyValueLabel").accessibleName, "Super + Alt + E (Open Zone Editor)");
    // It says so itself.
    EXPECT_EQ(control("preferencesHotkeyValueLabel").toolTip, "");
    EXPECT_EQ(control("preferencesHotkeyValueLabel").accessibleName, "E (Open Preferences)");
    use("clearHotkeyButton");
    EXPECT_EQ(control("editorHotkeyValueLabel").toolTip, "");
    use("recordPreferencesHotkeyButton");
    static_cast<void>(keyMonitors_.press({123, event_flag::option}));
    EXPECT_EQ(control("preferencesHotkeyValueLabel").toolTip, "Alt + Left");
}

TEST_F(PreferencesLayoutTest, ButtonsAreNamedByTheirTextAndTheirRow) {
    EXPECT_EQ(control("recordHotkeyButton").accessibleName, "Record\u2026 (Open Zone Editor)");
    EXPECT_EQ(control("clearHotkeyButton").accessibleName, "Clear (Open Zone Editor)");
    EXPECT_EQ(control("recordPreferencesHotkeyButton").accessibleName, "Record\u2026 (Open Preferences)");
    EXPECT_EQ(control("clearPreferencesHotkeyButton").accessibleName, "Clear (Open Preferences)");
    use("recordHotkeyButton");
    EXPECT_EQ(control("recordHotkeyButton").accessibleName, "Press keys\u2026 (Open Zone Editor)");
}

TEST_F(PreferencesLayoutTest, SymbolsAreExplainedInThePlatformsTerms) {
    const std::map<std::string, std::string> names{{"singleCmdCheckbox", "Super (single-zone snap)"},
                                                   {"singleShiftCheckbox", "Shift (single-zone snap)"},
                                                   {"singleOptionCheckbox", "Alt (single-zone snap)"},
                                                   {"singleControlCheckbox", "Control (single-zone snap)"},
                                                   {"multiCmdCheckbox", "Super (multi-zone snap)"},
                                                   {"multiShiftCheckbox", "Shift (multi-zone snap)"},
                                                   {"multiOptionCheckbox", "Alt (multi-zone snap)"},
                                                   {"multiControlCheckbox", "Control (multi-zone snap)"}};
    for (const auto& [id, name] : names) {
        EXPECT_EQ(control(id).toolTip, name) << id;
    }
}

} // namespace

} // namespace tarvex
