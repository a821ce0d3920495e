#include "Platform/Linux/InstalledBundle.h"

#include <utility>

namespace tarvex {

InstalledBundle::InstalledBundle(std::string version, std::optional<std::string> prefix,
                                 const FileManager& files)
    : version_(std::move(version)), prefix_(std::move(prefix)), files_(&files) {}

std::optional<std::string> InstalledBundle::shortVersionString() {
    return version_.empty() ? std::nullopt : std::optional(version_);
}

std::optional<std::string> InstalledBundle::versionFileText() {
    if (!prefix_) {
        return std::nullopt;
    }
    try {
        return files_->readFile(*prefix_ + "/share/tarvex/VERSION");
    } catch (const FileError&) {
        return std::nullopt;
    }
}

} // namespace tarvex
