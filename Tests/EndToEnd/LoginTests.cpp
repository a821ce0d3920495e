#include "Tests/EndToEnd/ShellFixture.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace tarvex::test {
namespace {

constexpr PixelPoint launchAtLogin{30, 280};
constexpr SessionKind plainSession{WindowManagerKind::openbox, false};

/// The program in a folder of programs, beside what an installation puts with it.
class InstalledProgram : public ::testing::Test {
protected:
    void SetUp() override {
        const ScratchDirectory& scratch = desktop_.server.scratch();
        const std::filesystem::path program = scratch.write("prefix/bin/tarvex", "");
        std::filesystem::copy_file(TARVEX_PROGRAM, program,
                                   std::filesystem::copy_options::overwrite_existing);
        program_ = program.string();
        scratch.write("prefix/share/applications/tarvex.desktop", "[Desktop Entry]\nType=Application\n");
        tarvex_ = std::make_unique<TarvexProgram>(desktop_.server, program_);
    }

    [[nodiscard]] std::filesystem::path entryPath() const {
        return tarvex_->configPath().parent_path().parent_path() / "autostart" / "tarvex.desktop";
    }

    [[nodiscard]] std::string entry() const {
        std::ifstream file(entryPath(), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

    void clickLaunchAtLogin() {
        XClient& client = desktop_.client;
        std::optional<xcb_window_t> preferences;
        client.waitUntil(
            [&] {
                for (const xcb_window_t window : client.managedWindows()) {
                    if (client.text(window, "_NET_WM_NAME") == "Preferences" && client.isViewable(window)) {
                        preferences = window;
                    }
                }
                return preferences.has_value();
            },
            "the preferences are shown");
        desktop_.awaitCentered(*preferences);
        const auto content = client.geometryInRoot(*preferences);
        ASSERT_TRUE(content.has_value());
        desktop_.pointer.moveTo({content->x + launchAtLogin.x, content->y + launchAtLogin.y});
        desktop_.pointer.press();
        desktop_.pointer.release();
    }

    bool settingIs(bool isOn) {
        std::ifstream file(tarvex_->configPath(), std::ios::binary);
        const auto document = nlohmann::json::parse(file, nullptr, false);
        return document.is_object() && document.contains("launchAtLogin") &&
               document["launchAtLogin"] == isOn;
    }

    Desktop desktop_{plainSession, [] {
                         DesktopOptions options;
                         options.startsTarvex = false;
                         return options;
                     }()};
    std::string program_;
    std::unique_ptr<TarvexProgram> tarvex_;
};

TEST_F(InstalledProgram, IsStartedAtLoginWhenThePreferencesSaySo) {
    // A press on the program's own window is a press on no window that could be dragged.
    tarvex_->allowOnStandardError("CopyElementAtPosition returned nil element");
    tarvex_->start({"--open-preferences"});
    EXPECT_FALSE(std::filesystem::exists(entryPath()));
    clickLaunchAtLogin();
    EXPECT_TRUE(
        desktop_.client.waitFor([&] { return std::filesystem::exists(entryPath()) && settingIs(true); }));
    EXPECT_NE(entry().find("Exec=\"" + program_ + "\"\n"), std::string::npos) << entry();
    clickLaunchAtLogin();
    EXPECT_TRUE(
        desktop_.client.waitFor([&] { return !std::filesystem::exists(entryPath()) && settingIs(false); }));
    tarvex_->expectCleanExit();
}

TEST_F(InstalledProgram, WhatTheDesktopSaysCountsAtTheStart) {
    tarvex_->writeConfig(Settings{.launchesAtLogin = true}.json());
    tarvex_->start();
    EXPECT_TRUE(settingIs(false)) << "the user took the entry away by other means";
    tarvex_->expectCleanExit();
    std::filesystem::create_directories(entryPath().parent_path());
    std::ofstream(entryPath()) << "[Desktop Entry]\nType=Application\nName=Tarvex\nExec=" << program_ << "\n";
    tarvex_->start();
    EXPECT_TRUE(settingIs(true));
    tarvex_->expectCleanExit();
    std::ofstream(entryPath(), std::ios::app) << "Hidden=true\n";
    tarvex_->start();
    EXPECT_TRUE(settingIs(false)) << "an entry that is switched off is none";
    tarvex_->expectCleanExit();
}

} // namespace
} // namespace tarvex::test
