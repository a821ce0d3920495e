#pragma once

#include "Platform/Linux/X11/XConnection.h"

#include <cstdint>

namespace tarvex {

/// Takes the keyboard for a window that no window manager gives it to, and brings it back to the window that
/// had it before.
class KeyboardLoan {
public:
    /// Asks the server who has the keyboard, and waits for the answer. The connection must
    /// outlive the loan.
    explicit KeyboardLoan(XConnection& connection);

    KeyboardLoan(const KeyboardLoan&) = delete;
    KeyboardLoan& operator=(const KeyboardLoan&) = delete;
    KeyboardLoan(KeyboardLoan&&) = delete;
    KeyboardLoan& operator=(KeyboardLoan&&) = delete;
    ~KeyboardLoan() = default;

    /// Has the window that has the keyboard now be the one that gets it back. Waits for the server.
    void borrowAnew();

    /// Gives the keyboard to the window, which must be shown. Does not wait.
    void give(xcb_window_t window);

    /// Brings the keyboard back if the borrower still has it; a former holder that has gone leaves it to the
    /// window under the pointer. Waits for the server.
    void giveBack(xcb_window_t borrower);

private:
    void setFocus(xcb_window_t window);

    XConnection* connection_;
    xcb_window_t formerHolder_ = XCB_INPUT_FOCUS_POINTER_ROOT;
};

} // namespace tarvex
