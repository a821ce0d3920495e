#include "App/Shell/StatusItemController.h"

#include <utility>

namespace tarvex {

namespace {

constexpr const char* openAbout = "openAbout";
constexpr const char* openPreferences = "openPreferences";
constexpr const char* openZoneEditorForDisplay = "openZoneEditorForDisplay";
constexpr const char* quit = "quit";

MenuItem makeItem(const char* title, const char* action) {
    MenuItem item;
    item.title = title;
    item.action = action;
    return item;
}

MenuItem makeSeparator() {
    MenuItem item;
    item.isSeparator = true;
    return item;
}

} // namespace

StatusItemController::StatusItemController(StatusBarPlatform& statusBar, StatusItemCallbacks callbacks)
    : callbacks_(std::move(callbacks)), statusItem_(statusBar.makeStatusItem(*this)) {}

void StatusItemController::configureStatusItem() {
    statusItem_->setAppearance(makeAppearance());
}

StatusItemAppearance StatusItemController::makeAppearance() {
    StatusItemAppearance appearance;
    appearance.symbolName = "rectangle.grid.2x2";
    appearance.accessibilityDescription = "Tarvex";
    appearance.pointSize = 16;
    appearance.weight = 600;
    appearance.isTemplate = true;
    appearance.imagePosition = 1;
    appearance.toolTip = "Tarvex";
    return appearance;
}

void StatusItemController::configureMenu() {
    statusItem_->setMenu(makeMenu());
}

Menu StatusItemController::menuWillOpen() {
    return makeMenu();
}

Menu StatusItemController::makeMenu() const {
    MenuItem zoneEditorItem = makeItem("Zone Editor\u2026", "");
    zoneEditorItem.submenu = makeZoneEditorSubmenu();
    return {{makeItem("About Tarvex", openAbout), makeSeparator(),
             makeItem("Preferences\u2026", openPreferences), zoneEditorItem, makeSeparator(),
             makeItem("Quit", quit)}};
}

std::vector<MenuItem> StatusItemController::makeZoneEditorSubmenu() const {
    std::vector<MenuItem> items;
    for (const DisplayMenuEntry& display : callbacks_.displaysProvider()) {
        MenuItem item = makeItem(display.title.c_str(), openZoneEditorForDisplay);
        item.representedObject = display.displayId;
        items.push_back(std::move(item));
    }
    if (items.empty()) {
        MenuItem none = makeItem("No Displays", "");
        none.isEnabled = false;
        items.push_back(std::move(none));
    }
    return items;
}

void StatusItemController::menuItemChosen(const MenuItem& item) {
    // A copy, since the callback may destroy this controller.
    const StatusItemCallbacks callbacks = callbacks_;
    if (item.action == openAbout) {
        callbacks.onOpenAbout();
    } else if (item.action == openPreferences) {
        callbacks.onOpenPreferences();
    } else if (item.action == openZoneEditorForDisplay && item.representedObject) {
        callbacks.onOpenZoneEditorForDisplay(*item.representedObject);
    } else if (item.action == quit) {
        callbacks.onQuit();
    }
}

} // namespace tarvex
