#include "App/Logging/FileLogger.h"
#include "Tests/Support/TemporaryDirectory.h"

namespace tarvex {

// The platform's part of the file logger, for a program of tests: a folder of its own in a folder that goes
// with the process.
std::string logFilePath() {
    static const TemporaryDirectory directory;
    return directory.path("Logs/Tarvex.log");
}

} // namespace tarvex
