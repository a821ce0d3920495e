#pragma once

#include "Platform/Linux/X11/XConnection.h"

#include <vector>

namespace tarvex {

/// The windows that stand directly in a window, from the bottom up. None for a window that has gone. Waits
/// for the server.
[[nodiscard]] std::vector<xcb_window_t> readChildren(XConnection& connection, xcb_window_t window);

} // namespace tarvex
