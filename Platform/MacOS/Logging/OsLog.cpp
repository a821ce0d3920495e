#include "Platform/MacOS/Logging/OsLog.h"

#include <memory>
#include <os/log.h>
#include <string>
#include <type_traits>

namespace tarvex {

namespace {

struct OsRelease {
    void operator()(os_log_t log) const { os_release(log); }
};

using OsLogHandle = std::unique_ptr<std::remove_pointer_t<os_log_t>, OsRelease>;

} // namespace

void writeUnifiedLogError(std::string_view subsystem, std::string_view category, std::string_view message) {
    // The system keeps one log object for each pair of names and hands it out again.
    const OsLogHandle log(os_log_create(std::string(subsystem).c_str(), std::string(category).c_str()));
    if (log) {
        os_log_error(log.get(), "%{public}s", std::string(message).c_str());
    }
}

} // namespace tarvex
