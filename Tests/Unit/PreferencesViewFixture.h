#pragma once

#include "App/Input/EventTapPlatform.h"
#include "App/Shell/PreferencesWindowController.h"
#include "Core/Configuration/JsonCoding.h"
#include "Tests/Support/Simulated/SimulatedConfigFiles.h"
#include "Tests/Support/Simulated/SimulatedHotkeys.h"
#include "Tests/Support/Simulated/SimulatedLogs.h"
#include "Tests/Support/Simulated/SimulatedShell.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tarvex {

/// The preferences window over simulated settings.
class PreferencesViewTest : public ::testing::Test {
protected:
    /// The settings that the window finds, the defaults with these fields changed.
    void store(const std::function<void(TarvexConfigFields&)>& change) {
        TarvexConfigFields fields = TarvexConfig::makeDefault()->fields();
        change(fields);
        files_.put(encodeTarvexConfig(TarvexConfig(fields)));
    }

    [[nodiscard]] TarvexConfigRef stored() const { return decodeTarvexConfig(files_.text()); }

    /// The window, made on first use.
    SimulatedFormWindow& window() {
        if (!controller_) {
            controller_ = std::make_unique<PreferencesWindowController>(
                std::make_shared<PreferencesViewController>(
                    std::make_shared<PreferencesController>(
                        std::make_shared<ConfigStore>(LoggerFactory(log_).makeLogger("ConfigStore"), files_),
                        center_),
                    PreferencesSurroundings{keyMonitors_, layout_, loginItem_,
                                            ModifierNames{"Super", "Shift", "Alt", "Control"}}),
                windows_);
        }
        return windows_.titled("Preferences");
    }

    [[nodiscard]] Control control(const std::string& id) { return window().control(id); }

    [[nodiscard]] std::string text(const std::string& id) { return control(id).text; }

    void use(const std::string& id, double value = 0) { window().use(id, value); }

    Journal journal_;
    SimulatedLog log_{journal_};
    SimulatedConfigFiles files_{journal_};
    SimulatedKeyMonitors keyMonitors_;
    SimulatedKeyboardLayout layout_;
    SimulatedLoginItem loginItem_{journal_};
    SimulatedFormWindows windows_{journal_};
    NotificationCenter center_;
    std::unique_ptr<PreferencesWindowController> controller_;
};

} // namespace tarvex
