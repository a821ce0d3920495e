#pragma once

#include "Platform/Linux/InstanceRequest.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tarvex {

/// What to do instead of running: text to print and the exit code to end with.
struct CommandLineExit {
    int exitCode = 0;
    /// Goes to standard output for exit code 0, else to standard error.
    std::string text;
};

/// What the user asked for.
struct CommandLine {
    /// Present when the program is not to run.
    std::optional<CommandLineExit> exit;
    /// Print the displays and end.
    bool listsDisplays = false;
    /// Open the zone editor once the program runs,
    bool opensEditor = false;
    /// on the display of that number; on the main one without.
    std::optional<std::uint32_t> editorDisplay;
    /// Open the preferences once the program runs.
    bool opensPreferences = false;
    /// End the instance that runs.
    bool quits = false;

    /// What is asked of the instance that runs.
    [[nodiscard]] InstanceRequest request() const;
};

/// Reads the arguments, the program's own name left out. Of --open-editor, --open-preferences, --quit and
/// --list-displays one can be had at a time.
[[nodiscard]] CommandLine parseCommandLine(const std::vector<std::string>& arguments,
                                           const std::string& version);

} // namespace tarvex
