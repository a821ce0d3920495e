#pragma once

#include <memory>
#include <os/log.h>
#include <string>
#include <vector>

namespace tarvex::fake {

struct UnifiedLine {
    std::string subsystem;
    std::string category;
    os_log_type_t type{};
    std::string message;

    bool operator==(const UnifiedLine&) const = default;
};

/// The unified log: what was written to it, and the log objects that it handed out.
class FakeUnifiedLog {
public:
    os_log_t create(const char* subsystem, const char* category);
    void release(void* log);
    void write(os_log_t log, os_log_type_t type, const char* format, const char* message);

    std::vector<UnifiedLine> lines;

    /// Log objects that nobody released, and messages that others could not read.
    [[nodiscard]] std::vector<std::string> leftovers() const;

private:
    struct Log {
        std::string subsystem;
        std::string category;
        int references = 1;
    };

    std::vector<std::unique_ptr<Log>> logs_;
    std::vector<std::string> misuses_;
};

} // namespace tarvex::fake
