#include "Tests/Support/X11/TarvexProgram.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace tarvex::test {
namespace {

constexpr std::string_view readyLine = "EventTapManager.start: event tap installed on current run loop";

// What every undisturbed run says,
constexpr std::array<std::string_view, 3> knownLines{
    "AccessibilityService.ensureTrusted: trusted=true",
    "EventTapManager.start: creating event tap",
    readyLine,
};

// and how it begins to tell of the hotkeys.
constexpr std::array<std::string_view, 6> knownBeginnings{
    "OpenEditor hotkey: ",          "OpenPreferences hotkey: ",
    "HotkeyManager.register id=",   "HotkeyManager.unregister id=",
    "HotkeyManager triggered (id=", "ApplicationController.handleOpenEditorHotkey",
};

} // namespace

TarvexProgram::TarvexProgram(const XServer& server, std::string path)
    : path_{std::move(path)}, environment_{server.clientEnvironment("tarvex")} {
    environment_["QT_QPA_PLATFORM"] = "xcb";
    environment_["XDG_SESSION_TYPE"] = "x11";
    std::filesystem::create_directories(configPath().parent_path());
}

Command TarvexProgram::command(const std::vector<std::string>& arguments) const {
    std::vector<std::string> words{path_};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return {words, environment_, std::nullopt};
}

void TarvexProgram::launch(const std::vector<std::string>& arguments) {
    process_ = std::make_unique<ChildProcess>(command(arguments));
}

void TarvexProgram::start(const std::vector<std::string>& arguments) {
    launch(arguments);
    awaitOnStandardError(readyLine);
}

std::filesystem::path TarvexProgram::configPath() const {
    return std::filesystem::path(environment_.at("XDG_CONFIG_HOME")) / "Tarvex" / "config.json";
}

void TarvexProgram::writeConfig(std::string_view text) const {
    const std::filesystem::path temporary = configPath().parent_path() / "config.json.new";
    std::ofstream file(temporary, std::ios::binary);
    file << text;
    file.close();
    if (!file) {
        throw std::runtime_error("cannot write the settings");
    }
    std::filesystem::rename(temporary, configPath());
}

std::string TarvexProgram::log() const {
    const auto path =
        std::filesystem::path(environment_.at("XDG_STATE_HOME")) / "Tarvex" / "Logs" / "Tarvex.log";
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

int TarvexProgram::countInLog(std::string_view text) const {
    std::istringstream lines(log());
    int count = 0;
    for (std::string line; std::getline(lines, line);) {
        count += line.find(text) != std::string::npos ? 1 : 0;
    }
    return count;
}

void TarvexProgram::awaitOnStandardError(std::string_view text) {
    const auto isThere = [&] { return process_->standardError().find(text) != std::string::npos; };
    if (!process_->waitForOutput(isThere)) {
        throw std::runtime_error("tarvex did not write \"" + std::string(text) + "\" but:\n" +
                                 process_->standardError());
    }
}

std::vector<std::string> TarvexProgram::unexpectedLines() {
    std::istringstream lines(process_->standardError() + process_->standardOutput());
    std::vector<std::string> unexpected;
    for (std::string line; std::getline(lines, line);) {
        const auto isIn = [&](std::string_view text) { return line.find(text) != std::string::npos; };
        const bool isKnown =
            std::ranges::find(knownLines, line) != knownLines.end() ||
            std::ranges::any_of(knownBeginnings, [&](auto text) { return line.starts_with(text); });
        if (!isKnown && !std::ranges::any_of(allowed_, isIn)) {
            unexpected.push_back(line);
        }
    }
    return unexpected;
}

void TarvexProgram::expectCleanExit() {
    process_->signal(SIGTERM);
    const std::optional<ExitStatus> status = process_->waitForExit();
    if (!status) {
        ADD_FAILURE() << "tarvex did not end after SIGTERM";
        return;
    }
    EXPECT_EQ(status->code, 0) << "ended by signal " << status->signal.value_or(0);
    EXPECT_EQ(unexpectedLines(), std::vector<std::string>{}) << "its whole output:\n"
                                                             << process_->standardError();
}

} // namespace tarvex::test
