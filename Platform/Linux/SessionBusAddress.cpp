#include "Platform/Linux/SessionBusAddress.h"

#include "Platform/Linux/XdgDirectories.h"
#include "Platform/Posix/FileDescriptor.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
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

std::string unescaped(std::string_view value) {
    std::string result;
    while (!value.empty()) {
        unsigned byte = 0;
        const std::string_view digits = value.substr(1, 2);
        const bool isEscape = value.front() == '%' && digits.size() == 2 &&
                              std::from_chars(digits.begin(), digits.end(), byte, 16).ptr == digits.end();
        result += isEscape ? static_cast<char>(static_cast<unsigned char>(byte)) : value.front();
        value.remove_prefix(isEscape ? 3 : 1);
    }
    return result;
}

struct SocketAddress {
    sockaddr_un address{};
    socklen_t length = 0;
};

// None for an address that is not of a socket of this system, or of one that has to be looked for.
std::optional<SocketAddress> socketAddress(std::string_view address) {
    constexpr std::string_view path = "unix:path=";
    constexpr std::string_view abstract = "unix:abstract=";
    const bool isAbstract = address.starts_with(abstract);
    if (!isAbstract && !address.starts_with(path)) {
        return std::nullopt;
    }
    const std::string_view rest = address.substr(isAbstract ? abstract.size() : path.size());
    // An abstract name begins with a zero byte and ends where the address does (unix(7)).
    const std::string name = (isAbstract ? std::string(1, '\0') : "") +
                             unescaped(rest.substr(0, rest.find(','))) +
                             (isAbstract ? "" : std::string(1, '\0'));
    SocketAddress result;
    if (name.size() > sizeof result.address.sun_path) {
        return std::nullopt;
    }
    result.address.sun_family = AF_UNIX;
    std::copy(name.begin(), name.end(), result.address.sun_path);
    result.length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size());
    return result;
}

/// Zero, or why not.
int tryToConnect(const SocketAddress& socketAddress) {
    const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    const bool isConnected =
        socket.isOpen() && ::connect(socket.get(), reinterpret_cast<const sockaddr*>(&socketAddress.address),
                                     socketAddress.length) == 0;
    return isConnected ? 0 : errno;
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

void SessionBusAddress::pin(const std::string& address) {
    const char* const named = std::getenv(variable);
    const std::string wanted = address.empty() ? noBus : address;
    if (named == nullptr || named != wanted) {
        ::setenv(variable, wanted.c_str(), 1);
    }
}

bool SessionBusAddress::takesConnections(const std::string& address) {
    // One after the other until one can be had, as libdbus tries them.
    std::string_view rest = address;
    while (!rest.empty()) {
        const std::string_view one = rest.substr(0, rest.find(';'));
        rest.remove_prefix(std::min(one.size() + 1, rest.size()));
        const std::optional<SocketAddress> socket = socketAddress(one);
        const int error = socket ? tryToConnect(*socket) : 0;
        if (error == 0 || error == EAGAIN) {
            return error == 0;
        }
    }
    return false;
}

} // namespace tarvex
