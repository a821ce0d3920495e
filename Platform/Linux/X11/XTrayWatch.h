#pragma once

#include "Platform/Linux/X11/XConnection.h"
#include "Platform/Linux/X11/XEventPump.h"

#include <functional>
#include <memory>

namespace tarvex {

/// Knows whether the connection's screen has a tray that embeds icons (System Tray Protocol Specification):
/// somebody owns the selection _NET_SYSTEM_TRAY_Sn.
class XTrayWatch {
public:
    /// The connection and the pump must outlive the watch.
    /// @param changed called on the main loop for every new owner, with no owner in between
    XTrayWatch(XConnection& connection, XEventPump& pump, std::function<void()> changed);

    [[nodiscard]] bool hasTray() const { return hasTray_; }

private:
    void watchSelection(XEventPump& pump);
    void handleOwner(xcb_window_t owner);
    void update(bool hasTray);

    XConnection* connection_;
    std::function<void()> changed_;
    xcb_atom_t selection_;
    bool hasTray_ = false;
    std::unique_ptr<XEventPump::Subscription> subscription_;
};

} // namespace tarvex
