#pragma once

#include "Platform/Linux/X11/ButtonPressWatch.h"
#include "Platform/Linux/X11/KeyboardLoan.h"
#include "Platform/Linux/X11/XClientResources.h"
#include "Platform/Linux/X11/XConnection.h"
#include "Platform/Linux/X11/XEventPump.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <vector>

namespace tarvex {

/// Keeps the keyboard with a window that no window manager gives it to, until the user himself takes it
/// elsewhere: window managers give it to every window that is newly shown. Only a press of a button
/// elsewhere takes it away; the pointer's coming back, or a press on the window, brings it back. A managed
/// window of this program that has got the keyboard was asked for by the user: the window steps behind it,
/// and comes forward again with a press or when the other one goes. Where somebody else insists on having the
/// keyboard, it gives in for a while.
class KeyboardKeeper {
public:
    /// The connection, on whose root window SubstructureNotify must be selected, and the pump must outlive
    /// the keeper. Waits for the server.
    /// @param ownWindows those of other connections of this program
    KeyboardKeeper(XConnection& connection, XEventPump& pump, std::vector<XClientResources> ownWindows);

    KeyboardKeeper(const KeyboardKeeper&) = delete;
    KeyboardKeeper& operator=(const KeyboardKeeper&) = delete;
    KeyboardKeeper(KeyboardKeeper&&) = delete;
    KeyboardKeeper& operator=(KeyboardKeeper&&) = delete;
    ~KeyboardKeeper() = default;

    /// Gives the keyboard to the window, which must be shown.
    void take(xcb_window_t window);

    /// Another window, which must be shown, in place of the present one: it takes its place with the keyboard
    /// and behind others.
    void replace(xcb_window_t window);

    /// A button was pressed on the window. False when that did no more than bring the keyboard back. Waits
    /// for the server if it is elsewhere.
    [[nodiscard]] bool notePress();

    /// The pointer came onto the window. Waits for the server if the keyboard is elsewhere.
    void noteEntry();

    /// Once per turn: brings the keyboard back if it is to be. Waits for the server only if it was lost.
    void endTurn();

    /// False while the window lies behind another one of this program.
    [[nodiscard]] bool isInFront() const { return holder_ != Holder::ownWindow; }

    /// Brings the keyboard back to the window that had it, if the window still has it. Waits for the server.
    void giveBack();

private:
    using Clock = std::chrono::steady_clock;

    enum class Holder : std::uint8_t {
        window,
        /// One that the user has gone to.
        choice,
        /// A managed one of this program.
        ownWindow,
        /// One that does not let it go.
        rival,
    };

    void handleFocus(const xcb_focus_in_event_t& event);
    void noteStacking(const xcb_generic_event_t& event);
    void resolveLoss();
    void comeBack();
    void stepBehind(xcb_window_t ownWindow);
    void lieBehind();
    [[nodiscard]] bool isOwn(xcb_window_t window) const;
    /// The child of the root window that holds the window.
    [[nodiscard]] xcb_window_t findTopLevel(xcb_window_t window);
    [[nodiscard]] bool mayRetake();

    XConnection* connection_;
    std::vector<XClientResources> ownWindows_;
    KeyboardLoan loan_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
    Holder holder_ = Holder::window;
    bool isLost_ = false;
    /// The user has pressed a button elsewhere since he was last at the window.
    bool isUserElsewhere_ = false;
    /// What the window lies behind.
    xcb_window_t front_ = XCB_WINDOW_NONE;
    bool hasFrontMoved_ = false;
    bool hasFrontGone_ = false;
    std::vector<Clock::time_point> retakes_;
    ButtonPressWatch presses_;
    std::vector<std::unique_ptr<XEventPump::Subscription>> subscriptions_;
};

} // namespace tarvex
