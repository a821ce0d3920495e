#pragma once

#include "Core/Files/FileManager.h"

#include <optional>
#include <string>

namespace tarvex {

/// Where the program runs from.
class Installation {
public:
    /// The running executable's real path; empty when the system does not tell.
    [[nodiscard]] static std::string executablePath();

    /// The folder below which the executable is installed: `<prefix>` for `<prefix>/bin/tarvex` beside
    /// `<prefix>/share/applications/tarvex.desktop`. None for any other place, such as a build tree.
    [[nodiscard]] static std::optional<std::string> prefixOf(const std::string& executable,
                                                             const FileManager& files);
};

} // namespace tarvex
