#pragma once

#include "App/Shell/ApplicationEntry.h"
#include "Core/Configuration/JsonCoding.h"
#include "Tests/Support/Simulated/SimulatedDesktop.h"
#include "Tests/Support/Simulated/SimulatedHotkeys.h"
#include "Tests/Support/Simulated/SimulatedShell.h"
#include "Tests/Support/Simulated/SimulatedViewWindows.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tarvex {

/// The whole application on a simulated desktop.
class ApplicationControllerTest : public ::testing::Test {
protected:
    static constexpr std::uint32_t leftDisplay = 7;
    static constexpr std::uint32_t rightDisplay = 9;

    ApplicationControllerTest() {
        desktop_.plugScreen(
            {.number = leftDisplay, .frame = {0, 0, 1280, 1024}, .serial = 1, .name = "Left"});
        desktop_.plugScreen(
            {.number = rightDisplay, .frame = {1280, 0, 1920, 1080}, .serial = 2, .name = "Right"});
    }

    void store(const std::function<void(TarvexConfigFields&)>& change) {
        TarvexConfigFields fields = TarvexConfig::makeDefault()->fields();
        change(fields);
        desktop_.configFiles().put(encodeTarvexConfig(TarvexConfig(fields)));
    }

    [[nodiscard]] TarvexConfigRef stored() { return decodeTarvexConfig(desktop_.configFiles().text()); }

    void make() {
        const ApplicationEntry entry =
            makeApplicationEntry(ApplicationPlatform{.files = desktop_.configFiles(),
                                                     .log = desktop_.log(),
                                                     .fileLog = desktop_.fileLog(),
                                                     .mainLoop = desktop_.mainLoop(),
                                                     .notifications = center_,
                                                     .displays = desktop_.displays(),
                                                     .screens = desktop_.displays(),
                                                     .accessibility = desktop_.accessibility(),
                                                     .eventTap = desktop_.input(),
                                                     .pointer = desktop_.input(),
                                                     .windows = desktop_.windows(),
                                                     .keyWindow = desktop_.keyWindow(),
                                                     .formWindows = formWindows_,
                                                     .textMeasurer = textMeasurer_,
                                                     .statusBar = statusBar_,
                                                     .hotkeys = hotkeys_,
                                                     .keyMonitors = keyMonitors_,
                                                     .keyboardLayout = layout_,
                                                     .loginItem = loginItem_,
                                                     .bundle = bundle_,
                                                     .modifierNames = {"Super", "Shift", "Alt", "Control"},
                                                     .terminate = [this] { ++terminations_; }},
                                 viewWindows_);
        application_ = entry.applicationController;
    }

    void start() {
        make();
        application_->start();
    }

    /// Presses a registered hotkey and lets the main loop run.
    void press(std::uint32_t hotkeyId) {
        hotkeys_.press({HotkeyManager::signature, hotkeyId});
        desktop_.mainLoop().runPosted();
    }

    /// The keys that are registered, by id.
    [[nodiscard]] std::vector<std::uint32_t> registeredIds() {
        std::vector<std::uint32_t> ids;
        for (const SimulatedHotkey& hotkey : hotkeys_.registered()) {
            ids.push_back(hotkey.identifier.id);
        }
        return ids;
    }

    SimulatedFormWindow& preferences() { return formWindows_.titled("Preferences"); }

    SimulatedFormWindow& about() { return formWindows_.titled("About Tarvex"); }

    SimulatedDesktop desktop_;
    Journal& journal_ = desktop_.journal();
    NotificationCenter center_;
    SimulatedFormWindows formWindows_{journal_};
    SimulatedViewWindows viewWindows_{journal_};
    SimulatedTextMeasurer textMeasurer_;
    SimulatedStatusBar statusBar_{journal_};
    SimulatedHotkeys hotkeys_;
    SimulatedKeyMonitors keyMonitors_;
    SimulatedKeyboardLayout layout_;
    SimulatedLoginItem loginItem_{journal_};
    SimulatedBundle bundle_;
    int terminations_ = 0;
    std::shared_ptr<ApplicationController> application_;
};

} // namespace tarvex
