#include "App/Hotkeys/HotkeyManager.h"

#include <utility>
#include <vector>

namespace tarvex {

HotkeyManager::HotkeyManager(const HotkeySurroundings& surroundings)
    : surroundings_(surroundings),
      eventHandler_(surroundings.hotkeys.installHandler(
          [this](const HotkeyIdentifier& identifier) { handleEvent(identifier); })) {}

HotkeyManager::~HotkeyManager() {
    unregisterAll();
}

void HotkeyManager::registerHotkey(std::uint32_t hotkeyId, const HotkeyDefinition& hotkey,
                                   Action onTriggered) {
    unregister(hotkeyId);
    callbacks_.insert_or_assign(hotkeyId, std::move(onTriggered));
    logToBoth("HotkeyManager.register id=" + std::to_string(hotkeyId) + " keyCode=" +
              std::to_string(hotkey.keyCode) + " modifiers=" + std::to_string(hotkey.modifiers));
    requestRegistration(hotkeyId, hotkey);
}

void HotkeyManager::requestRegistration(std::uint32_t hotkeyId, const HotkeyDefinition& hotkey) {
    HotkeyRegistration registration =
        surroundings_.hotkeys.registerHotkey(hotkey.keyCode, hotkey.modifiers, {signature, hotkeyId});
    if (registration.status != 0) {
        logToBoth(refusalMessage({signature, hotkeyId}, registration.status));
    }
    if (registration.reference) {
        hotKeyRefs_.insert_or_assign(hotkeyId, std::move(registration.reference));
    }
}

void HotkeyManager::unregister(std::uint32_t hotkeyId) {
    hotKeyRefs_.erase(hotkeyId);
    callbacks_.erase(hotkeyId);
    logToBoth("HotkeyManager.unregister id=" + std::to_string(hotkeyId));
}

void HotkeyManager::unregisterAll() {
    std::vector<std::uint32_t> ids;
    ids.reserve(hotKeyRefs_.size());
    for (const auto& [id, reference] : hotKeyRefs_) {
        ids.push_back(id);
    }
    for (const std::uint32_t id : ids) {
        unregister(id);
    }
}

void HotkeyManager::handleEvent(const HotkeyIdentifier& identifier) {
    const auto found = callbacks_.find(identifier.id);
    if (found == callbacks_.end()) {
        return;
    }
    logToBoth("HotkeyManager triggered (id=" + std::to_string(identifier.id) + ")");
    surroundings_.mainLoop.post(found->second);
}

std::string HotkeyManager::refusalMessage(const HotkeyIdentifier& identifier, std::int32_t status) {
    return "RegisterEventHotKey failed: " + std::to_string(status) + " (id=" + std::to_string(identifier.id) +
           ")";
}

void HotkeyManager::logToBoth(const std::string& message) {
    surroundings_.log.systemLog(message);
    surroundings_.fileLog.log(message);
}

} // namespace tarvex
