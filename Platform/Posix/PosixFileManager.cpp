#include "Platform/Posix/PosixFileManager.h"

#include "Platform/Posix/AccessList.h"
#include "Platform/Posix/FileDescriptor.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <fcntl.h>
#include <optional>
#include <random>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace tarvex {

namespace {

constexpr mode_t privateFolder = 0700;
constexpr mode_t privateFile = 0600;
// Less the umask, which the kernel takes off: asking for it would mean changing it for every thread.
constexpr mode_t newFile = 0666;
constexpr mode_t permissionBits = 07777;
// As many as Linux follows within one path.
constexpr int maxLinks = 40;

[[noreturn]] void fail(const char* what, std::string path, const std::string& reason) {
    // A path may hold line breaks; a log line may not.
    const auto isControl = [](char character) { return static_cast<unsigned char>(character) < 0x20; };
    std::replace_if(path.begin(), path.end(), isControl, '?');
    throw FileError(std::string(what) + " \"" + path + "\": " + reason);
}

[[noreturn]] void fail(const char* what, const std::string& path, int error) {
    fail(what, path, std::generic_category().message(error));
}

template <typename Call>
auto retryingInterrupted(Call call) {
    auto result = call();
    while (result == -1 && errno == EINTR) {
        result = call();
    }
    return result;
}

FileDescriptor openFile(const std::string& path, int flags, mode_t mode = 0) {
    return FileDescriptor(retryingInterrupted([&] { return ::open(path.c_str(), flags | O_CLOEXEC, mode); }));
}

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
        fail(what, path, EISDIR);
    }
    if (!S_ISREG(status.st_mode)) {
        fail(what, path, "Not a regular file");
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
            fail("Cannot follow", path, errno);
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
    fail("Cannot follow", path, ELOOP);
}

std::string randomName() {
    std::random_device device;
    std::array<char, 16> digits{};
    const std::uint64_t number = (std::uint64_t{device()} << 32) | device();
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number, 16).ptr;
    return ".tarvex-" + std::string(digits.data(), end);
}

// A new file that is removed again unless it has taken the place of another.
class TemporaryFile {
public:
    TemporaryFile(const std::string& folder, mode_t mode) {
        do {
            path_ = folder + "/" + randomName();
            file_ = openFile(path_, O_WRONLY | O_CREAT | O_EXCL, mode);
        } while (!file_.isOpen() && errno == EEXIST);
        if (!file_.isOpen()) {
            fail("Cannot create", path_, errno);
        }
    }

    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    TemporaryFile(TemporaryFile&&) = delete;
    TemporaryFile& operator=(TemporaryFile&&) = delete;

    ~TemporaryFile() {
        if (!isMoved_) {
            ::unlink(path_.c_str());
        }
    }

    void write(std::string_view content) {
        while (!content.empty()) {
            const ssize_t count =
                retryingInterrupted([&] { return ::write(file_.get(), content.data(), content.size()); });
            if (count < 0) {
                fail("Cannot write", path_, errno);
            }
            content.remove_prefix(static_cast<std::size_t>(count));
        }
    }

    // After writing and with the owner first, as both clear some of the permission bits.
    void resemble(const struct stat& old, const AccessList& oldAccess) {
        if (::fchown(file_.get(), old.st_uid, old.st_gid) != 0) {
            // Only the group may be within the user's reach; a file of the user's own group is good enough.
            static_cast<void>(::fchown(file_.get(), static_cast<uid_t>(-1), old.st_gid) == 0);
        }

        struct stat own = {};
        if (::fstat(file_.get(), &own) != 0) {
            fail("Cannot set the permissions of", path_, errno);
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
            fail("Cannot set the permissions of", path_, errno);
        }
        if (hasSameGroup) {
            oldAccess.applyTo(file_);
        }
        keepReadable();
    }

    // What the user could not read, and has now written, must be his to read: else the next writing would
    // take it for a broken file.
    void keepReadable() {
        struct stat own = {};
        if (::fstat(file_.get(), &own) == 0 && (own.st_mode & S_IRUSR) == 0) {
            static_cast<void>(::fchmod(file_.get(), (own.st_mode & permissionBits) | S_IRUSR) == 0);
        }
    }

    // Ends with the content on the disk and the file closed.
    void finish() {
        if (retryingInterrupted([&] { return ::fsync(file_.get()); }) != 0 || !file_.close()) {
            fail("Cannot write", path_, errno);
        }
    }

    void moveTo(const std::string& target) {
        if (retryingInterrupted([&] { return ::rename(path_.c_str(), target.c_str()); }) != 0) {
            fail("Cannot replace", target, errno);
        }
        isMoved_ = true;
    }

private:
    std::string path_;
    FileDescriptor file_;
    bool isMoved_ = false;
};

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
            fail("Cannot read", path, errno);
        }
        length += static_cast<std::size_t>(count);
        // It may have grown since its size was asked.
        if (length > PosixFileManager::maxReadBytes) {
            fail("Cannot read", path, EFBIG);
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
        fail("Cannot create the folder", path, error);
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
        fail("Cannot read", path, errno);
    }
    requireRegular("Cannot read", path, status);
    if (std::cmp_greater(status.st_size, maxReadBytes)) {
        fail("Cannot read", path, EFBIG);
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
    const std::string temporary = folderOf(target) + "/" + randomName();
    struct stat status = {};
    if (::lstat(original.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
        fail("Cannot keep", original, EINVAL);
    }
    if (::link(original.c_str(), temporary.c_str()) != 0) {
        writeFileAtomically(copyPath, readFile(path));
        return;
    }
    const bool isMoved =
        retryingInterrupted([&] { return ::rename(temporary.c_str(), target.c_str()); }) == 0;
    const int error = errno;
    // Two names of one file are left as they are by a renaming.
    ::unlink(temporary.c_str());
    if (!isMoved) {
        fail("Cannot replace", target, error);
    }
    syncFolder(folderOf(target));
}

} // namespace tarvex
