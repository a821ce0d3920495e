#pragma once

#include "App/Hotkeys/HotkeyFormatter.h"
#include "App/Hotkeys/HotkeyRecorder.h"
#include "App/Shell/LoginItemPlatform.h"
#include "App/Shell/PreferencesController.h"
#include "App/Toolkit/FormWindow.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tarvex {

/// What a PreferencesViewController works with; all must outlive it.
struct PreferencesSurroundings {
    KeyMonitorPlatform& keyMonitors;
    KeyboardLayoutPlatform& keyboardLayout;
    LoginItemPlatform& loginItem;
    ModifierNames modifierNames;
};

/// The controls of the preferences. Each writes its setting at once. Main thread only.
class PreferencesViewController final : public FormOwner,
                                        public std::enable_shared_from_this<PreferencesViewController> {
public:
    PreferencesViewController(std::shared_ptr<PreferencesController> preferencesController,
                              const PreferencesSurroundings& surroundings);

    /// Sets the controls up and shows the settings as they are. To be called once, before the first form().
    void viewDidLoad();

    /// What closing and laying out anew do; set when the window is made.
    void setWindowActions(std::function<void()> close, std::function<void()> setNeedsLayout);

    [[nodiscard]] bool isRecordingHotkey() const { return isRecordingHotkey_; }

    [[nodiscard]] Form form(const Size& contentSize) override;
    void controlChanged(const std::string& id, double value) override;
    void windowDidClose() override;

private:
    /// The boxes of one combination, in the order Command, Shift, Option, Control.
    using ModifierBoxes = std::array<Control*, 4>;

    /// The two hotkeys differ in this alone.
    enum class Hotkey : std::uint8_t { openEditor, openPreferences };

    void configureSubviews();
    void configureLabels();
    void configureCheckboxes();
    void nameHotkeyButtons();
    void loadInitialValues();
    void updateMarginValueLabel(double value);
    void marginChanged(double value);
    void refreshHotkeyLabels();
    void showHotkey(Control& label, const Control& rowLabel, const std::optional<HotkeyDefinition>& hotkey);
    void refreshPreferencesHotkeyLabel();
    void recordTapped(Hotkey hotkey);
    void finishRecording(Hotkey hotkey, const std::optional<HotkeyDefinition>& recorded);
    void clearTapped(Hotkey hotkey);
    void setHotkey(Hotkey hotkey, const std::optional<HotkeyDefinition>& definition);
    void refreshAfterHotkeyChange(Hotkey hotkey);
    [[nodiscard]] static std::uint32_t computeModifiers(const ModifierBoxes& boxes);
    static void applyModifiers(const ModifierBoxes& boxes, std::uint32_t modifiers);
    void refreshSnapModifiers();
    void refreshAdditionalPreferences();
    void updateLaunchAtLoginAvailability();
    void updateHideMenuBarAvailability();
    void launchAtLoginChanged();
    void hideMenuBarIconChanged();
    void endRecording();
    void closeTapped();

    /// For a text that other rows have as well.
    [[nodiscard]] static std::string nameInRow(const std::string& text, const Control& rowLabel);
    [[nodiscard]] std::array<Control*, 27> allControls();
    [[nodiscard]] Control* find(const std::string& id);
    void act(const Control& control);
    void layoutContent(const Size& size);

    std::shared_ptr<PreferencesController> preferencesController_;
    LoginItemPlatform* loginItem_;
    ModifierNames modifierNames_;
    HotkeyRecorder hotkeyRecorder_;
    HotkeyFormatter hotkeyFormatter_;
    bool isRecordingHotkey_ = false;
    Control marginLabel_;
    Control marginValueLabel_;
    Control marginSlider_;
    Control editorHotkeyLabel_;
    Control editorHotkeyValueLabel_;
    Control recordHotkeyButton_;
    Control clearHotkeyButton_;
    Control preferencesHotkeyLabel_;
    Control preferencesHotkeyValueLabel_;
    Control recordPreferencesHotkeyButton_;
    Control clearPreferencesHotkeyButton_;
    Control singleSnapLabel_;
    Control singleCmdCheckbox_;
    Control singleShiftCheckbox_;
    Control singleOptionCheckbox_;
    Control singleControlCheckbox_;
    Control multiSnapLabel_;
    Control multiCmdCheckbox_;
    Control multiShiftCheckbox_;
    Control multiOptionCheckbox_;
    Control multiControlCheckbox_;
    Control launchAtLoginCheckbox_;
    Control launchAtLoginInfoLabel_;
    Control hideMenuBarIconCheckbox_;
    Control hideMenuBarIconInfoLabel_;
    Control restoreWindowSizeOnUnsnapCheckbox_;
    Control closeButton_;
    const ModifierBoxes singleBoxes_{&singleCmdCheckbox_, &singleShiftCheckbox_, &singleOptionCheckbox_,
                                     &singleControlCheckbox_};
    const ModifierBoxes multiBoxes_{&multiCmdCheckbox_, &multiShiftCheckbox_, &multiOptionCheckbox_,
                                    &multiControlCheckbox_};
    std::function<void()> close_;
    std::function<void()> setNeedsLayout_;
};

} // namespace tarvex
