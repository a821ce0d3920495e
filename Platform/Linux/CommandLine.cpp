#include "Platform/Linux/CommandLine.h"

#include <charconv>
#include <system_error>

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
  --open-editor [NUMBER]   open the zone editor, on the display of that number
  --open-preferences       open the preferences
  --quit                   end the instance that runs
  --list-displays          print each display's number and title, and exit
  --help                   show this help and exit
  --version                show the version and exit

One instance runs per session. A second start hands its option over to the first and
exits; without an option it opens the preferences.

Files:
  $XDG_CONFIG_HOME/Tarvex/config.json        settings, read afresh on every use
  $XDG_STATE_HOME/Tarvex/Logs/Tarvex.log     what happened lately
  (~/.config and ~/.local/state when these are unset)

Windows snap in an X11 session. In a Wayland session the program needs Xwayland to start at
all: nothing snaps there, the zone editor, the preferences and the settings work, and the
hotkeys do while an X11 program is active.
)";

std::optional<std::uint32_t> displayNumber(const std::string& text) {
    std::uint32_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && rest == end ? std::optional(number) : std::nullopt;
}

// What the option sets; null for an unknown one.
bool* flagOf(const std::string& option, CommandLine& commandLine) {
    if (option == "--open-editor") {
        return &commandLine.opensEditor;
    }
    if (option == "--open-preferences") {
        return &commandLine.opensPreferences;
    }
    if (option == "--quit") {
        return &commandLine.quits;
    }
    return option == "--list-displays" ? &commandLine.listsDisplays : nullptr;
}

} // namespace

InstanceRequest CommandLine::request() const {
    if (opensEditor) {
        return {InstanceRequestKind::openEditor, editorDisplay};
    }
    if (opensPreferences) {
        return {InstanceRequestKind::openPreferences, std::nullopt};
    }
    return {quits ? InstanceRequestKind::quit : InstanceRequestKind::none, std::nullopt};
}

CommandLine parseCommandLine(const std::vector<std::string>& arguments, const std::string& version) {
    CommandLine result;
    const auto exitWith = [&result](int code, const std::string& text) {
        result.exit = CommandLineExit{code, text};
        return result;
    };
    std::string task;
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        const std::string& argument = arguments[index];
        if (argument == "--help" || argument == "-h") {
            return exitWith(0, helpText);
        }
        if (argument == "--version") {
            return exitWith(0, "tarvex " + version + "\n");
        }
        bool* const flag = flagOf(argument, result);
        if (flag == nullptr) {
            return exitWith(usageError, "tarvex: unknown option '" + argument + "'\nTry 'tarvex --help'.\n");
        }
        if (!task.empty() && task != argument) {
            return exitWith(usageError, "tarvex: '" + task + "' and '" + argument +
                                            "' cannot be combined\nTry 'tarvex --help'.\n");
        }
        task = argument;
        *flag = true;
        const bool takesValue = argument == "--open-editor";
        const bool hasValue = index + 1 < arguments.size() && !arguments[index + 1].starts_with('-');
        if (takesValue && hasValue) {
            result.editorDisplay = displayNumber(arguments[++index]);
            if (!result.editorDisplay) {
                return exitWith(usageError, "tarvex: '" + arguments[index] +
                                                "' is no display number\nTry 'tarvex --list-displays'.\n");
            }
        }
    }
    return result;
}

} // namespace tarvex
