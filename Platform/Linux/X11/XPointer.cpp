#include "Platform/Linux/X11/XPointer.h"

#include <optional>

namespace tarvex {

XPointer::XPointer(XConnection& connection, DesktopLayoutProvider& layout, XPressRecord* presses)
    : connection_(&connection), layout_(&layout), presses_(presses), outermost_(connection) {}

Point XPointer::mouseLocation() {
    if (holds_ == 0) {
        refresh();
    }
    return layout_->layout().screenPointOfPixel(snapshot_.x, snapshot_.y);
}

const XPointer::Snapshot& XPointer::refresh() {
    sighting_.reset();
    keep(connection_->take(xcb_query_pointer_reply, requestPointer()));
    return snapshot_;
}

const XPointer::Snapshot& XPointer::refreshAtPress(xcb_timestamp_t time) {
    sighting_.reset();
    const xcb_window_t pressed = presses_ == nullptr ? lookNow() : lookAtPress(*presses_, time);
    if (pressed == XCB_WINDOW_NONE) {
        return snapshot_;
    }
    sighting_ = std::make_shared<XWindowSighting>(*connection_, pressed);
    if (sighting_->isInputOnly()) {
        const xcb_window_t seen = outermost_.behind(pressed, snapshot_.x, snapshot_.y);
        sighting_ = seen == XCB_WINDOW_NONE ? nullptr : std::make_shared<XWindowSighting>(*connection_, seen);
    }
    return snapshot_;
}

void XPointer::beginPresses() {
    if (presses_ != nullptr) {
        presses_->begin();
    }
}

void XPointer::endPresses() {
    if (presses_ != nullptr) {
        presses_->end();
    }
}

void XPointer::passOverPress(xcb_timestamp_t time) {
    if (presses_ != nullptr) {
        presses_->passOver(time);
    }
}

xcb_window_t XPointer::lookNow() {
    const auto reply = connection_->take(xcb_query_pointer_reply, requestPointer());
    keep(reply);
    return reply ? reply->child : xcb_window_t{XCB_WINDOW_NONE};
}

xcb_window_t XPointer::lookAtPress(XPressRecord& presses, xcb_timestamp_t time) {
    auto place = presses.placeOfPress(time);
    if (!place) {
        // An answer of the server brings it along.
        const xcb_window_t pressed = lookNow();
        place = presses.placeOfPress(time);
        if (!place) {
            return pressed;
        }
    }
    // Both in one go: the window manager may be moving the window from the one place to the other.
    const xcb_window_t root = connection_->root();
    const auto thereCookie = xcb_translate_coordinates(connection_->get(), root, root, place->x, place->y);
    const auto nowCookie = requestPointer();
    const auto there = connection_->take(xcb_translate_coordinates_reply, thereCookie);
    const auto now = connection_->take(xcb_query_pointer_reply, nowCookie);
    keep(now);
    if (!there || !now) {
        return XCB_WINDOW_NONE;
    }
    snapshot_.x = place->x;
    snapshot_.y = place->y;
    const PixelPlace placeNow{now->root_x, now->root_y};
    // With the button up it is another pointer that pressed, or the click is over.
    const bool isHeld = (now->mask & XCB_KEY_BUT_MASK_BUTTON_1) != 0;
    return *place == placeNow || !isHeld
               ? there->child
               : outermost_.pressedOf({*place, there->child}, {placeNow, now->child});
}

xcb_query_pointer_cookie_t XPointer::requestPointer() {
    return xcb_query_pointer(connection_->get(), connection_->root());
}

void XPointer::keep(const XReply<xcb_query_pointer_reply_t>& pointer) {
    if (!pointer) {
        return;
    }
    snapshot_.isOnScreen = pointer->same_screen != 0;
    snapshot_.mask = pointer->mask;
    if (snapshot_.isOnScreen) {
        snapshot_.x = pointer->root_x;
        snapshot_.y = pointer->root_y;
    }
}

} // namespace tarvex
