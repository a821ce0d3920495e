#include "App/Shell/PreferencesViewController.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tarvex {

namespace {

constexpr const char* recordTitle = "Record\u2026";
constexpr const char* recordingTitle = "Press keys\u2026";
constexpr std::array<std::uint32_t, 4> boxBits{modifier_mask::command, modifier_mask::shift,
                                               modifier_mask::option, modifier_mask::control};

bool isOn(const Control& checkbox) {
    return checkbox.value != 0;
}

void setOn(Control& checkbox, bool isOn) {
    checkbox.value = isOn ? 1 : 0;
}

// Truncated, as the margin itself may be a fraction.
std::string pointsText(double value) {
    constexpr double largest = 1e15;
    return std::to_string(static_cast<std::int64_t>(std::clamp(value, -largest, largest))) + " pt";
}

} // namespace

PreferencesViewController::PreferencesViewController(
    std::shared_ptr<PreferencesController> preferencesController, const PreferencesSurroundings& surroundings)
    : preferencesController_(std::move(preferencesController)),
      loginItem_(&surroundings.loginItem),
      modifierNames_(surroundings.modifierNames),
      hotkeyRecorder_(surroundings.keyMonitors),
      hotkeyFormatter_(surroundings.keyboardLayout) {}

void PreferencesViewController::viewDidLoad() {
    configureSubviews();
    loadInitialValues();
}

void PreferencesViewController::setWindowActions(std::function<void()> close,
                                                 std::function<void()> setNeedsLayout) {
    close_ = std::move(close);
    setNeedsLayout_ = std::move(setNeedsLayout);
}

void PreferencesViewController::loadInitialValues() {
    marginSlider_.value = preferencesController_->getCellMarginPoints();
    updateMarginValueLabel(marginSlider_.value);
    refreshHotkeyLabels();
    refreshPreferencesHotkeyLabel();
    updateHideMenuBarAvailability();
    refreshSnapModifiers();
    refreshAdditionalPreferences();
}

void PreferencesViewController::updateMarginValueLabel(double value) {
    marginValueLabel_.text = pointsText(value);
}

void PreferencesViewController::marginChanged(double value) {
    updateMarginValueLabel(value);
    preferencesController_->setCellMarginPoints(value);
}

void PreferencesViewController::refreshHotkeyLabels() {
    showHotkey(editorHotkeyValueLabel_, editorHotkeyLabel_, preferencesController_->getOpenEditorHotkey());
    recordHotkeyButton_.text = isRecordingHotkey_ ? recordingTitle : recordTitle;
    recordHotkeyButton_.accessibleName = nameInRow(recordHotkeyButton_.text, editorHotkeyLabel_);
    recordHotkeyButton_.isEnabled = true;
}

void PreferencesViewController::refreshPreferencesHotkeyLabel() {
    showHotkey(preferencesHotkeyValueLabel_, preferencesHotkeyLabel_,
               preferencesController_->getOpenPreferencesHotkey());
}

void PreferencesViewController::showHotkey(Control& label, const Control& rowLabel,
                                           const std::optional<HotkeyDefinition>& hotkey) {
    const std::string words = hotkeyFormatter_.formatInWords(hotkey, modifierNames_);
    label.text = hotkeyFormatter_.format(hotkey);
    label.toolTip = words == label.text ? "" : words;
    label.accessibleName = nameInRow(words, rowLabel);
}

void PreferencesViewController::recordTapped(Hotkey hotkey) {
    isRecordingHotkey_ = true;
    refreshHotkeyLabels();
    const std::weak_ptr<PreferencesViewController> weakSelf = weak_from_this();
    hotkeyRecorder_.start([weakSelf, hotkey](const std::optional<HotkeyDefinition>& recorded) {
        if (const auto self = weakSelf.lock()) {
            self->finishRecording(hotkey, recorded);
        }
    });
}

void PreferencesViewController::finishRecording(Hotkey hotkey,
                                                const std::optional<HotkeyDefinition>& recorded) {
    isRecordingHotkey_ = false;
    if (recorded) {
        setHotkey(hotkey, recorded);
    }
    refreshAfterHotkeyChange(hotkey);
    // The key came by another way than the controls, which ask for a new layout themselves.
    if (setNeedsLayout_) {
        setNeedsLayout_();
    }
}

void PreferencesViewController::clearTapped(Hotkey hotkey) {
    isRecordingHotkey_ = false;
    hotkeyRecorder_.stop();
    setHotkey(hotkey, std::nullopt);
    refreshAfterHotkeyChange(hotkey);
}

void PreferencesViewController::setHotkey(Hotkey hotkey, const std::optional<HotkeyDefinition>& definition) {
    if (hotkey == Hotkey::openEditor) {
        preferencesController_->setOpenEditorHotkey(definition);
    } else {
        preferencesController_->setOpenPreferencesHotkey(definition);
    }
}

void PreferencesViewController::refreshAfterHotkeyChange(Hotkey hotkey) {
    if (hotkey == Hotkey::openPreferences) {
        refreshPreferencesHotkeyLabel();
        updateHideMenuBarAvailability();
    }
    refreshHotkeyLabels();
}

