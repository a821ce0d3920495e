#pragma once

#include "Platform/Linux/X11/XConnection.h"
#include "Platform/Linux/X11/XWindowGeometry.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace tarvex {

/// What a request to move or size a window has to take into account.
struct XWindowSituation {
    /// Its error says whether the rest means anything.
    XWindowGeometry geometry;
    /// _NET_WM_STATE.
    std::vector<std::uint32_t> states;
    bool hasManager = false;
    bool managerPlacesWindows = false;
    bool managerCancelsMoves = false;
    bool isButtonDown = false;
};

/// A visible frame asked for, in pixels of the root window; what is absent stays as it is.
struct XWindowTarget {
    std::optional<int> x;
    std::optional<int> y;
    std::optional<int> width;
    std::optional<int> height;
};

/// The messages by which a window is steered. They go to the window manager, never to the window's owner, and
/// none waits for an answer.
class XWindowSteering {
public:
    /// The connection must outlive the object.
    explicit XWindowSteering(XConnection& connection);

    /// Waits for the server, once as a rule.
    [[nodiscard]] XWindowSituation read(xcb_window_t window);

    [[nodiscard]] bool isMaximized(const XWindowSituation& situation) const;

    /// Whether the window is in one of the states in which the window manager gives it its size.
    [[nodiscard]] bool isSizedByManager(const XWindowSituation& situation) const;

    /// Whether a change of this property may change how the frame is to be reached.
    [[nodiscard]] bool isBorderProperty(xcb_atom_t property) const;

    [[nodiscard]] bool isStateProperty(xcb_atom_t property) const { return property == atoms_.state; }

    /// Calls off a move that the window manager makes by the pointer; it would put the window back under the
    /// pointer at the next motion or at the release. Nothing while the first button is up.
    void cancelInteractiveMove(xcb_window_t window, const XWindowSituation& situation);

    /// Takes away the states in which a window keeps the size that the window manager gave it.
    void restore(xcb_window_t window, const XWindowSituation& situation);

    /// Puts the visible frame there, by one message, or directly where no window manager takes such messages.
    void place(xcb_window_t window, const XWindowSituation& situation, const XWindowTarget& target);

private:
    struct Atoms {
        xcb_atom_t moveResize;
        xcb_atom_t interactiveMove;
        xcb_atom_t supported;
        xcb_atom_t state;
        xcb_atom_t maximizedVertically;
        xcb_atom_t maximizedHorizontally;
        xcb_atom_t fullScreen;
        xcb_atom_t shaded;
        xcb_atom_t decoration;
        xcb_atom_t invisible;
    };

    /// x, y, width and height as the window manager's message has them.
    using Values = std::array<std::optional<int>, 4>;

    [[nodiscard]] static Atoms internAtoms(XConnection& connection);
    void configure(xcb_window_t window, const Values& values);
    void send(xcb_window_t window, xcb_atom_t type, const std::array<std::uint32_t, 5>& data);

    XConnection* connection_;
    Atoms atoms_;
};

} // namespace tarvex
