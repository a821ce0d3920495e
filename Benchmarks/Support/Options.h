#pragma once

#include <string>
#include <vector>

namespace tarvex::benchmark {

/// What to run, from the command line.
struct Options {
    /// A few runs of each, to see that all works; the figures mean nothing.
    bool isQuick = false;
    /// The names of the tables to measure; empty for all.
    std::vector<std::string> only;

    [[nodiscard]] bool wants(const std::string& name) const;

    [[nodiscard]] int runs(int full, int quick) const { return isQuick ? quick : full; }
};

/// Reads `[--quick] [name...]`. Throws std::invalid_argument for any other option, and for a name that is
/// none of the known ones.
[[nodiscard]] Options parseOptions(int argc, char** argv, const std::vector<std::string>& names);

} // namespace tarvex::benchmark
