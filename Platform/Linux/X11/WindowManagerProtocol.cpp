#include "Platform/Linux/X11/WindowManagerProtocol.h"

#include "Platform/Linux/X11/XSizeStates.h"

#include <algorithm>

namespace tarvex {

namespace {

constexpr std::uint32_t withdrawnState = 0;
constexpr std::uint32_t iconicState = 3;

} // namespace

void sendToWindowManager(XConnection& connection, xcb_window_t about, xcb_atom_t type,
                         const std::array<std::uint32_t, 5>& data) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = about;
    message.type = type;
    std::copy(data.begin(), data.end(), message.data.data32);
    connection.discard(
        xcb_send_event_checked(connection.get(), 0, connection.root(),
                               XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                               reinterpret_cast<const char*>(&message)));
}

bool hasWindowManager(const XReply<xcb_get_window_attributes_reply_t>& root) {
    // It leaves its properties behind when it dies, but not the redirection, which is its office.
    return root && (root->all_event_masks & XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT) != 0;
}

bool isManaged(const std::vector<std::uint32_t>& windowState) {
    return !windowState.empty() && windowState.front() != withdrawnState;
}

bool isIconic(const std::vector<std::uint32_t>& windowState) {
    return !windowState.empty() && windowState.front() == iconicState;
}

std::optional<bool> isPutAway(XConnection& connection, const std::vector<std::uint32_t>& windowState,
                              const std::vector<std::uint32_t>& sizeState) {
    if (!isManaged(windowState)) {
        return std::nullopt;
    }
    return isIconic(windowState) && !sizeStatesOf(connection, sizeState).shaded;
}

std::optional<bool> isPutAway(XConnection& connection, xcb_window_t window) {
    const auto windowCookie = requestPropertyWords(connection, window, connection.atom("WM_STATE"));
    const auto sizeCookie = requestPropertyWords(connection, window, connection.atom("_NET_WM_STATE"));
    const XPropertyWords windowState = takePropertyWords(connection, windowCookie);
    const XPropertyWords sizeState = takePropertyWords(connection, sizeCookie);
    return isPutAway(connection, windowState.words, sizeState.words);
}

} // namespace tarvex
