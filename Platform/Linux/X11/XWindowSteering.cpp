#include "Platform/Linux/X11/XWindowSteering.h"

#include <algorithm>

namespace tarvex {

namespace {

// Values of the window manager specification.
constexpr std::uint32_t sourcePager = 2;
constexpr std::uint32_t stateRemove = 0;
constexpr std::uint32_t moveCancel = 11;
constexpr unsigned firstValueBit = 8;
constexpr unsigned sourceShift = 12;

bool isAmong(const std::vector<std::uint32_t>& atoms, xcb_atom_t atom) {
    return std::find(atoms.begin(), atoms.end(), atom) != atoms.end();
}

} // namespace

XWindowSteering::XWindowSteering(XConnection& connection)
    : connection_(&connection), atoms_(internAtoms(connection)) {}

XWindowSteering::Atoms XWindowSteering::internAtoms(XConnection& connection) {
    connection.internAtoms({"_NET_MOVERESIZE_WINDOW", "_NET_WM_MOVERESIZE", "_NET_SUPPORTED", "_NET_WM_STATE",
                            "_NET_WM_STATE_MAXIMIZED_VERT", "_NET_WM_STATE_MAXIMIZED_HORZ",
                            "_NET_WM_STATE_FULLSCREEN", "_NET_WM_STATE_SHADED", "_NET_FRAME_EXTENTS",
                            "_GTK_FRAME_EXTENTS"});
    return {.moveResize = connection.atom("_NET_MOVERESIZE_WINDOW"),
            .interactiveMove = connection.atom("_NET_WM_MOVERESIZE"),
            .supported = connection.atom("_NET_SUPPORTED"),
            .state = connection.atom("_NET_WM_STATE"),
            .maximizedVertically = connection.atom("_NET_WM_STATE_MAXIMIZED_VERT"),
            .maximizedHorizontally = connection.atom("_NET_WM_STATE_MAXIMIZED_HORZ"),
            .fullScreen = connection.atom("_NET_WM_STATE_FULLSCREEN"),
            .shaded = connection.atom("_NET_WM_STATE_SHADED"),
            .decoration = connection.atom("_NET_FRAME_EXTENTS"),
            .invisible = connection.atom("_GTK_FRAME_EXTENTS")};
}

XWindowSituation XWindowSteering::read(xcb_window_t window) {
    xcb_connection_t* const server = connection_->get();
    XWindowGeometryRequest geometry(*connection_, window);
    const auto stateCookie = requestPropertyWords(*connection_, window, atoms_.state);
    const auto supportedCookie = requestPropertyWords(*connection_, connection_->root(), atoms_.supported);
    const auto rootCookie = xcb_get_window_attributes(server, connection_->root());
    const auto pointerCookie = xcb_query_pointer(server, connection_->root());

    XWindowSituation situation;
    situation.geometry = geometry.take();
    situation.states = takePropertyWords(*connection_, stateCookie).words;
    const XPropertyWords supported = takePropertyWords(*connection_, supportedCookie);
    const auto root = connection_->take(xcb_get_window_attributes_reply, rootCookie);
    const auto pointer = connection_->take(xcb_query_pointer_reply, pointerCookie);

    // A window manager leaves its properties behind when it dies, but not the redirection, which is its
    // office.
    situation.hasManager = root && (root->all_event_masks & XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT) != 0;
    situation.managerPlacesWindows = situation.hasManager && isAmong(supported.words, atoms_.moveResize);
    situation.managerCancelsMoves = situation.hasManager && isAmong(supported.words, atoms_.interactiveMove);
    situation.isButtonDown = pointer && (pointer->mask & XCB_KEY_BUT_MASK_BUTTON_1) != 0;
    return situation;
}

bool XWindowSteering::isMaximized(const XWindowSituation& situation) const {
    return isAmong(situation.states, atoms_.maximizedVertically) ||
           isAmong(situation.states, atoms_.maximizedHorizontally);
}

bool XWindowSteering::isSizedByManager(const XWindowSituation& situation) const {
    return isMaximized(situation) || isAmong(situation.states, atoms_.fullScreen) ||
           isAmong(situation.states, atoms_.shaded);
}

bool XWindowSteering::isBorderProperty(xcb_atom_t property) const {
    return property == atoms_.decoration || property == atoms_.invisible;
}

void XWindowSteering::cancelInteractiveMove(xcb_window_t window, const XWindowSituation& situation) {
    if (situation.isButtonDown && situation.managerCancelsMoves) {
        send(window, atoms_.interactiveMove, {0, 0, moveCancel, XCB_BUTTON_INDEX_1, sourcePager});
    }
}

void XWindowSteering::restore(xcb_window_t window, const XWindowSituation& situation) {
    if (!situation.hasManager) {
        return;
    }
    const auto remove = [&](xcb_atom_t first, xcb_atom_t second) {
        send(window, atoms_.state, {stateRemove, first, second, sourcePager, 0});
    };
    if (isAmong(situation.states, atoms_.fullScreen)) {
        remove(atoms_.fullScreen, XCB_ATOM_NONE);
    }
    if (isMaximized(situation)) {
        remove(atoms_.maximizedVertically, atoms_.maximizedHorizontally);
    }
    if (isAmong(situation.states, atoms_.shaded)) {
        remove(atoms_.shaded, XCB_ATOM_NONE);
    }
}

void XWindowSteering::place(xcb_window_t window, const XWindowSituation& situation,
                            const XWindowTarget& target) {
    // With NorthWest gravity the position is that of the decoration's outer corner, the size the client's.
    const XWindowGeometry& geometry = situation.geometry;
    Values values;
    if (target.x && target.y) {
        values[0] = *target.x - geometry.invisible.left;
        values[1] = *target.y - geometry.invisible.top;
    }
    if (target.width && target.height) {
        values[2] = geometry.clientWidthFor(*target.width);
        values[3] = geometry.clientHeightFor(*target.height);
    }
    if (!situation.managerPlacesWindows) {
        configure(window, values);
        return;
    }
    std::array<std::uint32_t, 5> data{XCB_GRAVITY_NORTH_WEST | sourcePager << sourceShift};
    std::size_t index = 0;
    for (const std::optional<int>& value : values) {
        if (value) {
            data[0] |= 1U << (firstValueBit + index);
            data[index + 1] = static_cast<std::uint32_t>(*value);
        }
        ++index;
    }
    send(window, atoms_.moveResize, data);
}

void XWindowSteering::configure(xcb_window_t window, const Values& values) {
    // The values that a configuration may carry begin with the four, in this order.
    std::uint16_t mask = 0;
    std::uint16_t bit = XCB_CONFIG_WINDOW_X;
    std::vector<std::uint32_t> list;
    for (const std::optional<int>& value : values) {
        if (value) {
            mask = static_cast<std::uint16_t>(mask | bit);
            list.push_back(static_cast<std::uint32_t>(*value));
        }
        bit = static_cast<std::uint16_t>(bit << 1);
    }
    connection_->discard(xcb_configure_window_checked(connection_->get(), window, mask, list.data()));
}

void XWindowSteering::send(xcb_window_t window, xcb_atom_t type, const std::array<std::uint32_t, 5>& data) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = type;
    std::copy(data.begin(), data.end(), message.data.data32);
    connection_->discard(
        xcb_send_event_checked(connection_->get(), 0, connection_->root(),
                               XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                               reinterpret_cast<const char*>(&message)));
}

} // namespace tarvex
