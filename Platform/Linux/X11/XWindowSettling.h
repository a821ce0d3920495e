#pragma once

#include "App/Toolkit/MainLoop.h"
#include "Platform/Linux/X11/EventMask.h"
#include "Platform/Linux/X11/PixelRect.h"
#include "Platform/Linux/X11/WindowManagerEcho.h"
#include "Platform/Linux/X11/XEventPump.h"
#include "Platform/Linux/X11/XPlacement.h"
#include "Platform/Linux/X11/XWindowSteering.h"

#include <chrono>
#include <memory>
#include <optional>

namespace tarvex {

/// A managed window as it was when somebody took hold of it.
struct XWindowRecord {
    /// The visible frame, on the root window.
    PixelRect frame;
    XSizeStates states;
};

/// A window, all that there is to know of it, and where its visible frame is to be.
struct XWindowRequest {
    xcb_window_t window = XCB_WINDOW_NONE;
    /// Older than the situation, so that no change goes by unseen.
    std::unique_ptr<XWindowWatch> watch;
    XWindowSituation situation;
    std::optional<XWindowRecord> atFirst;
    XWindowTarget target;
};

/// Sends one window after the other to where it is to be, and looks after the latest until it is there.
class XWindowSettling {
public:
    /// For how long the window's changes are put down to the request: from when the window manager has come
    /// to it, however late that is.
    struct Times {
        /// A client may take its time to draw its borders anew. Also how long a window manager has to come to
        /// the request.
        std::chrono::milliseconds borders{1000};
        /// Whoever maximises a window later than that means it.
        std::chrono::milliseconds state{300};
        /// A window manager that keeps a tiled window where it is says nothing of it. By then any other has
        /// placed it.
        std::chrono::milliseconds silence{150};
    };

    /// All must outlive the object.
    /// @param mainLoop without one, a window that stays where it is in silence is not looked at again
    XWindowSettling(XConnection& connection, XEventPump& pump, XWindowSteering& steering, Times times,
                    MainLoop* mainLoop);

    /// Sends it there, and flushes. Where there is no window manager that is all.
    void start(XWindowRequest request);

    /// Leaves the window as it is from now on.
    void stop();

    /// To be called when all events that had arrived have been handled.
    void handleTurnEnd();

private:
    struct Current {
        XWindowRequest request;
        XPlacement placement;
        /// What the window is to become again, for one that had states then.
        std::optional<XWindowRecord> earlier;
        std::chrono::steady_clock::time_point start;
        /// The window manager has come to the first request.
        bool isAnswered = false;
        std::unique_ptr<Timer> look;
        bool isLookedAt = false;
        bool isAskedTwice = false;
        bool isChanged = false;
        /// The window may just have been tiled.
        bool isSuspect = false;
        bool isRestored = false;
        bool isUntiled = false;
        bool isShaken = false;
    };

    void send();
    void place(const XWindowSituation& now);
    void putBack(const XWindowSituation& now, const XWindowRecord& earlier);
    void awaitAnswer(const XWindowSituation& now);
    void handleAnswer();
    [[nodiscard]] bool isSettling(xcb_window_t window, std::chrono::milliseconds forAtMost);
    [[nodiscard]] bool isRecent() const;
    void handlePropertyChange(const xcb_generic_event_t& event);
    void handleConfiguration(const xcb_generic_event_t& event);
    void handleEnd(const xcb_generic_event_t& event);
    /// None for a window that has gone, that somebody has taken again, or that goes back into its states.
    [[nodiscard]] std::optional<XWindowSituation> readToPlace();
    void settle();
    void look();
    void untile(const XWindowSituation& now);
    [[nodiscard]] bool prepareAgain(const XWindowSituation& now);
    [[nodiscard]] bool isTile(const PixelRect& frame) const;
    [[nodiscard]] bool isTiledSince(const XWindowRecord& first) const;

    XConnection* connection_;
    Times times_;
    MainLoop* mainLoop_;
    XWindowSteering* steering_;
    WindowManagerEcho echo_;
    std::unique_ptr<Current> current_;
    std::unique_ptr<XEventPump::Subscription> propertyChanges_;
    std::unique_ptr<XEventPump::Subscription> configurations_;
    std::unique_ptr<XEventPump::Subscription> ends_;
};

} // namespace tarvex
