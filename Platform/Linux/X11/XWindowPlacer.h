#pragma once

#include "Core/Geometry.h"
#include "Platform/Linux/X11/DesktopLayout.h"
#include "Platform/Linux/X11/XEventPump.h"
#include "Platform/Linux/X11/XWindowGeometry.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace tarvex {

/// Moves and sizes managed windows so that what the user sees of them lands on the requested pixels. It asks
/// the window manager, by one message for position and size together, and never the window's owner. Without a
/// window manager that takes such messages it configures the window itself.
///
/// A maximised, full-screen or shaded window is restored first. Since that changes its borders, at once or
/// when the client gets round to it, the request is repeated with the new borders until the window has
/// settled.
class XWindowPlacer {
public:
    /// All must outlive the placer.
    XWindowPlacer(XConnection& connection, XEventPump& pump, DesktopLayoutProvider& layout);

    /// Places the top-left corner of the visible frame (accessibility space), or sets its extent. The first
    /// of the two waits for its counterpart until the end of the turn. 0, or the X error code that came
    /// instead of the window's geometry; nothing is sent then.
    [[nodiscard]] std::int32_t setPosition(xcb_window_t window, Point position);
    [[nodiscard]] std::int32_t setSize(xcb_window_t window, Size size);

    /// Sends what waits for its counterpart.
    void sendPending();

    /// Leaves a window that was restored as it is from now on.
    void stopSettling();

private:
    /// What a request to the window has to take into account.
    struct Context {
        XWindowGeometry geometry;
        std::vector<std::uint32_t> states;
        /// What this connection listens to on the window, for others of its parts.
        std::uint32_t eventMask = 0;
        bool hasManager = false;
        bool managerTakesMessages = false;
        bool managerCancelsMoves = false;
        bool isButtonDown = false;
    };

    struct Pending {
        xcb_window_t window = XCB_WINDOW_NONE;
        Context context;
        std::optional<Point> position;
        std::optional<Size> size;
    };

    /// The visible frame asked for, on the root window.
    struct Target {
        std::optional<int> x;
        std::optional<int> y;
        std::optional<int> width;
        std::optional<int> height;
    };

    /// A window that was restored and may still change its borders.
    struct Settling {
        xcb_window_t window = XCB_WINDOW_NONE;
        Context context;
        Target target;
        std::chrono::steady_clock::time_point deadline;
        bool isChanged = false;
    };

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

    [[nodiscard]] static Atoms internAtoms(XConnection& connection);
    [[nodiscard]] std::int32_t prepare(xcb_window_t window);
    [[nodiscard]] Context readContext(xcb_window_t window);
    [[nodiscard]] Target targetOf(const Pending& pending);
    void cancelInteractiveMove(xcb_window_t window, const Context& context);
    void restore(xcb_window_t window, const Context& context);
    void place(xcb_window_t window, const Context& context, const Target& target);
    void configure(xcb_window_t window, const std::array<std::optional<int>, 4>& values);
    void sendToManager(xcb_window_t window, xcb_atom_t type, const std::array<std::uint32_t, 5>& data);

    void startSettling(const Pending& pending, const Target& target);
    void handlePropertyChange(const xcb_generic_event_t& event);
    void handleTurnEnd();
    void settle();
    void selectEvents(xcb_window_t window, std::uint32_t eventMask);

    XConnection* connection_;
    DesktopLayoutProvider* layout_;
    Atoms atoms_;
    std::optional<Pending> pending_;
    std::optional<Settling> settling_;
    std::unique_ptr<XEventPump::Subscription> propertyChanges_;
    std::unique_ptr<XEventPump::Subscription> turnEnd_;
};

} // namespace tarvex
