#pragma once

#include "App/Shell/PreferencesWindowController.h"
#include "Core/Configuration/JsonCoding.h"
#include "Tests/Support/Simulated/SimulatedConfigFiles.h"
#include "Tests/Support/Simulated/SimulatedHotkeys.h"
#include "Tests/Support/Simulated/SimulatedLogs.h"
#include "Tests/Support/Simulated/SimulatedShell.h"

#include <functional>
#include <memory>
#include <utility>

namespace tarvex {

/// For tests of the preferences: simulated settings and surroundings, and the window over them.
class SimulatedPreferences {
protected:
    /// The settings that the window finds, the defaults with these fields changed.
    void store(const std::function<void(TarvexConfigFields&)>& change = [](TarvexConfigFields&) {}) {
        TarvexConfigFields fields = TarvexConfig::makeDefault()->fields();
        change(fields);
        files_.put(encodeTarvexConfig(TarvexConfig(fields)));
    }

    [[nodiscard]] TarvexConfigRef stored() const { return decodeTarvexConfig(files_.text()); }

    /// Must not outlive this object and the platform.
    [[nodiscard]] std::unique_ptr<PreferencesWindowController> makePreferences(FormWindowPlatform& windows) {
        auto settings = std::make_shared<PreferencesController>(
            std::make_shared<ConfigStore>(LoggerFactory(log_).makeLogger("ConfigStore"), files_), center_);
        auto view = std::make_shared<PreferencesViewController>(
            std::move(settings), PreferencesSurroundings{keyMonitors_, layout_, loginItem_,
                                                         ModifierNames{"Super", "Shift", "Alt", "Control"}});
        return std::make_unique<PreferencesWindowController>(std::move(view), windows);
    }

    Journal journal_;
    SimulatedLog log_{journal_};
    SimulatedConfigFiles files_{journal_};
    SimulatedKeyMonitors keyMonitors_;
    SimulatedKeyboardLayout layout_;
    SimulatedLoginItem loginItem_{journal_};
    NotificationCenter center_;
};

} // namespace tarvex
