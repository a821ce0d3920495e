#include "Platform/Linux/InstanceLock.h"

#include "Platform/Linux/XdgDirectories.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace tarvex {

namespace {

constexpr const char* fileName = "tarvex.lock";

// The folder itself, no link to one; a folder that another user may write to could hold a lock of theirs.
FileDescriptor openFolder(const InstanceLock::Folder& folder) {
    if (folder.isToBeMade && ::mkdir(folder.path.c_str(), S_IRWXU) != 0 && errno != EEXIST) {
        return {};
    }
    const int noLink = folder.isToBeMade ? O_NOFOLLOW : 0;
    FileDescriptor opened(::open(folder.path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC | noLink));

    struct stat status {};

    const bool isSafe = opened.isOpen() && ::fstat(opened.get(), &status) == 0 &&
                        status.st_uid == ::geteuid() && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
    return isSafe ? std::move(opened) : FileDescriptor{};
}

FileDescriptor openFile(const FileDescriptor& folder) {
    // Without O_NONBLOCK a pipe that stands there would be waited for.
    FileDescriptor opened(::openat(
        folder.get(), fileName, O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, S_IRUSR | S_IWUSR));

    struct stat status {};

    const bool isSafe = opened.isOpen() && ::fstat(opened.get(), &status) == 0 && S_ISREG(status.st_mode) &&
                        status.st_uid == ::geteuid();
    return isSafe ? std::move(opened) : FileDescriptor{};
}

} // namespace

InstanceLock::Folder InstanceLock::standardFolder() {
    const std::string runtime = XdgDirectories::runtimeDirectory();
    return runtime.empty() ? Folder{"/tmp/tarvex-" + std::to_string(::geteuid()), true}
                           : Folder{runtime, false};
}

std::string InstanceLock::pathIn(const Folder& folder) {
    return folder.path + "/" + fileName;
}

InstanceLock::Result InstanceLock::take(const Folder& folder) {
    const FileDescriptor directory = openFolder(folder);
    if (!directory.isOpen()) {
        return Result::failed;
    }
    FileDescriptor file = openFile(directory);
    if (!file.isOpen()) {
        return Result::failed;
    }
    if (::flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
        return errno == EWOULDBLOCK ? Result::held : Result::failed;
    }
    file_ = std::move(file);
    return Result::taken;
}

} // namespace tarvex
