#pragma once

#include "Platform/Linux/X11/XConnection.h"
#include "Platform/Linux/X11/XEventPump.h"
#include "Platform/Linux/X11/XWindowGeometry.h"

#include <functional>
#include <memory>
#include <optional>

namespace tarvex {

/// What the window manager draws around a window of this program, also before it has shown the window
/// (Extended Window Manager Hints, _NET_REQUEST_FRAME_EXTENTS).
class XWindowBorders {
public:
    /// Asks the window manager for the borders that it will draw. Waits for the server once.
    /// @param window must exist; the connection and the pump must outlive the object
    /// @param told called whenever the window manager has set the borders
    XWindowBorders(XConnection& connection, XEventPump& pump, xcb_window_t window,
                   std::function<void()> told);

    XWindowBorders(const XWindowBorders&) = delete;
    XWindowBorders& operator=(const XWindowBorders&) = delete;
    XWindowBorders(XWindowBorders&&) = delete;
    XWindowBorders& operator=(XWindowBorders&&) = delete;
    ~XWindowBorders() = default;

    /// In pixels; none until a window manager has told. Waits for the server.
    [[nodiscard]] std::optional<XBorders> read();

    /// Asks the window manager again.
    void request();

private:
    XConnection* connection_;
    xcb_window_t window_;
    xcb_atom_t extents_;
    std::optional<XBorders> last_;
    std::unique_ptr<XEventPump::Subscription> subscription_;
};

} // namespace tarvex
