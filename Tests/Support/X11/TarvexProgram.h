#pragma once

#include "Tests/Support/X11/ChildProcess.h"
#include "Tests/Support/X11/XServer.h"

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tarvex::test {

/// The program under test on a private X server, with configuration, log and run-time folders of its own.
/// Destroying it kills it; a test that wants to know that it ends well calls expectCleanExit().
class TarvexProgram {
public:
    /// @param path of the executable
    TarvexProgram(const XServer& server, std::string path);

    /// Starts it and waits until it observes events. Throws std::runtime_error when it does not.
    void start(const std::vector<std::string>& arguments = {});

    /// Starts it without waiting.
    void launch(const std::vector<std::string>& arguments = {});

    /// What starts it, for starts beside this one.
    [[nodiscard]] Command command(const std::vector<std::string>& arguments) const;

    /// Changes an environment variable for starts from now on.
    void setVariable(const std::string& name, const std::string& value) { environment_[name] = value; }

    /// Where it looks for its settings. The folder exists.
    [[nodiscard]] std::filesystem::path configPath() const;

    /// Replaces the settings, in one step, while it runs or not.
    void writeConfig(std::string_view text) const;

    /// The text of its log file up to now.
    [[nodiscard]] std::string log() const;

    /// How many lines of the log file hold the text.
    [[nodiscard]] int countInLog(std::string_view text) const;

    [[nodiscard]] const std::string& standardError() { return process_->standardError(); }

    /// Waits until a line of standard error holds the text; throws std::runtime_error when none comes.
    void awaitOnStandardError(std::string_view text);

    /// Further lines of standard error that are in order in this test: each that holds the text.
    void allowOnStandardError(std::string text) { allowed_.push_back(std::move(text)); }

    /// Asks it to end, and fails the test unless it does so with exit code 0 and has written nothing but the
    /// known lines.
    void expectCleanExit();

    [[nodiscard]] ChildProcess& process() { return *process_; }

private:
    [[nodiscard]] std::vector<std::string> unexpectedLines();

    std::string path_;
    Environment environment_;
    std::unique_ptr<ChildProcess> process_;
    std::vector<std::string> allowed_;
};

} // namespace tarvex::test
