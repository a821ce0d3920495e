#pragma once

#include "Platform/Linux/X11/XConnection.h"
#include "Platform/Linux/X11/XEventPump.h"

#include <functional>
#include <memory>
#include <string_view>

namespace tarvex {

/// Knows who owns a selection that stands for a service of the connection's screen, as
/// _NET_WM_CM_S0 does for the compositing manager of the first one (ICCCM, 2.8).
class XSelectionWatch {
public:
    /// None owns it for XCB_WINDOW_NONE.
    using OwnerHandler = std::function<void(xcb_window_t owner)>;

    /// The connection and the pump must outlive the watch.
    /// @param prefix of the selection's name, to which the number of the screen is added
    /// @param handler called for every new owner from now on, and when there is none any more
    XSelectionWatch(XConnection& connection, XEventPump& pump, std::string_view prefix, OwnerHandler handler);

    /// Asks the server whether anybody owns it now.
    [[nodiscard]] bool hasOwner();

private:
    XConnection* connection_;
    xcb_atom_t selection_;
    OwnerHandler handler_;
    std::unique_ptr<XEventPump::Subscription> subscription_;
};

} // namespace tarvex
