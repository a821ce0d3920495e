#include "Tests/Contract/X11/PumpedConnection.h"

#include "Tests/Support/X11/Deadline.h"

#include <chrono>
#include <poll.h>
#include <stdexcept>

namespace tarvex::contract {

std::unique_ptr<XConnection> openOrThrow(const std::string& displayName) {
    auto connection = XConnection::open(displayName);
    if (!connection) {
        throw std::runtime_error("cannot connect to " + displayName);
    }
    return connection;
}

PumpedConnection::PumpedConnection(const std::string& displayName)
    : connection(openOrThrow(displayName)), pump(*connection) {}

bool PumpedConnection::waitUntil(const std::function<bool()>& condition) {
    using Clock = std::chrono::steady_clock;
    const test::Deadline deadline;
    for (Clock::time_point before = Clock::now();;) {
        pump.processPending();
        const Clock::time_point now = Clock::now();
        mainLoop.advance(std::chrono::duration<double>(now - before).count());
        before = now;
        if (condition()) {
            return true;
        }
        if (deadline.hasPassed()) {
            return false;
        }
        pollfd waited{pump.fileDescriptor(), POLLIN, 0};
        poll(&waited, 1, deadline.pollTimeout(10));
    }
}

void PumpedConnection::awaitServer() {
    static_cast<void>(connection->take(xcb_get_input_focus_reply, xcb_get_input_focus(connection->get())));
}

unsigned PumpedConnection::requestsDuring(const std::function<void()>& work) {
    const unsigned before = xcb_no_operation(connection->get()).sequence;
    work();
    return xcb_no_operation(connection->get()).sequence - before - 1;
}

} // namespace tarvex::contract
