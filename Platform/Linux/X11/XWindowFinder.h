#pragma once

#include "Platform/Linux/X11/XClientResources.h"
#include "Platform/Linux/X11/XConnection.h"
#include "Platform/Linux/X11/XOutermostWindows.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace tarvex {

/// Finds windows in the server's window tree. Asks the server only, never the window's owner.
class XWindowFinder {
public:
    struct Result {
        /// 0, or the X error code of the request that failed.
        std::int32_t error = 0;
        /// XCB_WINDOW_NONE when there is no such window.
        xcb_window_t window = XCB_WINDOW_NONE;
    };

    /// A window and what it stands in.
    struct Path {
        /// 0, or the X error code of the request that failed.
        std::int32_t error = 0;
        /// From the root down to the window. Empty when there is no such window.
        std::vector<xcb_window_t> windows;
    };

    /// @param ownClients the connections whose windows are this program's own, besides `connection` itself
    XWindowFinder(XConnection& connection, std::vector<XClientResources> ownClients);

    /// The deepest window at a pixel of the root window; the root itself where there is no other. None over a
    /// window of this program, unless its input shape lets the pointer through. What window managers lay
    /// above windows for the pointer alone is passed over (XOutermostWindows). Looks again when a window
    /// closes meanwhile; an error when that does not end.
    [[nodiscard]] Path deepestWindowAt(int x, int y);

    /// The same in a child of the root window, which need not be at the pixel any more. An error when that
    /// has closed.
    [[nodiscard]] Path deepestWindowIn(xcb_window_t outermost, int x, int y);

    /// The window that the window manager manages and that the given one is part of, be it the window itself,
    /// an ancestor, or the one inside the window manager's frame. None for desktops, panels, menus and the
    /// like, for windows that no window manager manages or that are minimised or
    /// on another desktop, and for this program's own.
    [[nodiscard]] Result managedWindowOf(xcb_window_t window);

    /// The same for the last window of a path, or, as far as they have closed, for the last one that has not.
    /// The path must not be empty.
    [[nodiscard]] Result managedWindowOf(const std::vector<xcb_window_t>& path);

    /// The parent; none for the root.
    [[nodiscard]] Result parentOf(xcb_window_t window);

private:
    /// The error is that of a window that has closed on the way.
    [[nodiscard]] Path descendTo(int x, int y);
    [[nodiscard]] Path descendIn(xcb_window_t outermost, int x, int y);
    [[nodiscard]] XReply<xcb_translate_coordinates_reply_t> childAt(xcb_window_t window, int x, int y);
    [[nodiscard]] bool isOwn(xcb_window_t window) const;
    [[nodiscard]] xcb_window_t managedWindowBelow(xcb_window_t frame);
    [[nodiscard]] std::vector<xcb_window_t> childrenOf(const std::vector<xcb_window_t>& windows);
    [[nodiscard]] Result acceptIfMovable(xcb_window_t window);
    [[nodiscard]] bool isMovableType(const std::vector<std::uint32_t>& types) const;

    XConnection* connection_;
    XOutermostWindows outermost_;
    std::vector<XClientResources> ownClients_;
    xcb_atom_t windowState_;
    xcb_atom_t windowType_;
    xcb_atom_t sizeState_;
    std::vector<xcb_atom_t> movableTypes_;
    std::vector<xcb_atom_t> fixedTypes_;
};

} // namespace tarvex
