#pragma once

#include "Platform/Linux/X11/XConnection.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace tarvex {

/// What the conventions between clients and window managers give numbers to (Extended Window Manager Hints).
namespace window_manager {

/// The source of a request that comes from the user himself, by way of a program other than the window's.
inline constexpr std::uint32_t sourcePager = 2;

/// Takes states away from a window, or gives it some (_NET_WM_STATE).
inline constexpr std::uint32_t stateRemove = 0;
inline constexpr std::uint32_t stateAdd = 1;

} // namespace window_manager

/// Sends the window manager a message about a window, by way of the root window. Waits for nothing and is not
/// flushed; nobody takes it where there is no window manager.
/// @param about need not be the program's own
void sendToWindowManager(XConnection& connection, xcb_window_t about, xcb_atom_t type,
                         const std::array<std::uint32_t, 5>& data);

/// Whether there is a window manager at present.
/// @param root the root window's attributes; false when they could not be had
[[nodiscard]] bool hasWindowManager(const XReply<xcb_get_window_attributes_reply_t>& root);

/// Whether a window manager looks after the window: it is in another than ICCCM's WithdrawnState.
/// @param windowState the words of WM_STATE
[[nodiscard]] bool isManaged(const std::vector<std::uint32_t>& windowState);

/// Whether the window is in ICCCM's IconicState.
/// @param windowState the words of WM_STATE
[[nodiscard]] bool isIconic(const std::vector<std::uint32_t>& windowState);

/// Whether the window manager has put a window that it looks after out of the user's sight: it is minimised
/// or on another desktop, even if it is still mapped, as under some window managers that compose the screen.
/// A shaded one is in sight. None for a window that no window manager looks after.
/// @param windowState the words of WM_STATE
/// @param sizeState the words of _NET_WM_STATE
[[nodiscard]] std::optional<bool> isPutAway(XConnection& connection,
                                            const std::vector<std::uint32_t>& windowState,
                                            const std::vector<std::uint32_t>& sizeState);

/// The same of a window whose properties are not known yet. Waits for the server.
[[nodiscard]] std::optional<bool> isPutAway(XConnection& connection, xcb_window_t window);

} // namespace tarvex
