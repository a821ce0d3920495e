#pragma once

#include "Platform/Linux/X11/DesktopLayout.h"
#include "Platform/Linux/X11/XConnection.h"

#include <string_view>

namespace tarvex {

/// Where windows wait that are mapped but must not be seen: one pixel, so far from the screen's corner that
/// not even a shadow would reach it.
inline constexpr PixelRect overlayParking{-256, -256, 1, 1};

/// What overlays are called, and what else is on the screen because of them.
inline constexpr std::string_view overlayTitle = "Tarvex Zones";

/// Names the window as ours, and asks whoever composes the screen for no shadow, blur or animation.
void setOverlayProperties(XConnection& connection, xcb_window_t window, std::string_view title);

/// Puts the window below all others. A parked window must not be the topmost: a full-screen program that
/// nothing covers may get the screen to itself.
void lowerToBottom(XConnection& connection, xcb_window_t window);

/// Puts the window above all others.
void raiseToTop(XConnection& connection, xcb_window_t window);

/// Puts the window right above or below a sibling. Nothing happens when that has gone.
void restackBeside(XConnection& connection, xcb_window_t window, xcb_window_t sibling, xcb_stack_mode_t mode);

} // namespace tarvex
