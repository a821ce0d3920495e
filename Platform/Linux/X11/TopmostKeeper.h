#pragma once

#include "Platform/Linux/X11/DesktopLayout.h"
#include "Platform/Linux/X11/EventMask.h"
#include "Platform/Linux/X11/XClientResources.h"
#include "Platform/Linux/X11/XConnection.h"
#include "Platform/Linux/X11/XEventPump.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace tarvex {

/// Keeps a window above those that a window manager looks after and shows or raises later, for as long as it
/// lives. What programs show over everything for a while, such as menus, tooltips and notifications, may lie
/// above it; so may panels and the windows of screen lockers. Where somebody else insists on being above as
/// well, it gives in for a while.
class TopmostKeeper {
public:
    /// The connection and the pump must outlive the keeper.
    TopmostKeeper(XConnection& connection, XEventPump& pump);

    TopmostKeeper(const TopmostKeeper&) = delete;
    TopmostKeeper& operator=(const TopmostKeeper&) = delete;
    TopmostKeeper(TopmostKeeper&&) = delete;
    TopmostKeeper& operator=(TopmostKeeper&&) = delete;
    ~TopmostKeeper() = default;

    /// Once per turn: raises the window above whatever came to lie over it and may not, and the first time
    /// puts it below what belongs above it. Waits for the server only then and if windows were shown or
    /// moved.
    /// @param frame of the window, on the root window
    void keepOnTop(xcb_window_t window, const PixelRect& frame);

private:
    using Clock = std::chrono::steady_clock;

    struct Atoms {
        xcb_atom_t managerCheck;
        xcb_atom_t windowType;
        xcb_atom_t dock;
        xcb_atom_t notification;
        xcb_atom_t tooltip;
        xcb_atom_t menu;
        xcb_atom_t popupMenu;
        xcb_atom_t dropdownMenu;
        xcb_atom_t combo;
        xcb_atom_t dragAndDrop;
    };

    /// Where another window belongs.
    enum class Level : std::uint8_t {
        below,
        /// Where it is: nobody knows better than it.
        asItIs,
        above,
    };

    /// A child of the root window that lies over some of the frame.
    struct Overlapping {
        xcb_window_t window;
        bool isOverrideRedirect;
        bool isAbove;
    };

    [[nodiscard]] static Atoms internAtoms(XConnection& connection);
    void note(xcb_window_t parent, xcb_window_t window);
    /// Lowest first.
    /// @param isNew whether the windows below the kept one matter too
    [[nodiscard]] std::vector<Overlapping> findOverlapping(xcb_window_t kept, const PixelRect& frame,
                                                           bool isNew);
    [[nodiscard]] Level levelOf(const Overlapping& other, std::optional<xcb_window_t> manager);
    /// What window managers show above ordinary windows.
    [[nodiscard]] bool isHigh(const std::vector<std::uint32_t>& types) const;
    /// What programs show over everything for a while.
    [[nodiscard]] bool isPopup(const std::vector<std::uint32_t>& types) const;
    /// The windows of others that the window holds.
    [[nodiscard]] std::vector<xcb_window_t> findClients(xcb_window_t frame);
    [[nodiscard]] bool mayRaise();

    XConnection* connection_;
    XClientResources own_;
    Atoms atoms_;
    RootEventSelection stackingEvents_;
    bool isStackingStale_ = false;
    xcb_window_t kept_ = XCB_WINDOW_NONE;
    std::vector<Clock::time_point> raises_;
    std::vector<std::unique_ptr<XEventPump::Subscription>> subscriptions_;
};

} // namespace tarvex
