#include "Platform/Posix/PosixFileManager.h"

#include "Platform/Posix/AccessList.h"
#include "Platform/Posix/FileDescriptor.h"
#include "Platform/Posix/PosixCalls.h"
#include "Platform/Posix/TemporaryFile.h"

#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace tarvex {

namespace {

constexpr mode_t privateFolder = 0700;
constexpr mode_t privateFile = 0600;
// Less the umask, which the kernel takes off: asking for it would mean changing it for every thread.
constexpr mode_t newFile = 0666;
// As many as Linux follows within one path.
constexpr int maxLinks = 40;

// Links followed; none when nothing can be found there.
std::optional<struct stat> statusOf(const std::string& path) {
    struct stat status = {};
    const int result = retryingInterrupted([&] { return ::stat(path.c_str(), &status); });
    return result == 0 ? std::optional(status) : std::nullopt;
}

bool isFolder(const std::string& path) {
    const std::optional<struct stat> status = statusOf(path);
    return status && S_ISDIR(status->st_mode);
}

std::string folderOf(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    if (slash == std::string::npos) {
        return ".";
    }
    return slash == 0 ? "/" : path.substr(0, slash);
}

void requireRegular(const char* what, const std::string& path, const struct stat& status) {
    if (S_ISDIR(status.st_mode)) {
        failFile(what, path, EISDIR);
    }
    if (!S_ISREG(status.st_mode)) {
        failFile(what, path, "Not a regular file");
    }
}

// What the symbolic link names; none when no link stands there.
std::optional<std::string> readLink(const std::string& path) {
    std::string target(256, '\0');
    for (;;) {
        const ssize_t length =
            retryingInterrupted([&] { return ::readlink(path.c_str(), target.data(), target.size()); });
        if (length < 0) {
            if (errno == EINVAL || errno == ENOENT) {
                return std::nullopt;
            }
            failFile("Cannot follow", path, errno);
        }
        if (static_cast<std::size_t>(length) < target.size()) {
            target.resize(static_cast<std::size_t>(length));
            return target;
        }
        target.resize(target.size() * 2);
    }
}

// The path at the end of a chain of links, whether or not a file stands there.
std::string resolveLinks(const std::string& path) {
    std::string resolved = path;
    for (int links = 0; links <= maxLinks; ++links) {
        const std::optional<std::string> target = readLink(resolved);
        if (!target) {
            return resolved;
        }
        resolved = target->starts_with('/') ? *target : folderOf(resolved) + "/" + *target;
    }
    failFile("Cannot follow", path, ELOOP);
}

// Makes a rename last through a loss of power. A failure is passed over: the new content stands already, and
// an error would tell the caller that it does not.
void syncFolder(const std::string& folder) {
    const FileDescriptor descriptor = openFile(folder, O_RDONLY | O_DIRECTORY);
    if (descriptor.isOpen()) {
        retryingInterrupted([&] { return ::fsync(descriptor.get()); });
    }
}

std::string readToEnd(const FileDescriptor& file, std::size_t expectedSize, const std::string& path) {
    // One byte more than expected, so that the end shows in the same call as the last of the content.
    std::string content(expectedSize + 1, '\0');
    std::size_t length = 0;
    for (;;) {
        const ssize_t count = retryingInterrupted(
            [&] { return ::read(file.get(), content.data() + length, content.size() - length); });
        if (count < 0) {
            failFile("Cannot read", path, errno);
        }
        length += static_cast<std::size_t>(count);
        // It may have grown since its size was asked.
        if (length > PosixFileManager::maxReadBytes) {
            failFile("Cannot read", path, EFBIG);
        }
        // A whole file of the size that was announced needs no second look for its end.
        if (count == 0 || length == expectedSize) {
            content.resize(length);
            return content;
        }
        if (length == content.size()) {
            content.resize(content.size() * 2);
        }
    }
}

} // namespace

PosixFileManager::PosixFileManager(std::string applicationSupportDirectory)
    : applicationSupportDirectory_(std::move(applicationSupportDirectory)) {}

std::string PosixFileManager::applicationSupportDirectory() const {
    if (applicationSupportDirectory_.empty()) {
        throw FileError("The system names no folder for application data");
    }
    return applicationSupportDirectory_;
}

void PosixFileManager::createDirectory(const std::string& path) {
    // The folder stands nearly always, and this runs on every event of a drag.
    if (isFolder(path)) {
        return;
    }
    const auto make = [&] { return ::mkdir(path.c_str(), privateFolder); };
    int result = retryingInterrupted(make);
    const std::string parent = folderOf(path);
    if (result != 0 && errno == ENOENT && parent.size() < path.size()) {
        createDirectory(parent);
        result = retryingInterrupted(make);
    }
    const int error = errno;
    // Another process may have made it in between.
    const bool doesStand = result == 0 || (error == EEXIST && isFolder(path));
    if (!doesStand) {
        failFile("Cannot create the folder", path, error);
    }
}

bool PosixFileManager::fileExists(const std::string& path) const {
    return statusOf(path).has_value();
}

std::string PosixFileManager::readFile(const std::string& path) const {
    // Without blocking, a pipe that nobody writes to opens at once, to be turned away by its kind.
    const FileDescriptor file = openFile(path, O_RDONLY | O_NONBLOCK | O_NOCTTY);

    struct stat status = {};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0) {
        failFile("Cannot read", path, errno);
    }
    requireRegular("Cannot read", path, status);
    if (std::cmp_greater(status.st_size, maxReadBytes)) {
        failFile("Cannot read", path, EFBIG);
    }
    return readToEnd(file, static_cast<std::size_t>(status.st_size), path);
}

void PosixFileManager::writeFileAtomically(const std::string& path, std::string_view content) {
    const std::string target = resolveLinks(path);
    const std::string folder = folderOf(target);
    const std::optional<struct stat> old = statusOf(target);
    if (old) {
        requireRegular("Cannot write", target, *old);
    }
    TemporaryFile temporary(folder, old ? privateFile : newFile);
    temporary.write(content);
    if (old) {
        temporary.resemble(*old, AccessList(target));
    }
    temporary.finish();
    temporary.moveTo(target);
    syncFolder(folder);
}

void PosixFileManager::keepCopy(const std::string& path, const std::string& copyPath) {
    const std::string original = resolveLinks(path);
    const std::string target = resolveLinks(copyPath);
    const std::string temporary = folderOf(target) + "/" + randomFileName();
    struct stat status = {};
    if (::lstat(original.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
        failFile("Cannot keep", original, EINVAL);
    }
    if (::link(original.c_str(), temporary.c_str()) != 0) {
        copyOrMove(original, target);
        return;
    }
    const bool isMoved = isRenamed(temporary, target);
    const int error = errno;
    // Two names of one file are left as they are by a renaming.
    ::unlink(temporary.c_str());
    if (!isMoved) {
        failFile("Cannot replace", target, error);
    }
    syncFolder(folderOf(target));
}

void PosixFileManager::copyOrMove(const std::string& original, const std::string& target) {
    try {
        writeFileAtomically(target, readFile(original));
    } catch (const FileError&) {
        if (!isRenamed(original, target)) {
            throw;
        }
        syncFolder(folderOf(target));
    }
}

} // namespace tarvex
