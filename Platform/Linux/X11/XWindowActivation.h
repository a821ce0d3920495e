#pragma once

#include "Platform/Linux/X11/XConnection.h"
#include "Platform/Linux/X11/XEventPump.h"

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace tarvex {

/// Brings a window of this program to the front of all others, and the keyboard to it, although the user's
/// last input may have gone to another program: a hotkey or a message from elsewhere asked for it. Window
/// managers that keep programs from taking the keyboard are told the server's own time of the wish, and that
/// the user himself is behind it (Extended Window Manager Hints, _NET_ACTIVE_WINDOW and _NET_WM_USER_TIME).
class XWindowActivation {
public:
    /// Both must outlive the activation.
    XWindowActivation(XConnection& connection, XEventPump& pump);

    XWindowActivation(const XWindowActivation&) = delete;
    XWindowActivation& operator=(const XWindowActivation&) = delete;
    XWindowActivation(XWindowActivation&&) = delete;
    XWindowActivation& operator=(XWindowActivation&&) = delete;
    ~XWindowActivation() = default;

    /// Takes effect as soon as the window is shown, for which another connection may have asked. A window
    /// that is on another desktop comes to the present one, one that is shaded or iconified unfolds. A later
    /// call takes the place of this one. The window must exist; waits for the server once.
    void activate(xcb_window_t window);

    /// Forgets the wish for that window if it has not taken effect yet.
    void cancel(xcb_window_t window);

private:
    struct Atoms {
        xcb_atom_t activeWindow;
        xcb_atom_t userTime;
        xcb_atom_t managedState;
        xcb_atom_t state;
        xcb_atom_t shaded;
        xcb_atom_t desktop;
        xcb_atom_t currentDesktop;
        xcb_atom_t serverTime;
    };

    /// How the window stands with the server and the window manager.
    struct Situation {
        bool exists = false;
        bool isViewable = false;
        bool hasManager = false;
        bool isManaged = false;
        bool isIconic = false;
        bool isShaded = false;
        std::vector<std::uint32_t> desktop;
        std::vector<std::uint32_t> currentDesktop;
    };

    [[nodiscard]] static Atoms internAtoms(XConnection& connection);
    void handleProperty(const xcb_property_notify_event_t& event);
    void handleMap(const xcb_map_notify_event_t& event);
    void noteTime(xcb_timestamp_t time);
    void proceed();
    [[nodiscard]] Situation read();
    void askManager(const Situation& situation);
    void takeFocus();
    void send(xcb_atom_t type, const std::array<std::uint32_t, 5>& data);

    XConnection* connection_;
    Atoms atoms_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
    /// The server's, of the wish; 0 until the server has said it.
    xcb_timestamp_t time_ = XCB_CURRENT_TIME;
    std::vector<std::unique_ptr<XEventPump::Subscription>> subscriptions_;
};

} // namespace tarvex
