#pragma once

#include <string>

namespace tarvex {

/// Where the session bus is.
class SessionBusAddress {
public:
    /// The address that the environment names, else that of the user's bus in $XDG_RUNTIME_DIR; empty when
    /// there is neither, or when the environment rules a bus out ("disabled:"). An address that would start a
    /// bus ("autolaunch:") is none: a bus that nobody else is on is of no use, and it would outlive us.
    [[nodiscard]] static std::string find();

    /// Has the environment name that bus, or none for an empty address. Libraries then neither wait for a bus
    /// that does not answer nor start one of their own where none is named. Call it before they touch D-Bus.
    static void pin(const std::string& address);

    /// False when connecting to a socket of this system would fail or would have to wait, because nobody
    /// takes the connections that stand in line. Does not wait. True for addresses of other kinds.
    [[nodiscard]] static bool takesConnections(const std::string& address);
};

} // namespace tarvex
