#pragma once

#include "App/Logging/MessageLog.h"
#include "Core/Logging/LogPlatform.h"
#include "Tests/Support/Simulated/Journal.h"

#include <string>
#include <string_view>
#include <vector>

namespace tarvex {

/// Keeps the lines of the system log and of the unified log.
class SimulatedLog final : public LogPlatform {
public:
    explicit SimulatedLog(Journal& journal) : journal_(&journal) {}

    void systemLog(std::string_view message) override {
        lines_.emplace_back(message);
        journal_->note("log: " + std::string(message));
    }

    void unifiedLogError(std::string_view subsystem, std::string_view category,
                         std::string_view message) override {
        errors_.push_back(std::string(subsystem) + "/" + std::string(category) + ": " + std::string(message));
    }

    /// The lines of the system log.
    [[nodiscard]] const std::vector<std::string>& lines() const { return lines_; }

    /// The errors of the unified log, as "subsystem/category: message".
    [[nodiscard]] const std::vector<std::string>& errors() const { return errors_; }

    void clear() {
        lines_.clear();
        errors_.clear();
    }

private:
    Journal* journal_;
    std::vector<std::string> lines_;
    std::vector<std::string> errors_;
};

/// Keeps the lines of the log file.
class SimulatedFileLog final : public MessageLog {
public:
    explicit SimulatedFileLog(Journal& journal) : journal_(&journal) {}

    void log(const std::string& message) override {
        lines_.push_back(message);
        journal_->note("file log: " + message);
    }

    [[nodiscard]] const std::vector<std::string>& lines() const { return lines_; }

    void clear() { lines_.clear(); }

private:
    Journal* journal_;
    std::vector<std::string> lines_;
};

} // namespace tarvex
