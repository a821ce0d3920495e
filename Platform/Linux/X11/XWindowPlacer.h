#pragma once

#include "App/Toolkit/MainLoop.h"
#include "Core/Geometry.h"
#include "Platform/Linux/X11/DesktopLayout.h"
#include "Platform/Linux/X11/EventMask.h"
#include "Platform/Linux/X11/XEventPump.h"
#include "Platform/Linux/X11/XWindowSteering.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>

namespace tarvex {

/// A managed window as it was when somebody took hold of it.
struct XWindowRecord {
    /// The visible frame, on the root window.
    PixelRect frame;
    XSizeStates states;
};

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
/// While the first button is down the window manager may be moving the window itself. That move is called off
/// first, or it would undo the request.
class XWindowPlacer {
public:
    /// For how long after a request the window's changes are put down to it.
    struct SettlingTimes {
        /// A client may take its time to draw its borders anew.
        std::chrono::milliseconds borders{1000};
        /// A window manager that lags behind the release of the button does not, and whoever maximises a
        /// window later than that means it.
        std::chrono::milliseconds state{300};
        /// A window manager that keeps a tiled window where it is says nothing of it. By then any other has
        /// placed it.
        std::chrono::milliseconds silence{150};
    };

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
    void stopSettling() { settling_.reset(); }

private:
    struct Pending {
        xcb_window_t window = XCB_WINDOW_NONE;
        /// Older than the situation, so that no change goes by unseen.
        std::unique_ptr<XWindowWatch> watch;
        XWindowSituation situation;
        std::optional<XWindowRecord> atFirst;
        std::optional<Point> position;
        std::optional<Size> size;
    };

    /// A window that was placed and may still change its borders or its state because of that.
    struct Settling {
        xcb_window_t window = XCB_WINDOW_NONE;
        std::unique_ptr<XWindowWatch> watch;
        /// At the latest request.
        XWindowSituation situation;
        XWindowTarget target;
        /// What the window is to become again, for one that had states then.
        std::optional<XWindowRecord> earlier;
        std::chrono::steady_clock::time_point start;
        std::unique_ptr<Timer> look;
        bool isChanged = false;
        /// The window may be in a tile. A window manager that merely lags behind is not to be disturbed.
        bool isSuspect = false;
        bool isRestored = false;
        bool isUntiled = false;
        bool isShaken = false;
    };

    [[nodiscard]] std::int32_t prepare(xcb_window_t window, const std::optional<XWindowRecord>& atFirst);
    void sendIfComplete();
    [[nodiscard]] XWindowTarget targetOf(const Pending& pending);
    [[nodiscard]] std::unique_ptr<Settling> send(Pending& pending);
    void putBack(xcb_window_t window, const XWindowSituation& now, const XWindowRecord& earlier);
    [[nodiscard]] bool isSettling(xcb_window_t window, std::chrono::milliseconds forAtMost);
    void handlePropertyChange(const xcb_generic_event_t& event);
    void handleConfiguration(const xcb_generic_event_t& event);
    void handleEnd(const xcb_generic_event_t& event);
    void handleTurnEnd();
    void settle();
    [[nodiscard]] bool prepareAgain(const XWindowSituation& now);
    [[nodiscard]] bool hasLanded(const XWindowGeometry& now);

    XConnection* connection_;
    DesktopLayoutProvider* layout_;
    SettlingTimes times_;
    MainLoop* mainLoop_;
    XWindowSteering steering_;
    std::unique_ptr<Pending> pending_;
    std::unique_ptr<Settling> settling_;
    std::unique_ptr<XEventPump::Subscription> propertyChanges_;
    std::unique_ptr<XEventPump::Subscription> configurations_;
    std::unique_ptr<XEventPump::Subscription> ends_;
    std::unique_ptr<XEventPump::Subscription> turnEnd_;
};

} // namespace tarvex
