#pragma once

#include "Tests/Support/X11/FileDescriptor.h"
#include "Tests/Support/X11/XServer.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace tarvex::test {

/// Stands between one client and the server, so that a test can let something happen between two requests of
/// that client. Throws std::runtime_error when it cannot be set up. The server must outlive it.
class RequestGate {
public:
    explicit RequestGate(const XServer& server);
    RequestGate(const RequestGate&) = delete;
    RequestGate& operator=(const RequestGate&) = delete;
    RequestGate(RequestGate&&) = delete;
    RequestGate& operator=(RequestGate&&) = delete;
    ~RequestGate();

    /// What the client connects to instead of the server. It takes one client.
    [[nodiscard]] const std::string& displayName() const { return displayName_; }

    /// Calls the action, on another thread, for each request of that kind; the request goes on to the server
    /// when the action returns. One that throws ends the connection.
    void onRequest(std::uint8_t opcode, std::function<void()> action);

private:
    void run();
    void relay(int client, int server);
    [[nodiscard]] bool passOn(int client, int server);
    [[nodiscard]] std::size_t firstRequestSize() const;
    void announce(std::uint8_t opcode);

    void listen();

    std::string displayName_;
    std::string serverSocket_;
    FileDescriptor listener_;
    FileDescriptor stopSource_;
    FileDescriptor stopSink_;
    /// What the client has sent and is not complete yet.
    std::vector<std::uint8_t> incoming_;
    bool isSetUp_ = false;
    std::mutex mutex_;
    std::uint8_t opcode_ = 0;
    std::function<void()> action_;
    std::thread thread_;
};

} // namespace tarvex::test
