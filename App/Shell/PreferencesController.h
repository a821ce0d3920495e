#pragma once

#include "App/Shell/NotificationCenter.h"
#include "Core/Configuration/ConfigStore.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace tarvex {

/// Reads and writes single settings. Every read loads the file, every write loads it, changes one field,
/// saves it, and posts what changed. Settings that cannot be read count as the defaults, and a failure to
/// save stays with the store's log line; neither is told to the caller.
class PreferencesController {
public:
    /// The notification centre must outlive the controller.
    PreferencesController(std::shared_ptr<ConfigStore> configStore, NotificationCenter& notifications);

    /// Settings that are absent count as the defaults, too. Modifiers are modifier masks; no hotkey is none.
    [[nodiscard]] double getCellMarginPoints() const;
    [[nodiscard]] std::optional<HotkeyDefinition> getOpenEditorHotkey() const;
    [[nodiscard]] std::optional<HotkeyDefinition> getOpenPreferencesHotkey() const;
    [[nodiscard]] std::uint32_t getSingleSnapModifiers() const;
    [[nodiscard]] std::uint32_t getMultiSnapModifiers() const;
    [[nodiscard]] bool getLaunchAtLogin() const;
    [[nodiscard]] bool getHideMenuBarIcon() const;
    [[nodiscard]] bool getRestoreWindowSizeOnUnsnap() const;

    void setCellMarginPoints(double points);
    /// None takes the hotkey away.
    void setOpenEditorHotkey(std::optional<HotkeyDefinition> hotkey);
    void setOpenPreferencesHotkey(std::optional<HotkeyDefinition> hotkey);
    void setSingleSnapModifiers(std::uint32_t modifiers);
    void setMultiSnapModifiers(std::uint32_t modifiers);
    void setLaunchAtLogin(bool isOn);
    void setHideMenuBarIcon(bool isOn);
    void setRestoreWindowSizeOnUnsnap(bool isOn);

private:
    void save(const std::function<void(TarvexConfigFields&)>& change);
    void postConfigChanged();

    std::shared_ptr<ConfigStore> configStore_;
    NotificationCenter* notifications_;
};

} // namespace tarvex
