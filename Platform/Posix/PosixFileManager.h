#pragma once

#include "Core/Files/FileManager.h"

#include <string>
#include <string_view>

namespace tarvex {

/// The file system of a POSIX system.
class PosixFileManager final : public FileManager {
public:
    /// @param applicationSupportDirectory the folder for per-user application data; empty when the system
    ///        names none
    explicit PosixFileManager(std::string applicationSupportDirectory);

    [[nodiscard]] std::string applicationSupportDirectory() const override;

    /// New folders are open to their owner alone, as the XDG base directory rules ask.
    void createDirectory(const std::string& path) override;

    /// A path whose state cannot be found out counts as nothing.
    [[nodiscard]] bool fileExists(const std::string& path) const override;

    [[nodiscard]] std::string readFile(const std::string& path) const override;

    /// Owner and group are kept as far as the user may give files away. The target of a dangling link is
    /// created. Throws for anything but a regular file or nothing.
    void writeFileAtomically(const std::string& path, std::string_view content) override;

private:
    std::string applicationSupportDirectory_;
};

} // namespace tarvex
