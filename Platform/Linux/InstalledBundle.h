#pragma once

#include "App/Shell/BundleInformation.h"
#include "Core/Files/FileManager.h"

#include <optional>
#include <string>

namespace tarvex {

/// What the program was built and installed with.
class InstalledBundle final : public BundleInformation {
public:
    /// @param version built in; empty for none
    /// @param prefix where the program is installed, as Installation::prefixOf() gives it
    /// @param files must outlive the object
    InstalledBundle(std::string version, std::optional<std::string> prefix, const FileManager& files);

    [[nodiscard]] std::optional<std::string> shortVersionString() override;

    /// That of `<prefix>/share/tarvex/VERSION`.
    [[nodiscard]] std::optional<std::string> versionFileText() override;

private:
    std::string version_;
    std::optional<std::string> prefix_;
    const FileManager* files_;
};

} // namespace tarvex
