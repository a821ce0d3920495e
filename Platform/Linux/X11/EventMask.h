#pragma once

#include "Platform/Linux/X11/XConnection.h"

#include <cstdint>

namespace tarvex {

/// Selects further events on a window, beside those that this connection has selected there before: X keeps
/// one mask per window and client, and setting it anew would take other parts' events away. Waits for the
/// server once. A window that has gone is left alone.
void addEventMask(XConnection& connection, xcb_window_t window, std::uint32_t mask);

/// The same for the root window.
inline void selectRootEvents(XConnection& connection, std::uint32_t mask) {
    addEventMask(connection, connection.root(), mask);
}

} // namespace tarvex
