#include "Platform/Linux/X11/KeyboardLoan.h"

#include "Platform/Linux/X11/WindowManagerProtocol.h"
#include "Platform/Linux/X11/XClientResources.h"
#include "Platform/Linux/X11/XWindowTree.h"

#include <algorithm>
#include <cstddef>
#include <ranges>

namespace tarvex {

namespace {

/// Of those that come and go while the keyboard is lent, only the latest are worth remembering.
constexpr std::size_t maxFormerHolders = 16;

/// Window trees are shallow.
constexpr int maxDepth = 64;

/// Some window managers wrap the window in one more within the frame.
constexpr int frameLevels = 2;

bool isNoWindow(xcb_window_t holder) {
    return holder == XCB_INPUT_FOCUS_NONE || holder == XCB_INPUT_FOCUS_POINTER_ROOT;
}

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
    if (isNoWindow(holder)) {
        return;
    }
    std::erase(formerHolders_, holder);
    if (isWindowManagersOwn(holder)) {
        std::erase_if(formerHolders_, isNoWindow);
        formerHolders_.insert(formerHolders_.begin(), holder);
        return;
    }
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
        // The server refuses a window that has gone or is not mapped.
        if (!isOutOfSight(former) && connection_->check(setFocus(former)) == 0) {
            return;
        }
    }
}

bool KeyboardLoan::isWindowManagersOwn(xcb_window_t window) {
    const XPropertyWords manager = readPropertyWords(*connection_, connection_->root(), managerCheck_);
    if (manager.words.empty() ||
        !XClientResources(connection_->get()).isSameClient(window, manager.words.front())) {
        return false;
    }
    // The announcement of one that died stays (Extended Window Manager Hints, _NET_SUPPORTING_WM_CHECK), and
    // its number goes to another client.
    const XPropertyWords self = readPropertyWords(*connection_, manager.words.front(), managerCheck_);
    return self.words == manager.words && !holdsOthersWindow(window, frameLevels);
}

// As the frames do that some window managers give the keyboard to in place of a shaded window.
bool KeyboardLoan::holdsOthersWindow(xcb_window_t window, int levels) {
    if (levels == 0) {
        return false;
    }
    const XClientResources resources(connection_->get());
    return std::ranges::any_of(readChildren(*connection_, window), [&](xcb_window_t child) {
        return !resources.isSameClient(child, window) || holdsOthersWindow(child, levels - 1);
    });
}

// The holder may be a part of the window that the window manager looks after.
bool KeyboardLoan::isOutOfSight(xcb_window_t window) {
    for (int depth = 0; depth < maxDepth && !isNoWindow(window); ++depth) {
        if (const auto isAway = isPutAway(*connection_, window)) {
            return *isAway;
        }
        const auto tree = connection_->take(xcb_query_tree_reply, xcb_query_tree(connection_->get(), window));
        window = tree ? tree->parent : xcb_window_t{XCB_WINDOW_NONE};
    }
    return false;
}

xcb_void_cookie_t KeyboardLoan::setFocus(xcb_window_t window) {
    // No time of an event is at hand: the program decides, not the user's last click.
    return xcb_set_input_focus_checked(connection_->get(), XCB_INPUT_FOCUS_POINTER_ROOT, window,
                                       XCB_CURRENT_TIME);
}

} // namespace tarvex
