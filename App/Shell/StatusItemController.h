#pragma once

#include "App/Toolkit/StatusItem.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tarvex {

/// A display as the menu offers it.
struct DisplayMenuEntry {
    std::string title;
    std::uint32_t displayId = 0;

    bool operator==(const DisplayMenuEntry&) const = default;
};

/// What the status item's menu does. Each may destroy the controller.
struct StatusItemCallbacks {
    std::function<void()> onOpenAbout;
    std::function<void()> onOpenPreferences;
    std::function<void(std::uint32_t)> onOpenZoneEditorForDisplay;
    std::function<void()> onQuit;
    /// The displays now, in the order of the menu.
    std::function<std::vector<DisplayMenuEntry>()> displaysProvider;
};

/// The program's item in the system's bar, and its menu. The displays are asked for whenever it opens. Main
/// thread only.
class StatusItemController final : public StatusItemDelegate {
public:
    /// The item appears, bare until it is configured.
    StatusItemController(StatusBarPlatform& statusBar, StatusItemCallbacks callbacks);

    /// Gives the item its picture and tool tip.
    void configureStatusItem();

    /// Builds the menu and gives it to the item.
    void configureMenu();

    [[nodiscard]] Menu menuWillOpen() override;
    void menuItemChosen(const MenuItem& item) override;

private:
    [[nodiscard]] static StatusItemAppearance makeAppearance();
    [[nodiscard]] Menu makeMenu() const;
    [[nodiscard]] std::vector<MenuItem> makeZoneEditorSubmenu() const;

    StatusItemCallbacks callbacks_;
    std::unique_ptr<StatusItem> statusItem_;
};

} // namespace tarvex
