#include "Platform/Linux/X11/KeyboardLoan.h"

#include "Platform/Linux/X11/XClientResources.h"

#include <cstddef>
#include <ranges>

namespace tarvex {

namespace {

/// Of those that come and go while the keyboard is lent, only the latest are worth remembering.
constexpr std::size_t maxFormerHolders = 16;

} // namespace

KeyboardLoan::KeyboardLoan(XConnection& connection)
    : connection_(&connection),
      managerCheck_(connection.atom("_NET_SUPPORTING_WM_CHECK")),
      formerHolders_{holder().value_or(XCB_INPUT_FOCUS_POINTER_ROOT)} {}

std::optional<xcb_window_t> KeyboardLoan::holder() {
    const auto focus = connection_->take(xcb_get_input_focus_reply, xcb_get_input_focus(connection_->get()));
    return focus ? std::optional(focus->focus) : std::nullopt;
}

void KeyboardLoan::borrowFrom(xcb_window_t holder) {
    if (holder == XCB_INPUT_FOCUS_NONE || holder == XCB_INPUT_FOCUS_POINTER_ROOT ||
        isWindowManagers(holder)) {
        return;
    }
    std::erase(formerHolders_, holder);
    if (formerHolders_.size() >= maxFormerHolders) {
        formerHolders_.erase(formerHolders_.begin());
    }
    formerHolders_.push_back(holder);
}

void KeyboardLoan::give(xcb_window_t window) {
    connection_->discard(setFocus(window));
}

void KeyboardLoan::giveBack(xcb_window_t borrower) {
    if (holder() != borrower) {
        return;
    }
    for (const xcb_window_t former : std::views::reverse(formerHolders_)) {
        // The server refuses a window that has gone or is hidden.
        if (connection_->check(setFocus(former)) == 0) {
            return;
        }
    }
}

bool KeyboardLoan::isWindowManagers(xcb_window_t window) {
    const XPropertyWords manager = readPropertyWords(*connection_, connection_->root(), managerCheck_);
    return !manager.words.empty() &&
           XClientResources(connection_->get()).isSameClient(window, manager.words.front());
}

xcb_void_cookie_t KeyboardLoan::setFocus(xcb_window_t window) {
    // No time of an event is at hand: the program decides, not the user's last click.
    return xcb_set_input_focus_checked(connection_->get(), XCB_INPUT_FOCUS_POINTER_ROOT, window,
                                       XCB_CURRENT_TIME);
}

} // namespace tarvex
