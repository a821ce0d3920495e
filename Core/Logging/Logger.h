#pragma once

#include "Core/Logging/LogPlatform.h"

#include <string>
#include <string_view>
#include <utility>

namespace tarvex {

/// A handle of the unified log: a subsystem and a category. The platform log must outlive it.
class Logger {
public:
    Logger(LogPlatform& platform, std::string subsystem, std::string category)
        : platform_(&platform), subsystem_(std::move(subsystem)), category_(std::move(category)) {}

    void error(std::string_view message) const { platform_->unifiedLogError(subsystem_, category_, message); }

private:
    LogPlatform* platform_;
    std::string subsystem_;
    std::string category_;
};

/// Makes the log handles of the core types.
class LoggerFactory {
public:
    explicit LoggerFactory(LogPlatform& platform) : platform_(&platform) {}

    /// A handle of subsystem "Tarvex" and the given category.
    [[nodiscard]] Logger makeLogger(std::string category) const {
        return {*platform_, "Tarvex", std::move(category)};
    }

private:
    LogPlatform* platform_;
};

} // namespace tarvex
