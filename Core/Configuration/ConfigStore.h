#pragma once

#include "Core/Configuration/TarvexConfig.h"
#include "Core/Files/FileManager.h"
#include "Core/Logging/Logger.h"

#include <string>

namespace tarvex {

/// Reads and writes config.json in the folder "Tarvex" of the user's application data. It caches nothing:
/// every load reads the file again, so that all stores over one file always agree. Every call makes sure that
/// the folder exists. Failures to find or make the folder are thrown without a log line.
class ConfigStore {
public:
    /// The file manager must outlive the store.
    ConfigStore(Logger logger, FileManager& fileManager);

    /// The saved settings; the defaults when there is no file. Logs and throws (FileError, DecodingError)
    /// when a file stands there that cannot be read or decoded; the file is left alone.
    [[nodiscard]] TarvexConfigRef loadConfig();

    /// Replaces the file with the whole record, in one step. What stood there is kept beside it as
    /// config.json.bak if it cannot be read or decoded: it may be a work of hours with a slip of the pen.
    /// Where no file can take that name, it is config.json.bak.1. Logs and throws (FileError, EncodingError)
    /// when the writing fails; the old file then stands as it was.
    void saveConfig(const TarvexConfig& config);

private:
    [[nodiscard]] std::string getConfigUrl();

    /// Where a file went that is about to be replaced; empty when it is not kept.
    struct Kept {
        std::string url;
        std::string failure;
    };

    /// True also for a file that does not exist.
    [[nodiscard]] bool canBeLoaded(const std::string& url);
    [[nodiscard]] Kept keep(const std::string& url);
    /// Of use where the file had to be moved to be kept.
    void bringBack(const Kept& kept, const std::string& url);
    [[nodiscard]] TarvexConfigRef decodeConfig(const std::string& data);
    [[nodiscard]] std::string encodeConfig(const TarvexConfig& config);

    Logger logger_;
    FileManager* fileManager_;
};

/// The saved settings; null when they cannot be read, which the store has logged.
[[nodiscard]] TarvexConfigRef loadConfigOrNone(ConfigStore& store);

/// The same, and the defaults when they cannot be read.
[[nodiscard]] TarvexConfigRef loadConfigOrDefault(ConfigStore& store);

} // namespace tarvex
