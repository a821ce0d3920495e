#pragma once

#include <string>

namespace tarvex {

/// The user's base folders as the XDG base directory rules name them: the environment's choice when it is an
/// absolute path, else the usual folder below the user's home. Each is asked for afresh.
class XdgDirectories {
public:
    /// Where settings are kept, ~/.config as a rule. Empty when the user has no home.
    [[nodiscard]] static std::string configHome();

    /// Where records of what happened are kept, ~/.local/state as a rule. Empty likewise.
    [[nodiscard]] static std::string stateHome();
};

} // namespace tarvex
