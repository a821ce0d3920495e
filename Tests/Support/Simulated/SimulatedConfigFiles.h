#pragma once

#include "Core/Files/FileManager.h"
#include "Tests/Support/Simulated/Journal.h"

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace tarvex {

/// A disk in memory that holds the configuration file, or does not, or cannot be read.
class SimulatedConfigFiles final : public FileManager {
public:
    explicit SimulatedConfigFiles(Journal& journal) : journal_(&journal) {}

    [[nodiscard]] std::string applicationSupportDirectory() const override { return "/home/person/.config"; }

    /// The store makes sure of its folder on every use, so that this counts its loads.
    void createDirectory(const std::string& path) override {
        journal_->note("config load");
        const int load = loads_++;
        if (onLoad_) {
            const std::function<void(int)> action = onLoad_;
            action(load);
        }
        if (isFolderBlocked_) {
            throw FileError("cannot make " + path);
        }
    }

    [[nodiscard]] bool fileExists(const std::string& path) const override { return files_.contains(path); }

    [[nodiscard]] std::string readFile(const std::string& path) const override {
        const auto found = files_.find(path);
        if (found == files_.end() || isUnreadable_) {
            throw FileError("cannot read " + path);
        }
        return found->second;
    }

    void writeFileAtomically(const std::string& path, std::string_view content) override {
        if (isFull_) {
            throw FileError("cannot write " + path);
        }
        files_[path] = std::string(content);
    }

    void keepCopy(const std::string& path, const std::string& copyPath) override {
        const std::string content = files_.at(path);
        files_[copyPath] = content;
    }

    void put(std::string text) { files_[configPath()] = std::move(text); }

    void remove() { files_.erase(configPath()); }

    [[nodiscard]] std::string text() const {
        return files_.contains(configPath()) ? files_.at(configPath()) : "";
    }

    /// What was kept of a file that could not be decoded.
    [[nodiscard]] std::string keptText() const {
        const auto found = files_.find(configPath() + ".bak");
        return found == files_.end() ? "" : found->second;
    }

    /// Whether the file stands there and refuses to be read.
    void setUnreadable(bool isUnreadable) { isUnreadable_ = isUnreadable; }

    /// Whether a plain file stands where the folder should be.
    void setFolderBlocked(bool isBlocked) { isFolderBlocked_ = isBlocked; }

    /// Whether there is no room for anything new.
    void setFull(bool isFull) { isFull_ = isFull; }

    /// Called at the start of every load with its number since the last resetLoads(), 0 for the first; it may
    /// change the disk.
    void onLoad(std::function<void(int)> action) { onLoad_ = std::move(action); }

    [[nodiscard]] int loads() const { return loads_; }

    void resetLoads() { loads_ = 0; }

private:
    static std::string configPath() { return "/home/person/.config/Tarvex/config.json"; }

    Journal* journal_;
    std::map<std::string, std::string> files_;
    std::function<void(int)> onLoad_;
    bool isUnreadable_ = false;
    bool isFolderBlocked_ = false;
    bool isFull_ = false;
    int loads_ = 0;
};

} // namespace tarvex
