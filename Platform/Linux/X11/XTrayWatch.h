#pragma once

#include "Platform/Linux/X11/XSelectionWatch.h"

#include <functional>

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
    void handleOwner(xcb_window_t owner);
    void update(bool hasTray);

    std::function<void()> changed_;
    XSelectionWatch selection_;
    bool hasTray_;
};

} // namespace tarvex
