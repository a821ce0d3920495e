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

    /// Has the environment say what find() says, so that libraries that would start a bus of their own
    /// where none is named do not. Call it before anything else touches D-Bus.
    static void pin();
};

} // namespace tarvex
