#pragma once

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

/// Reads the arguments, the program's own name left out. None when the program is to run.
[[nodiscard]] std::optional<CommandLineExit> parseCommandLine(const std::vector<std::string>& arguments,
                                                              const std::string& version);

} // namespace tarvex
