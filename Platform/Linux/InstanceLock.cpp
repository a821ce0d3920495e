#include "Platform/Linux/InstanceLock.h"

#include "Platform/Linux/XdgDirectories.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace tarvex {

namespace {

std::string fileNameIn(const InstanceLock::Folder& folder) {
    return "tarvex" + folder.session + ".lock";
}

// The X display without the number of its screen, such as ":0".
std::string sessionOfEnvironment() {
    const char* const display = std::getenv("DISPLAY");
    std::string session = display == nullptr ? "" : display;
    const std::size_t colon = session.rfind(':');
    if (colon != std::string::npos) {
        session.resize(std::min(session.find('.', colon), session.size()));
    }
    std::replace(session.begin(), session.end(), '/', '_');
    return session;
}

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

FileDescriptor openFile(const FileDescriptor& folder, const std::string& fileName) {
    // Without O_NONBLOCK a pipe that stands there would be waited for.
    FileDescriptor opened(::openat(folder.get(), fileName.c_str(),
                                   O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK,
                                   S_IRUSR | S_IWUSR));

    struct stat status {};

    const bool isSafe = opened.isOpen() && ::fstat(opened.get(), &status) == 0 && S_ISREG(status.st_mode) &&
                        status.st_uid == ::geteuid();
    return isSafe ? std::move(opened) : FileDescriptor{};
}

} // namespace

InstanceLock::Folder InstanceLock::standardFolder() {
    const std::string runtime = XdgDirectories::runtimeDirectory();
    return runtime.empty()
               ? Folder{"/tmp/tarvex-" + std::to_string(::geteuid()), true, sessionOfEnvironment()}
               : Folder{runtime, false, sessionOfEnvironment()};
}

std::string InstanceLock::pathIn(const Folder& folder) {
    return folder.path + "/" + fileNameIn(folder);
}

InstanceLock::Result InstanceLock::take(const Folder& folder) {
    const FileDescriptor directory = openFolder(folder);
    if (!directory.isOpen()) {
        return Result::failed;
    }
    FileDescriptor file = openFile(directory, fileNameIn(folder));
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
