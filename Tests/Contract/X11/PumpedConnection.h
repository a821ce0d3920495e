#pragma once

#include "Platform/Linux/X11/XConnection.h"
#include "Platform/Linux/X11/XEventPump.h"
#include "Tests/Support/Simulated/SimulatedMainLoop.h"

#include <functional>
#include <memory>
#include <string>

namespace tarvex::contract {

/// A connection of the program's kind; throws std::runtime_error when there is no such display.
[[nodiscard]] std::unique_ptr<XConnection> openOrThrow(const std::string& displayName);

/// What adapters under test work with: a connection, its pump and a main loop, which the test itself keeps
/// going.
class PumpedConnection {
public:
    explicit PumpedConnection(const std::string& displayName);

    /// Handles events until the condition holds; false when the patience ended first. Meanwhile the main
    /// loop's clock goes with the real one.
    bool waitUntil(const std::function<bool()>& condition);

    /// Returns when the server has dealt with all requests. What it has sent is read, but not handled.
    void awaitServer();

    /// How many requests the connection sends while the work is done.
    [[nodiscard]] unsigned requestsDuring(const std::function<void()>& work);

    std::unique_ptr<XConnection> connection;
    XEventPump pump;
    SimulatedMainLoop mainLoop;
};

} // namespace tarvex::contract
