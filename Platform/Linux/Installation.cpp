#include "Platform/Linux/Installation.h"

#include <array>
#include <climits>
#include <string_view>
#include <unistd.h>

namespace tarvex {

std::string Installation::executablePath() {
    std::array<char, PATH_MAX> buffer{};
    const ssize_t length = ::readlink("/proc/self/exe", buffer.data(), buffer.size());
    std::string path(buffer.data(), length > 0 ? static_cast<std::size_t>(length) : 0);
    // So the system marks a file that was replaced while it runs; its successor has the plain name.
    constexpr std::string_view replaced = " (deleted)";
    if (path.ends_with(replaced)) {
        path.resize(path.size() - replaced.size());
    }
    return path;
}

std::optional<std::string> Installation::prefixOf(const std::string& executable, const FileManager& files) {
    constexpr std::string_view place = "/bin/tarvex";
    if (!executable.ends_with(place)) {
        return std::nullopt;
    }
    std::string prefix = executable.substr(0, executable.size() - place.size());
    return files.fileExists(prefix + "/share/applications/tarvex.desktop") ? std::optional(std::move(prefix))
                                                                           : std::nullopt;
}

} // namespace tarvex
