#pragma once

#include <string>
#include <vector>

namespace tarvex {

/// The user's base folders as the XDG base directory rules name them: the environment's choice when it is an
/// absolute path, else the usual folder below the user's home. Each is asked for afresh.
class XdgDirectories {
public:
    /// Where settings are kept, ~/.config as a rule. Empty when the user has no home.
    [[nodiscard]] static std::string configHome();

    /// Where records of what happened are kept, ~/.local/state as a rule. Empty likewise.
    [[nodiscard]] static std::string stateHome();

    /// Where sockets, locks and the like are kept while the user is logged in. Empty when the environment
    /// names none, or one that is no folder of this user's: there is no usual place for it.
    [[nodiscard]] static std::string runtimeDirectory();

    /// Where the user's own autostart entries are (Desktop Application Autostart Specification). Empty as
    /// configHome().
    [[nodiscard]] static std::string autostart();

    /// The system's autostart folders, the most important first.
    [[nodiscard]] static std::vector<std::string> systemAutostart();
};

} // namespace tarvex
