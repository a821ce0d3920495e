#include "Platform/Linux/X11/XSelectionWatch.h"

#include <xcb/xfixes.h>

#include <cstdint>
#include <string>
#include <utility>

namespace tarvex {

XSelectionWatch::XSelectionWatch(XConnection& connection, XEventPump& pump, std::string_view prefix,
                                 OwnerHandler handler)
    : connection_(&connection),
      selection_(connection.atom(std::string(prefix) + std::to_string(connection.screenNumber()))),
      handler_(std::move(handler)) {
    const auto* extension = connection.extension(xcb_xfixes_id);
    // The server takes no other request of this extension before the one for its version.
    if (extension == nullptr ||
        !connection.take(xcb_xfixes_query_version_reply, xcb_xfixes_query_version(connection.get(), 5, 0))) {
        return;
    }
    connection.discard(xcb_xfixes_select_selection_input_checked(
        connection.get(), connection.root(), selection_,
        XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
            XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
            XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE));
    const auto type = static_cast<std::uint8_t>(extension->first_event + XCB_XFIXES_SELECTION_NOTIFY);
    subscription_ = pump.subscribe(type, [this](const xcb_generic_event_t& event) {
        const auto& notification = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
        if (notification.selection == selection_) {
            handler_(notification.owner);
        }
    });
}

bool XSelectionWatch::hasOwner() {
    const auto reply = connection_->take(xcb_get_selection_owner_reply,
                                         xcb_get_selection_owner(connection_->get(), selection_));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

} // namespace tarvex
