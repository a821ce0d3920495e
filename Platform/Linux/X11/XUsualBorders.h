#pragma once

#include "Platform/Linux/X11/EventMask.h"
#include "Platform/Linux/X11/XConnection.h"
#include "Platform/Linux/X11/XEventPump.h"
#include "Platform/Linux/X11/XWindowBorders.h"

#include <memory>
#include <optional>

namespace tarvex {

/// The borders that the window manager draws around a window with a title and a button that closes it, but
/// of a fixed size. Asked for beforehand, with a window that is never shown, so that the first window of
/// that kind can be put where it is to stay.
class XUsualBorders {
public:
    /// The connection and the pump must outlive the object. Asks anew whenever another window manager starts.
    XUsualBorders(XConnection& connection, XEventPump& pump);

    XUsualBorders(const XUsualBorders&) = delete;
    XUsualBorders& operator=(const XUsualBorders&) = delete;
    XUsualBorders(XUsualBorders&&) = delete;
    XUsualBorders& operator=(XUsualBorders&&) = delete;
    ~XUsualBorders();

    /// In pixels; none until a window manager has told. Waits for the server.
    [[nodiscard]] std::optional<XBorders> read() { return borders_->read(); }

private:
    void describe() const;

    XConnection* connection_;
    xcb_window_t window_;
    RootEventSelection rootEvents_;
    std::unique_ptr<XWindowBorders> borders_;
    std::unique_ptr<XEventPump::Subscription> subscription_;
};

} // namespace tarvex
