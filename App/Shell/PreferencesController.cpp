#include "App/Shell/PreferencesController.h"

#include <exception>
#include <utility>

namespace tarvex {

namespace {

// The stored value, else the default one, else the last resort.
template <typename Value>
Value effective(const TarvexConfig& config, std::optional<Value> (TarvexConfig::*field)() const,
                Value lastResort) {
    if (const auto stored = (config.*field)()) {
        return *stored;
    }
    return (*TarvexConfig::makeDefault().*field)().value_or(lastResort);
}

} // namespace

PreferencesController::PreferencesController(std::shared_ptr<ConfigStore> configStore,
                                             NotificationCenter& notifications)
    : configStore_(std::move(configStore)), notifications_(&notifications) {}

double PreferencesController::getCellMarginPoints() const {
    return loadConfigOrDefault(*configStore_)->cellMarginPoints();
}

std::optional<HotkeyDefinition> PreferencesController::getOpenEditorHotkey() const {
    return loadConfigOrDefault(*configStore_)->openEditorHotkey();
}

std::optional<HotkeyDefinition> PreferencesController::getOpenPreferencesHotkey() const {
    return loadConfigOrDefault(*configStore_)->openPreferencesHotkey();
}

std::uint32_t PreferencesController::getSingleSnapModifiers() const {
    return effective(*loadConfigOrDefault(*configStore_), &TarvexConfig::singleSnapModifiers,
                     ModifierDefinition{0})
        .modifiers;
}

std::uint32_t PreferencesController::getMultiSnapModifiers() const {
    return effective(*loadConfigOrDefault(*configStore_), &TarvexConfig::multiSnapModifiers,
                     ModifierDefinition{0})
        .modifiers;
}

bool PreferencesController::getLaunchAtLogin() const {
    return effective(*loadConfigOrDefault(*configStore_), &TarvexConfig::launchAtLogin, false);
}

bool PreferencesController::getHideMenuBarIcon() const {
    return effective(*loadConfigOrDefault(*configStore_), &TarvexConfig::hideMenuBarIcon, false);
}

bool PreferencesController::getRestoreWindowSizeOnUnsnap() const {
    return effective(*loadConfigOrDefault(*configStore_), &TarvexConfig::restoreWindowSizeOnUnsnap, true);
}

void PreferencesController::setCellMarginPoints(double points) {
    save([points](TarvexConfigFields& fields) { fields.cellMarginPoints = points; });
    postConfigChanged();
}

void PreferencesController::setOpenEditorHotkey(std::optional<HotkeyDefinition> hotkey) {
    save([hotkey](TarvexConfigFields& fields) { fields.openEditorHotkey = hotkey; });
    notifications_->post(notification::hotkeyChanged);
    postConfigChanged();
}

void PreferencesController::setOpenPreferencesHotkey(std::optional<HotkeyDefinition> hotkey) {
    save([hotkey](TarvexConfigFields& fields) { fields.openPreferencesHotkey = hotkey; });
    notifications_->post(notification::preferencesHotkeyChanged);
    postConfigChanged();
}

void PreferencesController::setSingleSnapModifiers(std::uint32_t modifiers) {
    save([modifiers](TarvexConfigFields& fields) {
        fields.singleSnapModifiers = ModifierDefinition{modifiers};
    });
    postConfigChanged();
}

void PreferencesController::setMultiSnapModifiers(std::uint32_t modifiers) {
    save([modifiers](TarvexConfigFields& fields) {
        fields.multiSnapModifiers = ModifierDefinition{modifiers};
    });
    postConfigChanged();
}

void PreferencesController::setLaunchAtLogin(bool isOn) {
    save([isOn](TarvexConfigFields& fields) { fields.launchAtLogin = isOn; });
    postConfigChanged();
}

void PreferencesController::setHideMenuBarIcon(bool isOn) {
    save([isOn](TarvexConfigFields& fields) { fields.hideMenuBarIcon = isOn; });
    postConfigChanged();
}

void PreferencesController::setRestoreWindowSizeOnUnsnap(bool isOn) {
    save([isOn](TarvexConfigFields& fields) { fields.restoreWindowSizeOnUnsnap = isOn; });
    postConfigChanged();
}

void PreferencesController::save(const std::function<void(TarvexConfigFields&)>& change) {
    TarvexConfigFields fields = loadConfigOrDefault(*configStore_)->fields();
    change(fields);
    try {
        configStore_->saveConfig(TarvexConfig(std::move(fields)));
    } catch (const std::exception&) {
        // The store has logged it, and the old file stands.
        return;
    }
}

void PreferencesController::postConfigChanged() {
    notifications_->post(notification::configChanged);
}

} // namespace tarvex
