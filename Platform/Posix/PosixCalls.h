#pragma once

#include "Platform/Posix/FileDescriptor.h"

#include <cerrno>
#include <string>
#include <sys/types.h>

namespace tarvex {

/// Throws a FileError that says what was not possible, with which file, and why.
[[noreturn]] void failFile(const char* what, std::string path, const std::string& reason);

/// The same with an error number as the reason.
[[noreturn]] void failFile(const char* what, const std::string& path, int error);

/// Makes a call that gives -1 and sets errno on failure, again and again while a signal interrupts it.
template <typename Call>
auto retryingInterrupted(Call call) {
    auto result = call();
    while (result == -1 && errno == EINTR) {
        result = call();
    }
    return result;
}

/// The file, not inherited by other programs; not open and with errno set on failure.
[[nodiscard]] FileDescriptor openFile(const std::string& path, int flags, mode_t mode = 0);

/// Whether the file now stands at the target, in place of what stood there; else errno is set.
[[nodiscard]] bool isRenamed(const std::string& path, const std::string& target);

/// A name for a file in passing that no other is likely to have.
[[nodiscard]] std::string randomFileName();

} // namespace tarvex
