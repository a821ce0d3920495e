#pragma once

#include "Platform/Linux/X11/DesktopLayout.h"
#include "Platform/Linux/X11/OverlayVisual.h"
#include "Platform/Linux/X11/ScenePixels.h"
#include "Platform/Linux/X11/XConnection.h"

#include <cstdint>
#include <string_view>

namespace tarvex {

/// How an unmanaged window is made.
struct UnmanagedWindowAttributes {
    OverlayStyle style;
    /// On the root window; 1 pixel wide and high at least.
    PixelRect frame;
    /// The mask of the events that the connection is told of.
    std::uint32_t events;
    /// For whoever lists windows.
    std::string_view title;
};

/// A native window that no window manager touches, and what it is drawn with. Its requests are not flushed,
/// and but for the first window's names of properties they wait for nothing.
class UnmanagedWindow {
public:
    /// A window that is not shown yet. The connection and the visual must outlive it.
    /// @param visual one chosen for the style
    UnmanagedWindow(XConnection& connection, const OverlayVisual& visual,
                    const UnmanagedWindowAttributes& attributes);

    UnmanagedWindow(const UnmanagedWindow&) = delete;
    UnmanagedWindow& operator=(const UnmanagedWindow&) = delete;
    UnmanagedWindow(UnmanagedWindow&&) = delete;
    UnmanagedWindow& operator=(UnmanagedWindow&&) = delete;
    ~UnmanagedWindow();

    [[nodiscard]] xcb_window_t id() const { return window_; }

    /// Drawing with it reports no copies that failed.
    [[nodiscard]] xcb_gcontext_t context() const { return context_; }

    [[nodiscard]] OverlayStyle style() const { return style_; }

    /// Shows the window; it keeps its place in the stack of windows.
    void map();

private:
    XConnection* connection_;
    OverlayStyle style_;
    xcb_window_t window_;
    xcb_gcontext_t context_;
};

} // namespace tarvex
