#pragma once

#include "Core/Logging/LogPlatform.h"

#include <string>
#include <string_view>
#include <vector>

namespace tarvex {

/// One line of the unified log.
struct UnifiedLogLine {
    std::string subsystem;
    std::string category;
    std::string message;

    bool operator==(const UnifiedLogLine&) const = default;
};

/// Keeps what is written to the platform's two logs. Used from one thread.
class RecordingLog final : public LogPlatform {
public:
    void systemLog(std::string_view message) override { systemLines_.emplace_back(message); }

    void unifiedLogError(std::string_view subsystem, std::string_view category,
                         std::string_view message) override {
        unifiedLines_.push_back({std::string(subsystem), std::string(category), std::string(message)});
    }

    [[nodiscard]] const std::vector<std::string>& systemLines() const { return systemLines_; }

    [[nodiscard]] const std::vector<UnifiedLogLine>& unifiedLines() const { return unifiedLines_; }

    void clear() {
        systemLines_.clear();
        unifiedLines_.clear();
    }

private:
    std::vector<std::string> systemLines_;
    std::vector<UnifiedLogLine> unifiedLines_;
};

} // namespace tarvex
