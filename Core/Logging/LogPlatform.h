#pragma once

#include <string_view>

namespace tarvex {

/// Port: the platform's two logs. Neither call blocks, fails or throws. Messages are UTF-8 and may hold line
/// breaks; an adapter whose log is a stream of lines keeps each message on one line.
class LogPlatform {
public:
    LogPlatform() = default;
    LogPlatform(const LogPlatform&) = delete;
    LogPlatform& operator=(const LogPlatform&) = delete;
    LogPlatform(LogPlatform&&) = delete;
    LogPlatform& operator=(LogPlatform&&) = delete;
    virtual ~LogPlatform() = default;

    /// One plain line in the system log.
    virtual void systemLog(std::string_view message) = 0;

    /// One line at error level in the unified log, under a subsystem and a category.
    virtual void unifiedLogError(std::string_view subsystem, std::string_view category,
                                 std::string_view message) = 0;
};

} // namespace tarvex
