#include "Platform/Linux/XdgDirectories.h"

#include "App/Logging/FileLogger.h"

#include <cerrno>
#include <cstdlib>
#include <pwd.h>
#include <sstream>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace tarvex {

namespace {

constexpr const char* autostartFolder = "/autostart";

// Empty when the variable is missing or names no absolute path: a relative one would depend on where the
// program was started.
std::string absolutePathFromEnvironment(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr && *value == '/' ? value : std::string{};
}

std::string homeOfAccount() {
    std::vector<char> buffer(1024);
    passwd entry{};
    passwd* found = nullptr;
    while (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) == ERANGE) {
        buffer.resize(buffer.size() * 2);
    }
    return found != nullptr && found->pw_dir != nullptr ? found->pw_dir : std::string{};
}

std::string baseDirectory(const char* variable, const char* belowHome) {
    std::string chosen = absolutePathFromEnvironment(variable);
    if (!chosen.empty()) {
        return chosen;
    }
    std::string home = absolutePathFromEnvironment("HOME");
    if (home.empty()) {
        home = homeOfAccount();
    }
    return home.empty() ? home : home + belowHome;
}

} // namespace

std::string XdgDirectories::configHome() {
    return baseDirectory("XDG_CONFIG_HOME", "/.config");
}

std::string XdgDirectories::stateHome() {
    return baseDirectory("XDG_STATE_HOME", "/.local/state");
}

std::string XdgDirectories::runtimeDirectory() {
    std::string path = absolutePathFromEnvironment("XDG_RUNTIME_DIR");

    struct stat status {};

    const bool isOwnFolder = !path.empty() && ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
                             status.st_uid == geteuid();
    return isOwnFolder ? path : std::string{};
}

std::string XdgDirectories::autostart() {
    const std::string home = configHome();
    return home.empty() ? home : home + autostartFolder;
}

std::vector<std::string> XdgDirectories::systemAutostart() {
    const char* value = std::getenv("XDG_CONFIG_DIRS");
    std::istringstream choices(value != nullptr && *value != '\0' ? value : "/etc/xdg");
    std::vector<std::string> folders;
    for (std::string choice; std::getline(choices, choice, ':');) {
        if (choice.starts_with('/')) {
            folders.push_back(choice + autostartFolder);
        }
    }
    return folders;
}

std::string logFilePath() {
    const std::string stateHome = XdgDirectories::stateHome();
    return stateHome.empty() ? stateHome : stateHome + "/Tarvex/Logs/Tarvex.log";
}

} // namespace tarvex
