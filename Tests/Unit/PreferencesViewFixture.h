#pragma once

#include "App/Input/EventTapPlatform.h"
#include "Tests/Support/Simulated/SimulatedFormWindows.h"
#include "Tests/Support/Simulated/SimulatedPreferences.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace tarvex {

/// The preferences window over simulated settings.
class PreferencesViewTest : public ::testing::Test, protected SimulatedPreferences {
protected:
    /// The window, made on first use.
    SimulatedFormWindow& window() {
        if (!controller_) {
            controller_ = makePreferences(windows_);
        }
        return windows_.titled("Preferences");
    }

    [[nodiscard]] Control control(const std::string& id) { return window().control(id); }

    [[nodiscard]] std::string text(const std::string& id) { return control(id).text; }

    void use(const std::string& id, double value = 0) { window().use(id, value); }

    SimulatedFormWindows windows_{journal_};
    std::unique_ptr<PreferencesWindowController> controller_;
};

} // namespace tarvex
