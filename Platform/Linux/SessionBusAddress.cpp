#include "Platform/Linux/SessionBusAddress.h"

#include "Platform/Linux/XdgDirectories.h"

#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

namespace tarvex {

namespace {

constexpr const char* variable = "DBUS_SESSION_BUS_ADDRESS";
constexpr const char* noBus = "disabled:";

bool isOwnSocket(const std::string& path) {
    struct stat status {};

    return ::stat(path.c_str(), &status) == 0 && S_ISSOCK(status.st_mode) && status.st_uid == ::geteuid();
}

// D-Bus Specification, "Server Addresses": these characters stand for themselves in a value, all others are
// escaped.
std::string escaped(const std::string& value) {
    constexpr const char* plain = "-_/.\\*0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    constexpr const char* hexDigits = "0123456789abcdef";
    std::string result;
    for (const char character : value) {
        if (std::string(plain).find(character) != std::string::npos) {
            result += character;
        } else {
            const auto byte = static_cast<unsigned char>(character);
            result += {'%', hexDigits[byte >> 4U], hexDigits[byte & 0xFU]};
        }
    }
    return result;
}

} // namespace

std::string SessionBusAddress::find() {
    const char* named = std::getenv(variable);
    if (named != nullptr && *named != '\0') {
        const std::string address = named;
        const bool isNone = address.starts_with(noBus) || address.find("autolaunch:") != std::string::npos;
        return isNone ? std::string{} : address;
    }
    const std::string runtime = XdgDirectories::runtimeDirectory();
    const std::string socket = runtime + "/bus";
    return !runtime.empty() && isOwnSocket(socket) ? "unix:path=" + escaped(socket) : std::string{};
}

void SessionBusAddress::pin() {
    const std::string address = find();
    ::setenv(variable, address.empty() ? noBus : address.c_str(), 1);
}

} // namespace tarvex
