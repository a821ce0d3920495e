#include "Platform/Linux/X11/KeyboardLoan.h"

namespace tarvex {

KeyboardLoan::KeyboardLoan(XConnection& connection) : connection_(&connection) {
    borrowAnew();
}

void KeyboardLoan::borrowAnew() {
    const auto focus = connection_->take(xcb_get_input_focus_reply, xcb_get_input_focus(connection_->get()));
    if (focus) {
        formerHolder_ = focus->focus;
    }
}

void KeyboardLoan::give(xcb_window_t window) {
    setFocus(window);
}

void KeyboardLoan::giveBack(xcb_window_t borrower) {
    const auto focus = connection_->take(xcb_get_input_focus_reply, xcb_get_input_focus(connection_->get()));
    if (focus && focus->focus == borrower) {
        setFocus(formerHolder_);
    }
}

void KeyboardLoan::setFocus(xcb_window_t window) {
    // No time of an event is at hand: the program decides, not the user's last click.
    connection_->discard(xcb_set_input_focus_checked(connection_->get(), XCB_INPUT_FOCUS_POINTER_ROOT, window,
                                                     XCB_CURRENT_TIME));
}

} // namespace tarvex
