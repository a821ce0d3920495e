#pragma once

#include <unistd.h>
#include <utility>

namespace tarvex {

/// Owns an open file descriptor and closes it. A negative descriptor is none.
class FileDescriptor {
public:
    FileDescriptor() = default;

    explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}

    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    FileDescriptor(FileDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}

    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        if (this != &other) {
            close();
            descriptor_ = std::exchange(other.descriptor_, -1);
        }
        return *this;
    }

    ~FileDescriptor() { close(); }

    [[nodiscard]] int get() const { return descriptor_; }

    [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }

    /// Closes now; closing again does nothing. False, with errno set, when the system reports a failure; the
    /// descriptor is given up all the same, since a second close could hit a file opened by another thread.
    bool close() { return !isOpen() || ::close(std::exchange(descriptor_, -1)) == 0; }

private:
    int descriptor_ = -1;
};

} // namespace tarvex
