#pragma once

#include "Platform/Linux/X11/XClientResources.h"
#include "Platform/Linux/X11/XConnection.h"

#include <unordered_map>
#include <vector>

namespace tarvex {

/// Finds other programs' windows where nobody lists them: the children of the root window, and in window
/// managers' frames the windows that the managers put there. It listens to nothing, since the server tells of
/// new windows only together with every step of every move.
class ClientSearch {
public:
    /// The connection must outlive the search.
    explicit ClientSearch(XConnection& connection) : connection_(&connection), own_(connection.get()) {}

    /// The windows that are new since the calls before; the program's own are left out. Each comes at two
    /// calls, since what a window is may only be said after it was made. Waits for the server once, and once
    /// more if there are new ones. What is too much for one call comes at the next.
    [[nodiscard]] std::vector<xcb_window_t> findNew();

    /// From now on all windows count as new.
    void startOver() { looks_.clear(); }

private:
    XConnection* connection_;
    XClientResources own_;
    /// How often each child of the root window has been looked at.
    std::unordered_map<xcb_window_t, int> looks_;
};

} // namespace tarvex
