#pragma once

#include "Core/Files/FileManager.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace tarvex {

/// The file system of a POSIX system.
class PosixFileManager final : public FileManager {
public:
    /// A larger file is not read: what the program reads is small, and a file of another size stands there
    /// by mistake or malice.
    static constexpr std::size_t maxReadBytes = std::size_t{64} * 1024 * 1024;

    /// @param applicationSupportDirectory the folder for per-user application data; empty when the system
    ///        names none
    explicit PosixFileManager(std::string applicationSupportDirectory);

    [[nodiscard]] std::string applicationSupportDirectory() const override;

    /// New folders are open to their owner alone, as the XDG base directory rules ask.
    void createDirectory(const std::string& path) override;

    /// A path whose state cannot be found out counts as nothing.
    [[nodiscard]] bool fileExists(const std::string& path) const override;

    /// Throws for a file of more than maxReadBytes.
    [[nodiscard]] std::string readFile(const std::string& path) const override;

    /// Owner, group and access list are kept as far as the user may give files away; a group that cannot be
    /// kept leaves the new one without access. The target of a dangling link is created. Throws for anything
    /// but a regular file or nothing.
    void writeFileAtomically(const std::string& path, std::string_view content) override;

    /// By a further name for the same file, which needs no leave to read it; across file systems by copying.
    void keepCopy(const std::string& path, const std::string& copyPath) override;

private:
    void copyOrMove(const std::string& original, const std::string& target);

    std::string applicationSupportDirectory_;
};

} // namespace tarvex
