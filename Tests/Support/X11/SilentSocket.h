#pragma once

#include "Tests/Support/X11/FileDescriptor.h"
#include "Tests/Support/X11/ScratchDirectory.h"

#include <cstring>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <vector>

namespace tarvex::test {

/// A socket of a server that hangs: connections to it come about, and nobody ever answers. Throws
/// std::runtime_error when it cannot be made.
class SilentSocket {
public:
    /// @param name of its file, in a folder of its own
    explicit SilentSocket(const std::string& name = "silent")
        : path_{(scratch_.path() / name).string()}, listening_{makeSocket()} {
        const sockaddr_un address = socketAddress();
        if (path_.size() >= sizeof address.sun_path ||
            ::bind(listening_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
            ::listen(listening_.get(), waitingConnections) != 0) {
            throw std::runtime_error("cannot listen at " + path_);
        }
    }

    [[nodiscard]] const std::string& path() const { return path_; }

    /// As the address of a message bus; the path needs no escapes.
    [[nodiscard]] std::string busAddress() const { return "unix:path=" + path_; }

    /// Lets so many stand in line that the next one has to wait.
    void fillTheLine() {
        const sockaddr_un address = socketAddress();
        do {
            line_.push_back(makeSocket());
        } while (::connect(line_.back().get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) ==
                 0);
    }

private:
    static constexpr int waitingConnections = 30;

    static FileDescriptor makeSocket() {
        return FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    }

    [[nodiscard]] sockaddr_un socketAddress() const {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path_.c_str(), sizeof address.sun_path - 1);
        return address;
    }

    ScratchDirectory scratch_;
    std::string path_;
    FileDescriptor listening_;
    std::vector<FileDescriptor> line_;
};

} // namespace tarvex::test
