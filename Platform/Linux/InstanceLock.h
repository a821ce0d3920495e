#pragma once

#include "Platform/Posix/FileDescriptor.h"

#include <cstdint>
#include <string>

namespace tarvex {

/// The lock that one instance of the program holds where no session bus tells instances apart. The system
/// takes it back when the process ends, however it ends; the file stays.
class InstanceLock {
public:
    enum class Result : std::uint8_t {
        /// Nobody else holds it.
        taken,
        /// Another process holds it.
        held,
        /// It can be neither taken nor looked at.
        failed
    };

    /// A folder for the lock: one that exists, or one to make for the user alone.
    struct Folder {
        std::string path;
        bool isToBeMade = false;
        /// Names the session, so that another one of the same user has a lock of its own; may be empty.
        std::string session = {};
    };

    /// The user's runtime folder, or where there is none one of our own below the temporary folder.
    [[nodiscard]] static Folder standardFolder();

    /// Takes the lock unless another has it. In a folder that others may write to, or a file that is no
    /// regular one of this user's, the lock cannot be taken.
    [[nodiscard]] Result take(const Folder& folder);

    /// The lock's path, for messages.
    [[nodiscard]] static std::string pathIn(const Folder& folder);

private:
    FileDescriptor file_;
};

} // namespace tarvex
