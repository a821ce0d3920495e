#include "Tests/Support/X11/RequestGate.h"

#include <array>
#include <cstddef>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

namespace tarvex::test {
namespace {

constexpr std::size_t setupHeader = 12;
constexpr std::size_t requestHeader = 4;
constexpr std::size_t longRequestHeader = 8;

// Far beyond those that servers choose for themselves.
constexpr int firstNumber = 1000;
constexpr int numbers = 1000;

std::string socketOf(const std::string& displayName) {
    return "/tmp/.X11-unix/X" + displayName.substr(1);
}

sockaddr_un addressOf(const std::string& path, std::size_t offset = 0) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (offset + path.size() >= sizeof(address.sun_path)) {
        throw std::runtime_error("the path is too long for a socket: " + path);
    }
    path.copy(address.sun_path + offset, path.size());
    return address;
}

FileDescriptor makeSocket() {
    FileDescriptor result(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (!result.isOpen()) {
        throw std::runtime_error("socket failed");
    }
    return result;
}

bool sendAll(int descriptor, const std::uint8_t* data, std::size_t size) {
    while (size > 0) {
        const ssize_t count = ::send(descriptor, data, size, MSG_NOSIGNAL);
        if (count <= 0) {
            return false;
        }
        data += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

template <typename Number>
std::size_t numberAt(const std::vector<std::uint8_t>& bytes, std::size_t offset) {
    Number number = 0;
    std::memcpy(&number, bytes.data() + offset, sizeof(number));
    return number;
}

std::size_t padded(std::size_t size) {
    return (size + 3) / 4 * 4;
}

} // namespace

RequestGate::RequestGate(const XServer& server)
    : serverSocket_{socketOf(server.displayName())}, listener_{makeSocket()} {
    listen();
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("pipe2 failed");
    }
    stopSource_ = FileDescriptor(ends[0]);
    stopSink_ = FileDescriptor(ends[1]);
    thread_ = std::thread([this] { run(); });
}

RequestGate::~RequestGate() {
    stopSink_.reset();
    thread_.join();
}

void RequestGate::listen() {
    for (int number = firstNumber; number < firstNumber + numbers; ++number) {
        const std::string name = ":" + std::to_string(number);
        // A socket without a file: clients try it first, and it leaves nothing behind.
        const std::string path = socketOf(name);
        sockaddr_un address = addressOf(path, 1);
        const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + path.size());
        if (::bind(listener_.get(), reinterpret_cast<const sockaddr*>(&address), size) == 0 &&
            ::listen(listener_.get(), 1) == 0) {
            displayName_ = name;
            return;
        }
    }
    throw std::runtime_error("no display number is free for the gate");
}

void RequestGate::onRequest(std::uint8_t opcode, std::function<void()> action) {
    const std::lock_guard lock(mutex_);
    opcode_ = opcode;
    action_ = std::move(action);
}

void RequestGate::run() {
    std::array<pollfd, 2> waited{pollfd{listener_.get(), POLLIN, 0}, pollfd{stopSource_.get(), POLLIN, 0}};
    ::poll(waited.data(), waited.size(), -1);
    if (waited[1].revents != 0) {
        return;
    }
    const FileDescriptor client(::accept4(listener_.get(), nullptr, nullptr, SOCK_CLOEXEC));
    try {
        const FileDescriptor server = makeSocket();
        const sockaddr_un address = addressOf(serverSocket_);
        if (::connect(server.get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0) {
            relay(client.get(), server.get());
        }
    } catch (const std::exception&) {
        // The client notices that its connection is gone.
        incoming_.clear();
    }
}

void RequestGate::relay(int client, int server) {
    for (;;) {
        std::array<pollfd, 3> waited{pollfd{client, POLLIN, 0}, pollfd{server, POLLIN, 0},
                                     pollfd{stopSource_.get(), POLLIN, 0}};
        ::poll(waited.data(), waited.size(), -1);
        if (waited[2].revents != 0) {
            return;
        }
        if (waited[1].revents != 0) {
            std::array<std::uint8_t, 65536> buffer{};
            const ssize_t count = ::recv(server, buffer.data(), buffer.size(), 0);
            if (count <= 0 || !sendAll(client, buffer.data(), static_cast<std::size_t>(count))) {
                return;
            }
        }
        if (waited[0].revents != 0 && !passOn(client, server)) {
            return;
        }
    }
}

bool RequestGate::passOn(int client, int server) {
    std::array<std::uint8_t, 65536> buffer{};
    const ssize_t count = ::recv(client, buffer.data(), buffer.size(), 0);
    if (count <= 0) {
        return false;
    }
    incoming_.insert(incoming_.end(), buffer.begin(), buffer.begin() + count);
    for (std::size_t size = firstRequestSize(); size > 0; size = firstRequestSize()) {
        if (std::exchange(isSetUp_, true)) {
            announce(incoming_.front());
        }
        if (!sendAll(server, incoming_.data(), size)) {
            return false;
        }
        incoming_.erase(incoming_.begin(), incoming_.begin() + static_cast<std::ptrdiff_t>(size));
    }
    return true;
}

// 0 while it is not complete.
std::size_t RequestGate::firstRequestSize() const {
    std::size_t size = 0;
    if (!isSetUp_ && incoming_.size() >= setupHeader) {
        size = setupHeader + padded(numberAt<std::uint16_t>(incoming_, 6)) +
               padded(numberAt<std::uint16_t>(incoming_, 8));
    } else if (isSetUp_ && incoming_.size() >= requestHeader) {
        size = 4 * numberAt<std::uint16_t>(incoming_, 2);
        if (size == 0 && incoming_.size() >= longRequestHeader) {
            size = 4 * numberAt<std::uint32_t>(incoming_, 4);
        }
    }
    return size <= incoming_.size() ? size : 0;
}

void RequestGate::announce(std::uint8_t opcode) {
    std::function<void()> action;
    {
        const std::lock_guard lock(mutex_);
        action = opcode == opcode_ ? action_ : nullptr;
    }
    if (action) {
        action();
    }
}

} // namespace tarvex::test