std::uint32_t PreferencesViewController::computeModifiers(const ModifierBoxes& boxes) {
    std::uint32_t modifiers = 0;
    for (std::size_t index = 0; index < boxes.size(); ++index) {
        modifiers |= isOn(*boxes[index]) ? boxBits[index] : 0;
    }
    return modifiers;
}

void PreferencesViewController::applyModifiers(const ModifierBoxes& boxes, std::uint32_t modifiers) {
    for (std::size_t index = 0; index < boxes.size(); ++index) {
        setOn(*boxes[index], (modifiers & boxBits[index]) != 0);
    }
}

void PreferencesViewController::refreshSnapModifiers() {
    applyModifiers(singleBoxes_, preferencesController_->getSingleSnapModifiers());
    applyModifiers(multiBoxes_, preferencesController_->getMultiSnapModifiers());
}

void PreferencesViewController::refreshAdditionalPreferences() {
    // The box shows what the system will do, whatever the file says.
    setOn(launchAtLoginCheckbox_, isRegistered(loginItem_->status()));
    setOn(hideMenuBarIconCheckbox_, preferencesController_->getHideMenuBarIcon());
    setOn(restoreWindowSizeOnUnsnapCheckbox_, preferencesController_->getRestoreWindowSizeOnUnsnap());
    updateLaunchAtLoginAvailability();
    updateHideMenuBarAvailability();
}

void PreferencesViewController::updateLaunchAtLoginAvailability() {
    const bool isBundle = loginItem_->isBundle();
    launchAtLoginCheckbox_.isEnabled = isBundle;
    launchAtLoginInfoLabel_.isHidden = isBundle;
    if (!isBundle && isOn(launchAtLoginCheckbox_)) {
        setOn(launchAtLoginCheckbox_, false);
        preferencesController_->setLaunchAtLogin(false);
    }
}

void PreferencesViewController::updateHideMenuBarAvailability() {
    // Without a hotkey nobody could come back to the preferences once the icon is hidden.
    const bool hasHotkey = preferencesController_->getOpenPreferencesHotkey().has_value();
    hideMenuBarIconCheckbox_.isEnabled = hasHotkey;
    hideMenuBarIconInfoLabel_.isHidden = hasHotkey;
    if (!hasHotkey && isOn(hideMenuBarIconCheckbox_)) {
        setOn(hideMenuBarIconCheckbox_, false);
        preferencesController_->setHideMenuBarIcon(false);
    }
}

void PreferencesViewController::launchAtLoginChanged() {
    if (launchAtLoginCheckbox_.isEnabled) {
        preferencesController_->setLaunchAtLogin(isOn(launchAtLoginCheckbox_));
    }
}

void PreferencesViewController::hideMenuBarIconChanged() {
    if (hideMenuBarIconCheckbox_.isEnabled) {
        preferencesController_->setHideMenuBarIcon(isOn(hideMenuBarIconCheckbox_));
    }
}

void PreferencesViewController::endRecording() {
    isRecordingHotkey_ = false;
    hotkeyRecorder_.stop();
    refreshHotkeyLabels();
}

void PreferencesViewController::closeTapped() {
    endRecording();
    if (close_) {
        close_();
    }
}

void PreferencesViewController::windowDidClose() {
    // Nobody would know, when the window is shown again, that its next key is waited for.
    endRecording();
    if (setNeedsLayout_) {
        setNeedsLayout_();
    }
}

void PreferencesViewController::controlChanged(const std::string& id, double value) {
    Control* const control = find(id);
    if (control == nullptr) {
        return;
    }
    const bool hasValue = control->kind == ControlKind::slider || control->kind == ControlKind::checkbox;
    if (hasValue && control->isEnabled) {
        control->value = value;
    }
    act(*control);
}

void PreferencesViewController::act(const Control& control) {
    const auto isAmong = [&](const ModifierBoxes& boxes) {
        return std::find(boxes.begin(), boxes.end(), &control) != boxes.end();
    };
    if (&control == &marginSlider_) {
        marginChanged(control.value);
    } else if (&control == &recordHotkeyButton_) {
        recordTapped(Hotkey::openEditor);
    } else if (&control == &clearHotkeyButton_) {
        clearTapped(Hotkey::openEditor);
    } else if (&control == &recordPreferencesHotkeyButton_) {
        recordTapped(Hotkey::openPreferences);
    } else if (&control == &clearPreferencesHotkeyButton_) {
        clearTapped(Hotkey::openPreferences);
    } else if (isAmong(singleBoxes_)) {
        preferencesController_->setSingleSnapModifiers(computeModifiers(singleBoxes_));
    } else if (isAmong(multiBoxes_)) {
        preferencesController_->setMultiSnapModifiers(computeModifiers(multiBoxes_));
    } else if (&control == &launchAtLoginCheckbox_) {
        launchAtLoginChanged();
    } else if (&control == &hideMenuBarIconCheckbox_) {
        hideMenuBarIconChanged();
    } else if (&control == &restoreWindowSizeOnUnsnapCheckbox_) {
        preferencesController_->setRestoreWindowSizeOnUnsnap(isOn(control));
    } else if (&control == &closeButton_) {
        closeTapped();
    }
}

} // namespace tarvex
