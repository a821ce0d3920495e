#include "Platform/Linux/X11/XTrayWatch.h"

#include <xcb/xfixes.h>

#include <string>
#include <utility>

namespace tarvex {

XTrayWatch::XTrayWatch(XConnection& connection, XEventPump& pump, std::function<void()> changed)
    : connection_(&connection),
      changed_(std::move(changed)),
      selection_(connection.atom("_NET_SYSTEM_TRAY_S" + std::to_string(connection.screenNumber()))) {
    watchSelection(pump);
    const auto reply =
        connection.take(xcb_get_selection_owner_reply, xcb_get_selection_owner(connection.get(), selection_));
    hasTray_ = reply && reply->owner != XCB_WINDOW_NONE;
}

void XTrayWatch::watchSelection(XEventPump& pump) {
    const auto* extension = connection_->extension(xcb_xfixes_id);
    // The server takes no other request of this extension before the one for its version.
    if (extension == nullptr || !connection_->take(xcb_xfixes_query_version_reply,
                                                   xcb_xfixes_query_version(connection_->get(), 5, 0))) {
        return;
    }
    connection_->discard(xcb_xfixes_select_selection_input_checked(
        connection_->get(), connection_->root(), selection_,
        XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
            XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
            XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE));
    const auto type = static_cast<std::uint8_t>(extension->first_event + XCB_XFIXES_SELECTION_NOTIFY);
    subscription_ = pump.subscribe(type, [this](const xcb_generic_event_t& event) {
        const auto& notification = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
        if (notification.selection == selection_) {
            handleOwner(notification.owner);
        }
    });
}

void XTrayWatch::handleOwner(xcb_window_t owner) {
    update(false);
    update(owner != XCB_WINDOW_NONE);
}

void XTrayWatch::update(bool hasTray) {
    if (std::exchange(hasTray_, hasTray) != hasTray) {
        changed_();
    }
}

} // namespace tarvex
