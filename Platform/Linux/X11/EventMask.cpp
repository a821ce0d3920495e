#include "Platform/Linux/X11/EventMask.h"

namespace tarvex {

void addEventMask(XConnection& connection, xcb_window_t window, std::uint32_t mask) {
    const auto attributes =
        connection.take(xcb_get_window_attributes_reply, xcb_get_window_attributes(connection.get(), window));
    if (!attributes || (attributes->your_event_mask & mask) == mask) {
        return;
    }
    const std::uint32_t united = attributes->your_event_mask | mask;
    connection.discard(
        xcb_change_window_attributes_checked(connection.get(), window, XCB_CW_EVENT_MASK, &united));
}

} // namespace tarvex
