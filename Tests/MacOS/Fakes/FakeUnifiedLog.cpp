#include "Tests/MacOS/Fakes/FakeUnifiedLog.h"

#include "Tests/MacOS/Fakes/FakeMac.h"

#include <cstdarg>
#include <string_view>

namespace tarvex::fake {

os_log_t FakeUnifiedLog::create(const char* subsystem, const char* category) {
    logs_.push_back(std::make_unique<Log>(Log{subsystem, category, 1}));
    return reinterpret_cast<os_log_t>(logs_.back().get());
}

void FakeUnifiedLog::release(void* log) {
    if (--static_cast<Log*>(log)->references < 0) {
        misuses_.emplace_back("os_release of a released log");
    }
}

void FakeUnifiedLog::write(os_log_t log, os_log_type_t type, const char* format, const char* message) {
    const auto* found = reinterpret_cast<const Log*>(log);
    if (found->references < 1) {
        misuses_.emplace_back("a line for a released log");
    }
    if (std::string_view(format) != "%{public}s") {
        misuses_.emplace_back("a line that the log would hide");
    }
    lines.push_back({found->subsystem, found->category, type, message});
}

std::vector<std::string> FakeUnifiedLog::leftovers() const {
    std::vector<std::string> found = misuses_;
    for (const auto& log : logs_) {
        if (log->references > 0) {
            found.push_back("log " + log->subsystem + "/" + log->category);
        }
    }
    return found;
}

} // namespace tarvex::fake

using namespace tarvex::fake;

extern "C" {

os_log_t os_log_create(const char* subsystem, const char* category) {
    return mac().log.create(subsystem, category);
}

void os_release(void* object) {
    mac().log.release(object);
}

void tarvexRecordOsLog(os_log_t log, os_log_type_t type, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    mac().log.write(log, type, format, va_arg(arguments, const char*));
    va_end(arguments);
}
}
