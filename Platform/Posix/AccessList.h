#pragma once

#include "Platform/Posix/FileDescriptor.h"

#include <string>

namespace tarvex {

/// The access list of a file beyond the permission bits (POSIX ACL). Without such lists in the system, or on
/// the file, it is empty and every operation does nothing. A failure is passed over: the permission bits hold
/// then.
class AccessList {
public:
    /// That of the file at the path, links followed.
    explicit AccessList(const std::string& path);

    /// True when the list grants more than the permission bits tell.
    [[nodiscard]] bool isExtended() const { return !entries_.empty(); }

    /// Gives the file this list, and with it the permission bits of its owner and of others.
    void applyTo(const FileDescriptor& file) const;

    /// Leaves the file with the permission bits alone.
    static void clear(const FileDescriptor& file);

private:
    // As the system has it.
    std::string entries_;
};

} // namespace tarvex
