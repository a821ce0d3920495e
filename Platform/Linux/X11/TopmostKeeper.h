#pragma once

#include "Platform/Linux/X11/DesktopLayout.h"
#include "Platform/Linux/X11/XConnection.h"
#include "Platform/Linux/X11/XEventPump.h"

#include <chrono>
#include <memory>
#include <optional>
#include <vector>

namespace tarvex {

/// Keeps a window above those that are shown or raised after it, for as long as it lives. A window that
/// covers all of it, as that of a screen locker, is left on top. Where somebody else insists on
/// being above as well, it gives in for a while.
class TopmostKeeper {
public:
    /// The connection and the pump must outlive the keeper.
    TopmostKeeper(XConnection& connection, XEventPump& pump);

    TopmostKeeper(const TopmostKeeper&) = delete;
    TopmostKeeper& operator=(const TopmostKeeper&) = delete;
    TopmostKeeper(TopmostKeeper&&) = delete;
    TopmostKeeper& operator=(TopmostKeeper&&) = delete;
    ~TopmostKeeper();

    /// Once per turn: raises the window above whatever came to lie over it. Waits for the server only if
    /// windows were shown or moved.
    /// @param frame of the window, on the root window
    void keepOnTop(xcb_window_t window, const PixelRect& frame);

private:
    using Clock = std::chrono::steady_clock;

    void note(xcb_window_t parent, xcb_window_t window);
    [[nodiscard]] bool isOwn(xcb_window_t window) const;
    /// The highest window that covers a part of the frame, if it is above the given one.
    [[nodiscard]] std::optional<xcb_window_t> findObscuring(xcb_window_t window, const PixelRect& frame);
    [[nodiscard]] bool mayRaise();

    XConnection* connection_;
    bool hasSelected_ = false;
    bool isStackingStale_ = false;
    std::vector<Clock::time_point> raises_;
    std::vector<std::unique_ptr<XEventPump::Subscription>> subscriptions_;
};

} // namespace tarvex
