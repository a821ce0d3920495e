#pragma once

#include "Platform/Linux/X11/XConnection.h"
#include "Platform/Linux/X11/XSizeLimits.h"
#include "Platform/Linux/X11/XWindowGeometry.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>

namespace tarvex {

/// What a request to move or size a window has to take into account.
struct XWindowSituation {
    /// Its error says whether the rest means anything.
    XWindowGeometry geometry;
    bool hasManager = false;
    bool managerPlacesWindows = false;
    bool managerCancelsMoves = false;
    /// Says of a window of this program's which borders it would draw around it.
    bool managerTellsBorders = false;
    bool isButtonDown = false;
    /// By which the window manager takes the place that the window itself asks for (WM_NORMAL_HINTS).
    std::uint32_t gravity = XCB_GRAVITY_NORTH_WEST;
    XSizeLimits limits;
};

/// A visible frame asked for, in pixels of the root window; what is absent stays as it is.
struct XWindowTarget {
    std::optional<int> x;
    std::optional<int> y;
    std::optional<int> width;
    std::optional<int> height;

    bool operator==(const XWindowTarget&) const = default;
};

/// The messages by which a window is steered. They go to the window manager, never to the window's owner, and
/// none waits for an answer.
class XWindowSteering {
public:
    /// The connection must outlive the object.
    explicit XWindowSteering(XConnection& connection);

    /// Waits for the server, once as a rule.
    [[nodiscard]] XWindowSituation read(xcb_window_t window);

    /// Whether a change of this property may change how the frame is to be reached.
    [[nodiscard]] bool isBorderProperty(xcb_atom_t property) const;

    [[nodiscard]] bool isStateProperty(xcb_atom_t property) const { return property == atoms_.state; }

    /// Calls off a move that the window manager makes by the pointer; it would put the window back under the
    /// pointer at the next motion or at the release. Nothing while the first button is up.
    void cancelInteractiveMove(xcb_window_t window, const XWindowSituation& situation);

    /// The same with the button up: a window manager that was busy when it was released may not have noticed.
    void cancelStuckMove(xcb_window_t window, const XWindowSituation& situation);

    /// Takes states away from a window, or gives it some.
    void removeStates(xcb_window_t window, const XWindowSituation& situation, const XSizeStates& states);
    void addStates(xcb_window_t window, const XWindowSituation& situation, const XSizeStates& states);

    /// Takes away the states in which a window keeps the size that the window manager gave it.
    void restore(xcb_window_t window, const XWindowSituation& situation);

    /// Frees a window from a tile that shows in no state: kwin keeps such a window where it is, and xfwm4
    /// puts it back there when a panel comes or goes. Both forget the tile when the window is maximised.
    void untile(xcb_window_t window, const XWindowSituation& situation);

    /// The same for metacity and its descendants, where a tiled window is maximised vertically and stays so
    /// when the state is taken away. They let go of it only when somebody drags it off, so one step of such a
    /// drag is played to them, then called off.
    void shakeLoose(xcb_window_t window, const XWindowSituation& situation);

    /// Puts the visible frame there, by one message, or directly where no window manager takes such messages.
    /// Window managers do not agree on what is asked of them directly: asked for the same again
    /// within two seconds, it allows for what the window went astray by, up to the width of its borders.
    void place(xcb_window_t window, const XWindowSituation& situation, const XWindowTarget& target);

private:
    struct Atoms {
        xcb_atom_t moveResize;
        xcb_atom_t interactiveMove;
        xcb_atom_t bordersQuestion;
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
    void changeStates(std::uint32_t change, xcb_window_t window, const XWindowSituation& situation,
                      const XSizeStates& states);

    /// How far the place that a window asks for is from the outer corner of its decoration, in pixels.
    struct Shift {
        int x = 0;
        int y = 0;
    };

    /// What was last asked of a window manager directly.
    struct DirectRequest {
        xcb_window_t window = XCB_WINDOW_NONE;
        XWindowTarget target;
        PixelRect frameBefore;
        Shift shift;
        std::chrono::steady_clock::time_point time;
    };

    [[nodiscard]] static Shift shiftOf(std::uint32_t gravity, const XBorders& decoration);
    [[nodiscard]] Shift shiftFor(xcb_window_t window, const XWindowSituation& situation,
                                 const XWindowTarget& target) const;
    void placeDirectly(xcb_window_t window, const XWindowSituation& situation, const XWindowTarget& target,
                       Values values);
    void configure(xcb_window_t window, const Values& values);

    XConnection* connection_;
    Atoms atoms_;
    DirectRequest latestDirect_;
};

} // namespace tarvex
