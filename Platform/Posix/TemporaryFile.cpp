#include "Platform/Posix/TemporaryFile.h"

#include "Platform/Posix/PosixCalls.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace tarvex {

namespace {

constexpr mode_t permissionBits = 07777;

} // namespace

TemporaryFile::TemporaryFile(const std::string& folder, mode_t mode) {
    do {
        path_ = folder + "/" + randomFileName();
        file_ = openFile(path_, O_WRONLY | O_CREAT | O_EXCL, mode);
    } while (!file_.isOpen() && errno == EEXIST);
    if (!file_.isOpen()) {
        failFile("Cannot create", path_, errno);
    }
}

TemporaryFile::~TemporaryFile() {
    if (!isMoved_) {
        ::unlink(path_.c_str());
    }
}

void TemporaryFile::write(std::string_view content) {
    while (!content.empty()) {
        const ssize_t count =
            retryingInterrupted([&] { return ::write(file_.get(), content.data(), content.size()); });
        if (count < 0) {
            failFile("Cannot write", path_, errno);
        }
        content.remove_prefix(static_cast<std::size_t>(count));
    }
}

void TemporaryFile::resemble(const struct stat& old, const AccessList& oldAccess) {
    if (::fchown(file_.get(), old.st_uid, old.st_gid) != 0) {
        // Only the group may be within the user's reach; a file of the user's own group is good enough.
        static_cast<void>(::fchown(file_.get(), static_cast<uid_t>(-1), old.st_gid) == 0);
    }

    struct stat own = {};
    if (::fstat(file_.get(), &own) != 0) {
        failFile("Cannot set the permissions of", path_, errno);
    }
    const bool hasSameGroup = own.st_gid == old.st_gid;
    mode_t mode = old.st_mode & permissionBits;
    if (own.st_uid != old.st_uid) {
        mode = static_cast<mode_t>(mode & ~mode_t{S_ISUID});
    }
    // What the old group might do, another one must not. In a file with an access list, these bits limit
    // the whole list, and say nothing of the group.
    if (!hasSameGroup || oldAccess.isExtended()) {
        mode = static_cast<mode_t>(mode & ~mode_t{S_IRWXG | S_ISGID});
    }
    // The folder may have given the file a list of its own.
    AccessList::clear(file_);
    if (::fchmod(file_.get(), mode) != 0) {
        failFile("Cannot set the permissions of", path_, errno);
    }
    if (hasSameGroup) {
        oldAccess.applyTo(file_);
    }
    keepReadable();
}

// What the user could not read, and has now written, must be his to read: else the next writing would
// take it for a broken file.
void TemporaryFile::keepReadable() {
    struct stat own = {};
    if (::fstat(file_.get(), &own) == 0 && (own.st_mode & S_IRUSR) == 0) {
        static_cast<void>(::fchmod(file_.get(), (own.st_mode & permissionBits) | S_IRUSR) == 0);
    }
}

void TemporaryFile::finish() {
    if (retryingInterrupted([&] { return ::fsync(file_.get()); }) != 0 || !file_.close()) {
        failFile("Cannot write", path_, errno);
    }
}

void TemporaryFile::moveTo(const std::string& target) {
    if (!isRenamed(path_, target)) {
        failFile("Cannot replace", target, errno);
    }
    isMoved_ = true;
}

} // namespace tarvex
