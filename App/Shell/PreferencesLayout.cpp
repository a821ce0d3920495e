// The part of PreferencesViewController that sets the controls up and lays them out.

#include "App/Shell/PreferencesViewController.h"

#include <algorithm>

namespace tarvex {

namespace {

constexpr Font headingFont{13, 600, false};
constexpr Font valueFont{13, 400, true};
constexpr Font infoFont{12, 400, false};
constexpr double defaultMargin = 8;
constexpr double largestMargin = 40;

void configure(Control& control, ControlKind kind, const char* id, const char* text) {
    control.kind = kind;
    control.id = id;
    control.text = text;
}

void configureLabel(Control& label, const char* id, const char* text, const Font& font) {
    configure(label, ControlKind::label, id, text);
    label.font = font;
}

void configureInfo(Control& label, const char* id, const char* text) {
    configureLabel(label, id, text, infoFont);
    label.textColor = TextColor::secondaryLabel;
    label.wrapsText = true;
}

void configureButton(Control& button, const char* id, const char* text, const char* toolTip) {
    configure(button, ControlKind::pushButton, id, text);
    button.toolTip = toolTip;
    button.buttonStyle = ButtonStyle{};
}

void configureBox(Control& box, const char* id, const char* symbol, const std::string& toolTip) {
    configure(box, ControlKind::checkbox, id, symbol);
    box.toolTip = toolTip;
}

} // namespace

void PreferencesViewController::configureSubviews() {
    configureLabels();
    configure(marginSlider_, ControlKind::slider, "marginSlider", "Cell margin");
    marginSlider_.value = defaultMargin;
    marginSlider_.minimumValue = 0;
    marginSlider_.maximumValue = largestMargin;
    configureButton(recordHotkeyButton_, "recordHotkeyButton", "Record\u2026",
                    "Record the hotkey that opens the zone editor");
    configureButton(clearHotkeyButton_, "clearHotkeyButton", "Clear",
                    "Remove the hotkey that opens the zone editor");
    configureButton(recordPreferencesHotkeyButton_, "recordPreferencesHotkeyButton", "Record\u2026",
                    "Record the hotkey that opens the preferences");
    configureButton(clearPreferencesHotkeyButton_, "clearPreferencesHotkeyButton", "Clear",
                    "Remove the hotkey that opens the preferences");
    configureCheckboxes();
    configureButton(closeButton_, "closeButton", "Close", "");
    nameHotkeyButtons();
}

void PreferencesViewController::nameHotkeyButtons() {
    for (Control* button : {&recordHotkeyButton_, &clearHotkeyButton_}) {
        button->accessibleName = nameInRow(button->text, editorHotkeyLabel_);
    }
    for (Control* button : {&recordPreferencesHotkeyButton_, &clearPreferencesHotkeyButton_}) {
        button->accessibleName = nameInRow(button->text, preferencesHotkeyLabel_);
    }
}

std::string PreferencesViewController::nameInRow(const std::string& text, const Control& rowLabel) {
    return text + " (" + rowLabel.text + ")";
}

void PreferencesViewController::configureLabels() {
    configureLabel(marginLabel_, "marginLabel", "Cell margin", headingFont);
    configureLabel(marginValueLabel_, "marginValueLabel", "", valueFont);
    configureLabel(editorHotkeyLabel_, "editorHotkeyLabel", "Open Zone Editor", headingFont);
    configureLabel(editorHotkeyValueLabel_, "editorHotkeyValueLabel", "", valueFont);
    configureLabel(preferencesHotkeyLabel_, "preferencesHotkeyLabel", "Open Preferences", headingFont);
    configureLabel(preferencesHotkeyValueLabel_, "preferencesHotkeyValueLabel", "", valueFont);
    configureLabel(singleSnapLabel_, "singleSnapLabel", "Single-zone snap", headingFont);
    configureLabel(multiSnapLabel_, "multiSnapLabel", "Multi-zone snap", headingFont);
    configureInfo(launchAtLoginInfoLabel_, "launchAtLoginInfoLabel",
                  "Launch at login works only when running as an .app bundle (not via swift run).");
    configureInfo(hideMenuBarIconInfoLabel_, "hideMenuBarIconInfoLabel",
                  "Set an 'Open Preferences' hotkey first to ensure you can reopen Preferences after hiding "
                  "the icon.");
}

void PreferencesViewController::configureCheckboxes() {
    const ModifierNames& names = modifierNames_;
    // The boxes of both rows show the same symbols; whoever hears them one by one needs to be told the row.
    const std::string single = " (single-zone snap)";
    const std::string multi = " (multi-zone snap)";
    configureBox(singleCmdCheckbox_, "singleCmdCheckbox", "\u2318", names.command + single);
    configureBox(singleShiftCheckbox_, "singleShiftCheckbox", "\u21E7", names.shift + single);
    configureBox(singleOptionCheckbox_, "singleOptionCheckbox", "\u2325", names.option + single);
    configureBox(singleControlCheckbox_, "singleControlCheckbox", "\u2303", names.control + single);
    configureBox(multiCmdCheckbox_, "multiCmdCheckbox", "\u2318", names.command + multi);
    configureBox(multiShiftCheckbox_, "multiShiftCheckbox", "\u21E7", names.shift + multi);
    configureBox(multiOptionCheckbox_, "multiOptionCheckbox", "\u2325", names.option + multi);
    configureBox(multiControlCheckbox_, "multiControlCheckbox", "\u2303", names.control + multi);
    configureBox(launchAtLoginCheckbox_, "launchAtLoginCheckbox", "Launch at login", "");
    configureBox(hideMenuBarIconCheckbox_, "hideMenuBarIconCheckbox", "Hide menu bar icon", "");
    configureBox(restoreWindowSizeOnUnsnapCheckbox_, "restoreWindowSizeOnUnsnapCheckbox",
                 "Restore window size on unsnap", "");
}

std::array<Control*, 27> PreferencesViewController::allControls() {
    return {&marginLabel_,
            &marginValueLabel_,
            &marginSlider_,
            &editorHotkeyLabel_,
            &editorHotkeyValueLabel_,
            &recordHotkeyButton_,
            &clearHotkeyButton_,
            &preferencesHotkeyLabel_,
            &preferencesHotkeyValueLabel_,
            &recordPreferencesHotkeyButton_,
            &clearPreferencesHotkeyButton_,
            &singleSnapLabel_,
            &singleCmdCheckbox_,
            &singleShiftCheckbox_,
            &singleOptionCheckbox_,
            &singleControlCheckbox_,
            &multiSnapLabel_,
            &multiCmdCheckbox_,
            &multiShiftCheckbox_,
            &multiOptionCheckbox_,
            &multiControlCheckbox_,
            &launchAtLoginCheckbox_,
            &launchAtLoginInfoLabel_,
            &hideMenuBarIconCheckbox_,
            &hideMenuBarIconInfoLabel_,
            &restoreWindowSizeOnUnsnapCheckbox_,
            &closeButton_};
}

Control* PreferencesViewController::find(const std::string& id) {
    const auto controls = allControls();
    const auto found = std::find_if(controls.begin(), controls.end(),
                                    [&](const Control* control) { return control->id == id; });
    return found == controls.end() ? nullptr : *found;
}

void PreferencesViewController::layoutContent(const Size& size) {
    const double width = size.width;
    const double top = size.height;
    marginLabel_.frame = {20, top - 50, 120, 22};
    marginValueLabel_.frame = {width - 100, top - 50, 80, 22};
    marginSlider_.frame = {140, top - 52, width - 240, 24};
    const auto layoutHotkeyRow = [&](double y, Control& label, Control& value, Control& record,
                                     Control& clear) {
        label.frame = {20, y, 160, 22};
        value.frame = {180, y, width - 410, 22};
        record.frame = {width - 230, y - 4, 100, 30};
        clear.frame = {width - 120, y - 4, 100, 30};
    };
    layoutHotkeyRow(top - 110, editorHotkeyLabel_, editorHotkeyValueLabel_, recordHotkeyButton_,
                    clearHotkeyButton_);
    layoutHotkeyRow(top - 150, preferencesHotkeyLabel_, preferencesHotkeyValueLabel_,
                    recordPreferencesHotkeyButton_, clearPreferencesHotkeyButton_);
    const auto layoutModifierRow = [&](double y, Control& label, const ModifierBoxes& boxes) {
        label.frame = {20, y, 160, 22};
        double x = 200;
        for (Control* box : boxes) {
            box->frame = {x, y - 2, 44, 24};
            x += 44;
        }
    };
    layoutModifierRow(top - 200, singleSnapLabel_, singleBoxes_);
    layoutModifierRow(top - 240, multiSnapLabel_, multiBoxes_);
    launchAtLoginCheckbox_.frame = {20, top - 292, width - 40, 24};
    launchAtLoginInfoLabel_.frame = {38, top - 320, width - 58, 34};
    hideMenuBarIconCheckbox_.frame = {20, top - 350, width - 40, 24};
    hideMenuBarIconInfoLabel_.frame = {38, top - 378, width - 58, 34};
    restoreWindowSizeOnUnsnapCheckbox_.frame = {20, top - 408, width - 40, 24};
    closeButton_.frame = {width - 110, 20, 90, 30};
}

Form PreferencesViewController::form(const Size& contentSize) {
    layoutContent(contentSize);
    Form form;
    for (const Control* control : allControls()) {
        form.controls.push_back(*control);
    }
    return form;
}

} // namespace tarvex
