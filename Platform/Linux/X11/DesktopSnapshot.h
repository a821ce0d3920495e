#pragma once

#include "Platform/Linux/X11/DesktopLayout.h"
#include "Platform/Linux/X11/PixelFormat.h"
#include "Platform/Linux/X11/XConnection.h"

#include <cstdint>
#include <vector>

namespace tarvex {

/// What stood on the screen at a moment.
struct DesktopSnapshot {
    /// On the root window.
    PixelRect frame;
    /// Row by row from the top, 0xFFRRGGBB; empty when there is none.
    std::vector<std::uint32_t> pixels;
};

/// Reads that part of the screen. What lies beyond the root window, or cannot be read, has the colour that
/// pixels without a picture get. Waits for the server.
[[nodiscard]] DesktopSnapshot takeDesktopSnapshot(XConnection& connection, const PixelRect& frame,
                                                  const PixelFormat& rootFormat);

} // namespace tarvex
