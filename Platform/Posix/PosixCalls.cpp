#include "Platform/Posix/PosixCalls.h"

#include "Core/Files/FileManager.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <random>
#include <system_error>

namespace tarvex {

void failFile(const char* what, std::string path, const std::string& reason) {
    // A path may hold line breaks; a log line may not.
    const auto isControl = [](char character) { return static_cast<unsigned char>(character) < 0x20; };
    std::replace_if(path.begin(), path.end(), isControl, '?');
    throw FileError(std::string(what) + " \"" + path + "\": " + reason);
}

void failFile(const char* what, const std::string& path, int error) {
    failFile(what, path, std::generic_category().message(error));
}

FileDescriptor openFile(const std::string& path, int flags, mode_t mode) {
    return FileDescriptor(retryingInterrupted([&] { return ::open(path.c_str(), flags | O_CLOEXEC, mode); }));
}

bool isRenamed(const std::string& path, const std::string& target) {
    return retryingInterrupted([&] { return ::rename(path.c_str(), target.c_str()); }) == 0;
}

std::string randomFileName() {
    std::random_device device;
    std::array<char, 16> digits{};
    const std::uint64_t number = (std::uint64_t{device()} << 32) | device();
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number, 16).ptr;
    return ".tarvex-" + std::string(digits.data(), end);
}

} // namespace tarvex
