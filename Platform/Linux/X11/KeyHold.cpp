#include "Platform/Linux/X11/KeyHold.h"

#include "Platform/Linux/X11/OverlayParking.h"

#include <utility>

namespace tarvex {

KeyHold::KeyHold(XConnection& connection, XEventPump& pump, xcb_keycode_t key)
    : connection_(&connection), key_(key) {
    makeWindow();
    // Held first: a release after the question about the key is then told.
    if (!grab() || !isDown()) {
        letGo();
        return;
    }
    releases_ = pump.subscribe(XCB_KEY_RELEASE, [this](const xcb_generic_event_t& event) {
        handleRelease(reinterpret_cast<const xcb_key_release_event_t&>(event));
    });
}

KeyHold::~KeyHold() {
    letGo();
}

void KeyHold::makeWindow() {
    window_ = xcb_generate_id(connection_->get());
    xcb_create_window_value_list_t values{};
    values.override_redirect = 1;
    connection_->discard(xcb_create_window_aux_checked(
        connection_->get(), 0, window_, connection_->root(), overlayParking.x, overlayParking.y,
        overlayParking.width, overlayParking.height, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
        XCB_CW_OVERRIDE_REDIRECT, &values));
    setOverlayProperties(*connection_, window_, overlayTitle);
    connection_->discard(xcb_map_window_checked(connection_->get(), window_));
    lowerToBottom(*connection_, window_);
}

bool KeyHold::grab() {
    const auto reply = connection_->take(xcb_grab_keyboard_reply,
                                         xcb_grab_keyboard(connection_->get(), 0, window_, XCB_CURRENT_TIME,
                                                           XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
}

bool KeyHold::isDown() {
    const auto keys = connection_->take(xcb_query_keymap_reply, xcb_query_keymap(connection_->get()));
    return keys && (keys->keys[key_ / 8] >> (key_ % 8) & 1) != 0;
}

void KeyHold::letGo() {
    if (window_ != XCB_WINDOW_NONE) {
        connection_->discard(
            xcb_destroy_window_checked(connection_->get(), std::exchange(window_, XCB_WINDOW_NONE)));
    }
}

void KeyHold::handleRelease(const xcb_key_release_event_t& event) {
    // A key that repeats may seem to be let go each time.
    if (!isOver() && event.event == window_ && event.detail == key_ && !isDown()) {
        letGo();
    }
}

} // namespace tarvex
