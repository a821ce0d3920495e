#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace tarvex {

/// A failed file operation. what() is one line for a log: what was tried, on which path, and the system's
/// own words for the failure.
class FileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Port: the file system, as far as the program uses it. Paths are UTF-8 and absolute. Every failure throws
/// FileError and leaves what stood before untouched.
class FileManager {
public:
    FileManager() = default;
    FileManager(const FileManager&) = delete;
    FileManager& operator=(const FileManager&) = delete;
    FileManager(FileManager&&) = delete;
    FileManager& operator=(FileManager&&) = delete;
    virtual ~FileManager() = default;

    /// The folder for per-user application data, such as ~/.config. It need not exist yet. Throws when the
    /// system names none.
    [[nodiscard]] virtual std::string applicationSupportDirectory() const = 0;

    /// Creates the folder and its parents. A folder that stands already is no failure.
    virtual void createDirectory(const std::string& path) = 0;

    /// True when something stands at the path, symbolic links followed: a dangling link is nothing.
    [[nodiscard]] virtual bool fileExists(const std::string& path) const = 0;

    /// The whole content of a regular file. Throws for anything else, and never waits for another process.
    [[nodiscard]] virtual std::string readFile(const std::string& path) const = 0;

    /// Replaces the content of the file in one step: a reader sees the whole old or the whole new content,
    /// also after a loss of power. The file keeps its permissions. A symbolic link stays a link; the file
    /// that it names is the one replaced.
    virtual void writeFileAtomically(const std::string& path, std::string_view content) = 0;

    /// Has what stands at the path, links followed, stand at the other path as well, in place of what stood
    /// there. What is written to the first path later does not reach the copy. A file that the file system
    /// can give no second name and that cannot be read is moved instead: nothing stands at the first path
    /// then.
    virtual void keepCopy(const std::string& path, const std::string& copyPath) = 0;
};

} // namespace tarvex
