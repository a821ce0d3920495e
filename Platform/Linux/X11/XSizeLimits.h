#pragma once

#include "Platform/Linux/X11/XConnection.h"

namespace tarvex {

/// What a window says of the sizes that it can have (WM_NORMAL_HINTS, ICCCM 4.1.2.3), for the client without
/// its frame, in pixels.
class XSizeLimits {
public:
    /// Waits for the server. A window that has gone, or that says nothing, has no limits.
    XSizeLimits(XConnection& connection, xcb_window_t window);

    /// Whether the window may well have come to be as large as it is because somebody asked for that size.
    [[nodiscard]] bool explainWidth(int actual, int asked) const { return explain(width_, actual, asked); }

    [[nodiscard]] bool explainHeight(int actual, int asked) const { return explain(height_, actual, asked); }

private:
    struct Limits {
        int smallest = 1;
        int largest = 0;
        int increment = 1;
    };

    [[nodiscard]] bool explain(const Limits& limits, int actual, int asked) const;

    Limits width_;
    Limits height_;
    /// The window wants a fixed ratio of its sides, which leaves its size to the window manager.
    bool hasAspect_ = false;
};

} // namespace tarvex
