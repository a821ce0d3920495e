#pragma once

#include "Platform/Linux/X11/XConnection.h"
#include "Platform/Linux/X11/XEventPump.h"

#include <functional>
#include <memory>
#include <vector>

namespace tarvex {

/// Hears when the window manager has come to what this program sent it before, however long that takes. It
/// asks which borders the window manager would draw around a window that is never shown (Extended Window
/// Manager Hints, _NET_REQUEST_FRAME_EXTENTS), or, where it does not say that, which version of the
/// conventions it keeps to (ICCCM 4.3). One that answers neither is never heard of.
class WindowManagerEcho {
public:
    /// Waits for the server, once. The connection and the pump must outlive the echo.
    /// @param heard called at the answer to the latest question
    WindowManagerEcho(XConnection& connection, XEventPump& pump, std::function<void()> heard);

    WindowManagerEcho(const WindowManagerEcho&) = delete;
    WindowManagerEcho& operator=(const WindowManagerEcho&) = delete;
    WindowManagerEcho(WindowManagerEcho&&) = delete;
    WindowManagerEcho& operator=(WindowManagerEcho&&) = delete;
    ~WindowManagerEcho();

    /// Asks, without flushing. Answers to earlier questions are no longer heard.
    /// @param tellsBorders whether the window manager says that it answers the first question
    void ask(bool tellsBorders);

    /// Hears nothing until the next question.
    void forget() { current_ = XCB_WINDOW_NONE; }

private:
    struct Asker {
        xcb_window_t window;
        bool isWaiting;
    };

    [[nodiscard]] Asker& chooseAsker();
    void handleProperty(const xcb_property_notify_event_t& event);

    XConnection* connection_;
    std::function<void()> heard_;
    xcb_atom_t bordersQuestion_;
    xcb_atom_t versionQuestion_;
    xcb_atom_t office_;
    /// A question that is still open is not asked again with the same window, or its answer would pass for
    /// the other's. Nor does a window go: of an answer for one that has gone, window managers can die.
    std::vector<Asker> askers_;
    /// The one that the latest question was asked with.
    xcb_window_t current_ = XCB_WINDOW_NONE;
    std::unique_ptr<XEventPump::Subscription> subscription_;
};

} // namespace tarvex
