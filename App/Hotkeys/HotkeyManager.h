#pragma once

#include "App/Hotkeys/HotkeyPlatform.h"
#include "App/Logging/MessageLog.h"
#include "App/Toolkit/MainLoop.h"
#include "Core/Configuration/TarvexConfig.h"
#include "Core/Logging/LogPlatform.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>

namespace tarvex {

/// What a HotkeyManager works with; all must outlive it.
struct HotkeySurroundings {
    HotkeyPlatform& hotkeys;
    MainLoop& mainLoop;
    LogPlatform& log;
    MessageLog& fileLog;
};

/// Runs actions on system-wide hotkeys, each under an id of the caller's. Destroying it unregisters them all.
/// Main thread only.
class HotkeyManager {
public:
    using Action = std::function<void()>;

    /// "trvx": tells this program's hotkeys apart from those of others.
    static constexpr std::uint32_t signature = 0x74727678;

    explicit HotkeyManager(const HotkeySurroundings& surroundings);
    HotkeyManager(const HotkeyManager&) = delete;
    HotkeyManager& operator=(const HotkeyManager&) = delete;
    HotkeyManager(HotkeyManager&&) = delete;
    HotkeyManager& operator=(HotkeyManager&&) = delete;
    ~HotkeyManager();

    /// Replaces what was registered under the id. The action runs on a later turn of the main loop, once for
    /// each press. A combination that the system refuses is logged and never fires.
    void registerHotkey(std::uint32_t hotkeyId, const HotkeyDefinition& hotkey, Action onTriggered);

    /// Takes hotkey and action of the id away, if there are any; logged in any case.
    void unregister(std::uint32_t hotkeyId);

    /// Unregisters every id that the system knows; the actions of refused hotkeys stay.
    void unregisterAll();

    /// What the logs say of a hotkey that the system does not give.
    [[nodiscard]] static std::string refusalMessage(const HotkeyIdentifier& identifier, std::int32_t status);

private:
    void requestRegistration(std::uint32_t hotkeyId, const HotkeyDefinition& hotkey);
    void handleEvent(const HotkeyIdentifier& identifier);
    void logToBoth(const std::string& message);

    HotkeySurroundings surroundings_;
    std::unique_ptr<HotkeyHandler> eventHandler_;
    std::map<std::uint32_t, std::unique_ptr<RegisteredHotkey>> hotKeyRefs_;
    std::map<std::uint32_t, Action> callbacks_;
};

} // namespace tarvex
