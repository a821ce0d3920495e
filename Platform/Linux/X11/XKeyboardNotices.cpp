#include "Platform/Linux/X11/XKeyboardNotices.h"

#include "Platform/Linux/X11/XkbProtocol.h"

#include <utility>

namespace tarvex {

XKeyboardNotices::XKeyboardNotices(XConnection& connection, XEventPump& pump, std::function<void()> changed)
    : changed_(std::move(changed)) {
    coreNotices_ = pump.subscribe(XCB_MAPPING_NOTIFY, [this](const xcb_generic_event_t& event) {
        if (reinterpret_cast<const xcb_mapping_notify_event_t&>(event).request != XCB_MAPPING_POINTER) {
            changed_();
        }
    });
    const xcb_query_extension_reply_t* extension = connection.extension(xcb_xkb_id);
    if (extension == nullptr) {
        return;
    }
    xkbNotices_ = pump.subscribe(extension->first_event, [this](const xcb_generic_event_t& event) {
        // The kind of event stands where core events have their detail.
        const auto& notice = reinterpret_cast<const xcb_xkb_map_notify_event_t&>(event);
        if (notice.xkbType == XCB_XKB_MAP_NOTIFY || notice.xkbType == XCB_XKB_NEW_KEYBOARD_NOTIFY) {
            changed_();
        }
    });
    select(connection);
}

void XKeyboardNotices::select(XConnection& connection) {
    // The server does not send its core notices to clients that know the extension, as others on this
    // connection may have said.
    static_cast<void>(connection.take(
        xcb_xkb_use_extension_reply,
        xcb_xkb_use_extension(connection.get(), XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION)));
    constexpr std::uint16_t events = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    constexpr std::uint16_t mapParts =
        XCB_XKB_MAP_PART_KEY_TYPES | XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
    xcb_xkb_select_events_details_t details{};
    details.affectNewKeyboard = XCB_XKB_NKN_DETAIL_KEYCODES;
    details.newKeyboardDetails = XCB_XKB_NKN_DETAIL_KEYCODES;
    // The selection serves everybody on the connection, and stays: changes are rare.
    connection.discard(xcb_xkb_select_events_aux_checked(connection.get(), XCB_XKB_ID_USE_CORE_KBD, events, 0,
                                                         0, mapParts, mapParts, &details));
    connection.flush();
}

} // namespace tarvex
