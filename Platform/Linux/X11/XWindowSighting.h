#pragma once

#include "Platform/Linux/X11/XConnection.h"
#include "Platform/Linux/X11/XWindowGeometry.h"

#include <optional>
#include <unordered_map>
#include <vector>

namespace tarvex {

/// A window as it was at one moment, together with what stands in it. A window manager moves a window at the
/// first motion after a press, and to find out which window was pressed takes many questions: what is asked
/// for afterwards may be where the window is by then.
class XWindowSighting {
public:
    /// The moment is now. Waits for the server twice at most.
    /// @param outermost a child of the root window, such as a window manager's frame
    XWindowSighting(XConnection& connection, xcb_window_t outermost);

    [[nodiscard]] xcb_window_t outermost() const { return outermost_; }

    /// Whether the outermost window is one that nobody sees.
    [[nodiscard]] bool isInputOnly() const { return isInputOnly_; }

    /// The geometry at that moment of a window that is the outermost one or stands in it. One that was not
    /// looked at then is looked at now, once, and taken back by as far as the outermost window has moved
    /// since.
    [[nodiscard]] XWindowGeometry geometryOf(xcb_window_t window);

private:
    void look(const std::vector<xcb_window_t>& windows);

    XConnection* connection_;
    xcb_window_t outermost_;
    bool isInputOnly_ = false;
    std::optional<PixelRect> frame_;
    std::unordered_map<xcb_window_t, XWindowGeometry> seen_;
};

} // namespace tarvex
