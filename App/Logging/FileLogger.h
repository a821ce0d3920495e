#pragma once

#include "App/Logging/LogFile.h"
#include "App/Logging/MessageLog.h"
#include "App/Logging/SerialQueue.h"

#include <memory>
#include <string>

namespace tarvex {

/// The log file that a user can open and attach to a report: one timestamped line per message, bounded in
/// size. There is one per process. log() may be called from any thread and returns at once; the file is
/// touched on a queue of its own, and a failure costs at most one line.
class FileLogger final : public MessageLog, public std::enable_shared_from_this<FileLogger> {
public:
    /// The one logger, made on first use. At a proper end of the process it still writes what it was given.
    [[nodiscard]] static FileLogger& shared();

    /// Appends "[timestamp] message"; the timestamp is that of the call, in local time.
    void log(const std::string& message) override;

    /// Where the file is.
    [[nodiscard]] const std::string& path() const { return file_.path(); }

private:
    explicit FileLogger(std::string path);

    LogFile file_;
    // After the file, so that it ends first.
    SerialQueue queue_;
};

/// The path of the log file, decided by the platform that the program is linked for.
[[nodiscard]] std::string logFilePath();

} // namespace tarvex
