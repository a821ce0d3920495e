#pragma once

#include "App/Toolkit/MainLoop.h"
#include "Core/Geometry.h"
#include "Platform/Linux/X11/DesktopLayout.h"
#include "Platform/Linux/X11/XEventPump.h"
#include "Platform/Linux/X11/XWindowSettling.h"
#include "Platform/Linux/X11/XWindowSteering.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace tarvex {

/// Moves and sizes managed windows so that what the user sees of them lands on the requested pixels, position
/// and size at once.
///
/// A maximised, full-screen or shaded window is restored first. Since that changes its borders, at once or
/// when the client gets round to it, the request is repeated with the new borders until the window has
/// settled. It is repeated, too, when the window manager turns out to have maximised or tiled the window just
/// then, as many do with one that is dragged to an edge of the screen. Such a window is freed from its tile
/// first.
///
/// A window that goes back to where somebody took hold of it goes back into its states, too.
///
/// One that wants a fixed ratio of its sides gets the largest size within the requested one that has it. One
/// that takes another size for reasons of its own keeps it, at the requested position, and a window manager
/// that takes the position for the client's is told once more, with the borders added.
///
/// While the first button is down the window manager may be moving the window itself. That move is called off
/// first, or it would undo the request.
class XWindowPlacer {
public:
    using SettlingTimes = XWindowSettling::Times;

    /// All must outlive the placer.
    /// @param mainLoop without one, a window that stays where it is in silence is not looked at again
    XWindowPlacer(XConnection& connection, XEventPump& pump, DesktopLayoutProvider& layout,
                  SettlingTimes times, MainLoop* mainLoop = nullptr);

    /// Places the top-left corner of the visible frame (accessibility space), or sets its extent. The first
    /// of the two waits for its counterpart until the end of the turn. 0, or the X error code that came
    /// instead of the window's geometry; nothing is sent then.
    /// @param atFirst the window when somebody took hold of it, if that is known
    [[nodiscard]] std::int32_t setPosition(xcb_window_t window, Point position,
                                           const std::optional<XWindowRecord>& atFirst = {});
    [[nodiscard]] std::int32_t setSize(xcb_window_t window, Size size,
                                       const std::optional<XWindowRecord>& atFirst = {});

    /// Sends what waits for its counterpart.
    void sendPending();

    /// Leaves the window that was placed last as it is from now on.
    void stopSettling() { settling_.stop(); }

private:
    struct Pending {
        XWindowRequest request;
        std::optional<Point> position;
        std::optional<Size> size;
    };

    [[nodiscard]] std::int32_t prepare(xcb_window_t window, const std::optional<XWindowRecord>& atFirst);
    void sendIfComplete();
    [[nodiscard]] XWindowTarget targetOf(const Pending& pending);
    void handleTurnEnd();

    XConnection* connection_;
    DesktopLayoutProvider* layout_;
    XWindowSteering steering_;
    XWindowSettling settling_;
    std::unique_ptr<Pending> pending_;
    std::unique_ptr<XEventPump::Subscription> turnEnd_;
};

} // namespace tarvex
