#pragma once

#include "Platform/Linux/X11/XConnection.h"

#include <optional>
#include <vector>

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

    /// Who has the keyboard now; XCB_INPUT_FOCUS_NONE and XCB_INPUT_FOCUS_POINTER_ROOT stand for no window.
    /// None on a broken connection. Waits for the server.
    [[nodiscard]] std::optional<xcb_window_t> holder();

    /// Has that window be the first that gets the keyboard back. One of the window manager's own, which has
    /// the keyboard while there is nobody to give it to, is the last instead. No window leaves it with those
    /// before. Waits for the server.
    void borrowFrom(xcb_window_t holder);

    /// Gives the keyboard to the window, which must be shown. Does not wait.
    void give(xcb_window_t window);

    /// Brings the keyboard back to the latest of the former holders that is still in sight, if the borrower
    /// still has it. Waits for the server.
    void giveBack(xcb_window_t borrower);

private:
    [[nodiscard]] bool isWindowManagersOwn(xcb_window_t window);
    [[nodiscard]] bool holdsOthersWindow(xcb_window_t window, int levels);
    [[nodiscard]] bool isOutOfSight(xcb_window_t window);
    [[nodiscard]] xcb_void_cookie_t setFocus(xcb_window_t window);

    XConnection* connection_;
    xcb_atom_t managerCheck_;
    /// The latest last.
    std::vector<xcb_window_t> formerHolders_;
};

} // namespace tarvex
