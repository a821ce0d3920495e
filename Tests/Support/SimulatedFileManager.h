#pragma once

#include "Core/Files/FileManager.h"

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace tarvex {

/// The operations of a FileManager that can be made to fail.
enum class FileOperation { applicationSupportDirectory, createDirectory, readFile, writeFile, keepCopy };

/// A file system in memory. Folders come into being with createDirectory; files are put there by the test or
/// written by the code under test. Any operation can be made to fail, and every call is counted.
class SimulatedFileManager final : public FileManager {
public:
    static constexpr std::string_view supportDirectory = "/support";
    /// Where a ConfigStore over this file manager keeps its file.
    static constexpr std::string_view configPath = "/support/Tarvex/config.json";

    /// Makes the operation throw FileError with the reason, until healed.
    void fail(FileOperation operation, std::string reason) { failures_[operation] = std::move(reason); }

    void heal(FileOperation operation) { failures_.erase(operation); }

    void putFile(std::string_view path, std::string content) {
        files_[std::string(path)] = std::move(content);
    }

    void removeFile(std::string_view path) { files_.erase(std::string(path)); }

    /// The content of a file; none when there is no such file.
    [[nodiscard]] std::optional<std::string> content(std::string_view path) const {
        const auto found = files_.find(std::string(path));
        return found == files_.end() ? std::nullopt : std::optional(found->second);
    }

    [[nodiscard]] bool hasDirectory(std::string_view path) const {
        return directories_.contains(std::string(path));
    }

    /// How often the operation was called, failures included.
    [[nodiscard]] std::size_t callCount(FileOperation operation) const {
        const auto found = calls_.find(operation);
        return found == calls_.end() ? 0 : found->second;
    }

    [[nodiscard]] std::string applicationSupportDirectory() const override {
        enter(FileOperation::applicationSupportDirectory);
        return std::string(supportDirectory);
    }

    void createDirectory(const std::string& path) override {
        enter(FileOperation::createDirectory);
        if (files_.contains(path)) {
            throw FileError("Cannot create the folder \"" + path + "\": File exists");
        }
        directories_.insert(path);
    }

    [[nodiscard]] bool fileExists(const std::string& path) const override {
        return files_.contains(path) || directories_.contains(path);
    }

    [[nodiscard]] std::string readFile(const std::string& path) const override {
        enter(FileOperation::readFile);
        const auto found = files_.find(path);
        if (found == files_.end()) {
            throw FileError("Cannot read \"" + path + "\": No such file or directory");
        }
        return found->second;
    }

    void writeFileAtomically(const std::string& path, std::string_view content) override {
        enter(FileOperation::writeFile);
        files_[path] = content;
    }

    void keepCopy(const std::string& path, const std::string& copyPath) override {
        enter(FileOperation::keepCopy);
        const auto found = files_.find(path);
        if (found == files_.end()) {
            throw FileError("Cannot keep \"" + path + "\": No such file or directory");
        }
        if (directories_.contains(copyPath)) {
            throw FileError("Cannot replace \"" + copyPath + "\": Is a directory");
        }
        files_[copyPath] = std::string(found->second);
        if (movesInsteadOfCopying) {
            files_.erase(path);
        }
    }

    /// As on a file system that gives a file no second name, with files that cannot be read.
    bool movesInsteadOfCopying = false;

private:
    void enter(FileOperation operation) const {
        ++calls_[operation];
        const auto failure = failures_.find(operation);
        if (failure != failures_.end()) {
            throw FileError(failure->second);
        }
    }

    std::map<std::string, std::string> files_;
    std::set<std::string> directories_;
    std::map<FileOperation, std::string> failures_;
    mutable std::map<FileOperation, std::size_t> calls_;
};

} // namespace tarvex
