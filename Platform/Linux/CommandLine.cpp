#include "Platform/Linux/CommandLine.h"

namespace tarvex {

namespace {

constexpr int usageError = 2;

constexpr const char* helpText =
    R"(Usage: tarvex [OPTION]
Divides each display into zones and puts windows into them.

Drag a window by its title bar, then press Super: the zones of the display appear, and
the window takes the one under the pointer when you release the button. With
Super+Shift it takes all zones that you passed over. Letting go of the keys before the
button puts the window back.

Options:
  --help       show this help and exit
  --version    show the version and exit

Files:
  $XDG_CONFIG_HOME/Tarvex/config.json        settings, read afresh on every use
  $XDG_STATE_HOME/Tarvex/Logs/Tarvex.log     what happened lately
  (~/.config and ~/.local/state when these are unset)

An X11 session is needed to move windows. In a Wayland session the program needs
Xwayland to start at all, and then waits: nothing snaps there.
)";

} // namespace

std::optional<CommandLineExit> parseCommandLine(const std::vector<std::string>& arguments,
                                                const std::string& version) {
    for (const std::string& argument : arguments) {
        if (argument == "--help" || argument == "-h") {
            return CommandLineExit{0, helpText};
        }
        if (argument == "--version") {
            return CommandLineExit{0, "tarvex " + version + "\n"};
        }
        return CommandLineExit{usageError,
                               "tarvex: unknown option '" + argument + "'\nTry 'tarvex --help'.\n"};
    }
    return std::nullopt;
}

} // namespace tarvex
