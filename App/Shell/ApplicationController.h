#pragma once

#include "App/Hotkeys/HotkeyManager.h"
#include "App/Shell/AboutWindowController.h"
#include "App/Shell/PreferencesWindowController.h"
#include "App/Shell/StatusItemController.h"
#include "App/Snapping/SnapController.h"
#include "App/ZoneEditor/GridEditorController.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarvex {

/// Every port that the application stands on, and what its platform is like. All must outlive the
/// application.
struct ApplicationPlatform {
    FileManager& files;
    LogPlatform& log;
    MessageLog& fileLog;
    MainLoop& mainLoop;
    NotificationCenter& notifications;
    DisplayPlatform& displays;
    ScreenPlatform& screens;
    AccessibilityPlatform& accessibility;
    EventTapPlatform& eventTap;
    PointerPlatform& pointer;
    WindowPlatform& windows;
    KeyWindowPlatform& keyWindow;
    FormWindowPlatform& formWindows;
    TextMeasurer& textMeasurer;
    StatusBarPlatform& statusBar;
    HotkeyPlatform& hotkeys;
    KeyMonitorPlatform& keyMonitors;
    KeyboardLayoutPlatform& keyboardLayout;
    LoginItemPlatform& loginItem;
    BundleInformation& bundle;
    ModifierNames modifierNames;
    /// Ends the program.
    std::function<void()> terminate;
};

/// Owns every long-lived controller, and keeps status item, hotkeys and login item in step with the settings.
/// Main thread only.
class ApplicationController : public std::enable_shared_from_this<ApplicationController> {
public:
    /// Ids of the hotkeys.
    static constexpr std::uint32_t editorHotkeyId = 1;
    static constexpr std::uint32_t preferencesHotkeyId = 2;

    /// Makes the windows, hidden.
    ApplicationController(std::shared_ptr<GridEditorController> gridEditorController,
                          std::shared_ptr<DisplayService> displayService, ApplicationPlatform platform);

    /// Brings everything up, once, when the program has finished launching.
    void start();

    /// Shows the preferences in the middle of the screen.
    void showPreferences();

    /// Shows the about window in the middle of the screen.
    void showAbout();

private:
    void registerConfiguredHotkey();
    void registerConfiguredPreferencesHotkey();
    void registerOrUnregister(const std::string& name, std::uint32_t hotkeyId,
                              const std::optional<HotkeyDefinition>& hotkey,
                              void (ApplicationController::*action)());
    void handleOpenEditorHotkey();
    void observe();
    void hotkeyChanged();
    void preferencesHotkeyChanged();
    void configChanged();
    void showOrHideStatusItem();
    void showStatusItem();
    void hideStatusItem();
    [[nodiscard]] StatusItemCallbacks makeStatusItemCallbacks();
    [[nodiscard]] std::vector<DisplayMenuEntry> displayEntries();
    void syncLaunchAtLoginPreferenceWithSystem();
    void applyLaunchAtLogin();
    void tryEnableLaunchAtLogin();
    void tryDisableLaunchAtLogin();
    [[nodiscard]] std::unique_ptr<SnapController> makeSnapController();
    [[nodiscard]] std::shared_ptr<ConfigStore> makeConfigStore();
    void show(FormWindow& window);
    void logToBoth(const std::string& message);

    ApplicationPlatform platform_;
    std::shared_ptr<GridEditorController> gridEditorController_;
    std::shared_ptr<PreferencesController> preferencesController_;
    std::unique_ptr<PreferencesWindowController> preferencesWindowController_;
    std::unique_ptr<AboutWindowController> aboutWindowController_;
    std::unique_ptr<StatusItemController> statusItemController_;
    std::unique_ptr<HotkeyManager> hotkeyManager_;
    std::unique_ptr<SnapController> snapController_;
    std::optional<bool> lastAppliedLaunchAtLogin_;
    std::shared_ptr<DisplayService> displayService_;
    std::vector<std::unique_ptr<NotificationCenter::Observation>> observations_;
};

} // namespace tarvex
