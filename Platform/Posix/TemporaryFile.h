#pragma once

#include "Platform/Posix/AccessList.h"
#include "Platform/Posix/FileDescriptor.h"

#include <string>
#include <string_view>
#include <sys/stat.h>

namespace tarvex {

/// A new file that is removed again unless it has taken the place of another. Every failure throws a
/// FileError.
class TemporaryFile {
public:
    /// @param mode less the umask
    TemporaryFile(const std::string& folder, mode_t mode);

    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    TemporaryFile(TemporaryFile&&) = delete;
    TemporaryFile& operator=(TemporaryFile&&) = delete;
    ~TemporaryFile();

    void write(std::string_view content);

    /// Takes over owner, group, permissions and access list as far as the user may give files away; a group
    /// that cannot be kept leaves the new one without access. Comes after the writing, which clears some of
    /// the permission bits.
    void resemble(const struct stat& old, const AccessList& oldAccess);

    /// Ends with the content on the disk and the file closed.
    void finish();

    void moveTo(const std::string& target);

private:
    void keepReadable();

    std::string path_;
    FileDescriptor file_;
    bool isMoved_ = false;
};

} // namespace tarvex
