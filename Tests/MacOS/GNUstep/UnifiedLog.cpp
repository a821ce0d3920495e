#include "Tests/MacOS/GNUstep/UnifiedLog.h"

#include "Platform/MacOS/Logging/OsLog.h"

#include <cstdio>
#include <utility>

namespace tarvex {

namespace {

std::vector<std::string>& remembered() {
    static std::vector<std::string> lines;
    return lines;
}

} // namespace

// GNUstep has no unified log: what the adapters write to it is shown beside the tests, and remembered.
void writeUnifiedLogError(std::string_view subsystem, std::string_view category, std::string_view message) {
    const std::string line = std::string(category) + ": " + std::string(message);
    std::fprintf(stderr, "[%.*s] %s\n", static_cast<int>(subsystem.size()), subsystem.data(), line.c_str());
    remembered().push_back(line);
}

namespace test {

std::vector<std::string> takeUnifiedLog() {
    return std::exchange(remembered(), {});
}

} // namespace test

} // namespace tarvex
