#pragma once

#include "Platform/Linux/X11/DesktopLayout.h"
#include "Platform/Linux/X11/XConnection.h"
#include "Platform/Linux/X11/XSizeStates.h"

#include <cstdint>
#include <optional>

namespace tarvex {

/// The widths of what surrounds a window, in pixels.
struct XBorders {
    int left = 0;
    int right = 0;
    int top = 0;
    int bottom = 0;

    bool operator==(const XBorders&) const = default;
};

/// Where a managed window is, and what of it the user sees: the client and the window manager's decoration,
/// less the invisible margins, shadows for the most part, that a client draws around itself.
struct XWindowGeometry {
    /// 0, or the X error code of the request that failed; 3 (BadWindow) for a window that has gone.
    std::int32_t error = 0;
    /// The client window on the root window, without its X border.
    PixelRect client;
    XBorders decoration;
    XBorders invisible;
    XSizeStates states;
    /// How much of the client's height is out of sight because the window is rolled up.
    int rolledUp = 0;
    /// What the client is in: the window manager's frame as a rule, else the root window.
    xcb_window_t parent = XCB_WINDOW_NONE;

    /// What the user sees, on the root window.
    [[nodiscard]] PixelRect visibleFrame() const;

    /// The client's size that makes the visible frame as large as asked, 1 at least.
    [[nodiscard]] int clientWidthFor(int visibleWidth) const;
    [[nodiscard]] int clientHeightFor(int visibleHeight) const;
};

/// The questions to the server that make up a window's geometry, sent on construction, so that their answers
/// can be waited for together with others.
class XWindowGeometryRequest {
public:
    XWindowGeometryRequest(XConnection& connection, xcb_window_t window);

    /// Waits for the answers. To be called once, always.
    /// @param known the outermost window around this one, if it is known from the same moment
    [[nodiscard]] XWindowGeometry take(const std::optional<PixelRect>& known = {});

private:
    /// The outermost window around the client; none when that is the client itself.
    [[nodiscard]] std::optional<PixelRect> measureFrame(xcb_window_t parent) const;

    XConnection* connection_;
    xcb_window_t window_;
    xcb_translate_coordinates_cookie_t origin_;
    xcb_get_geometry_cookie_t geometry_;
    xcb_query_tree_cookie_t tree_;
    xcb_get_property_cookie_t decoration_;
    xcb_get_property_cookie_t invisible_;
    xcb_get_property_cookie_t states_;
};

} // namespace tarvex
