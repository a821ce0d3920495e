#include "Platform/Linux/X11/XWindowActivation.h"

#include "Platform/Linux/X11/EventMask.h"

#include <algorithm>

namespace tarvex {

namespace {

// Values of the window manager specification and of ICCCM.
constexpr std::uint32_t sourcePager = 2;
constexpr std::uint32_t stateRemove = 0;
constexpr std::uint32_t allDesktops = 0xFFFFFFFF;
constexpr std::uint32_t withdrawnState = 0;
constexpr std::uint32_t iconicState = 3;

constexpr std::uint32_t wantedEvents = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;

} // namespace

XWindowActivation::XWindowActivation(XConnection& connection, XEventPump& pump)
    : connection_(&connection), atoms_(internAtoms(connection)) {
    subscriptions_.push_back(pump.subscribe(XCB_PROPERTY_NOTIFY, [this](const xcb_generic_event_t& event) {
        handleProperty(reinterpret_cast<const xcb_property_notify_event_t&>(event));
    }));
    subscriptions_.push_back(pump.subscribe(XCB_MAP_NOTIFY, [this](const xcb_generic_event_t& event) {
        handleMap(reinterpret_cast<const xcb_map_notify_event_t&>(event));
    }));
}

XWindowActivation::Atoms XWindowActivation::internAtoms(XConnection& connection) {
    connection.internAtoms({"_NET_ACTIVE_WINDOW", "_NET_WM_USER_TIME", "WM_STATE", "_NET_WM_STATE",
                            "_NET_WM_STATE_SHADED", "_NET_WM_DESKTOP", "_NET_CURRENT_DESKTOP",
                            "_TARVEX_SERVER_TIME"});
    return {.activeWindow = connection.atom("_NET_ACTIVE_WINDOW"),
            .userTime = connection.atom("_NET_WM_USER_TIME"),
            .managedState = connection.atom("WM_STATE"),
            .state = connection.atom("_NET_WM_STATE"),
            .shaded = connection.atom("_NET_WM_STATE_SHADED"),
            .desktop = connection.atom("_NET_WM_DESKTOP"),
            .currentDesktop = connection.atom("_NET_CURRENT_DESKTOP"),
            .serverTime = connection.atom("_TARVEX_SERVER_TIME")};
}

void XWindowActivation::activate(xcb_window_t window) {
    window_ = window;
    time_ = XCB_CURRENT_TIME;
    addEventMask(*connection_, window, wantedEvents);
    // A property that nothing is added to brings an event with the server's time (ICCCM 2.1).
    connection_->discard(xcb_change_property_checked(connection_->get(), XCB_PROP_MODE_APPEND, window,
                                                     atoms_.serverTime, XCB_ATOM_INTEGER, 32, 0, nullptr));
    connection_->flush();
}

void XWindowActivation::cancel(xcb_window_t window) {
    if (window_ == window) {
        window_ = XCB_WINDOW_NONE;
    }
}

void XWindowActivation::handleProperty(const xcb_property_notify_event_t& event) {
    if (event.window != window_) {
        return;
    }
    if (event.atom == atoms_.serverTime) {
        noteTime(event.time);
        proceed();
    } else if (event.atom == atoms_.managedState) {
        proceed();
    }
}

void XWindowActivation::handleMap(const xcb_map_notify_event_t& event) {
    if (event.window == window_) {
        proceed();
    }
}

void XWindowActivation::noteTime(xcb_timestamp_t time) {
    time_ = time;
    connection_->discard(xcb_change_property_checked(connection_->get(), XCB_PROP_MODE_REPLACE, window_,
                                                     atoms_.userTime, XCB_ATOM_CARDINAL, 32, 1, &time_));
}

void XWindowActivation::proceed() {
    if (time_ == XCB_CURRENT_TIME) {
        return;
    }
    const Situation situation = read();
    if (!situation.exists) {
        window_ = XCB_WINDOW_NONE;
    } else if (situation.hasManager && situation.isManaged) {
        askManager(situation);
        // An unmapped window in ICCCM's NormalState is shaded, or the state is left over from the last time
        // it was shown. The latter is asked for again when it is mapped.
        if (situation.isViewable || situation.isIconic) {
            window_ = XCB_WINDOW_NONE;
        }
    } else if (!situation.hasManager && situation.isViewable) {
        takeFocus();
        window_ = XCB_WINDOW_NONE;
    }
}

XWindowActivation::Situation XWindowActivation::read() {
    xcb_connection_t* const server = connection_->get();
    const auto attributesCookie = xcb_get_window_attributes(server, window_);
    const auto rootCookie = xcb_get_window_attributes(server, connection_->root());
    const auto managedCookie = requestPropertyWords(*connection_, window_, atoms_.managedState);
    const auto stateCookie = requestPropertyWords(*connection_, window_, atoms_.state);
    const auto desktopCookie = requestPropertyWords(*connection_, window_, atoms_.desktop);
    const auto currentCookie = requestPropertyWords(*connection_, connection_->root(), atoms_.currentDesktop);
    const auto attributes = connection_->take(xcb_get_window_attributes_reply, attributesCookie);
    const auto root = connection_->take(xcb_get_window_attributes_reply, rootCookie);
    const auto managed = takePropertyWords(*connection_, managedCookie).words;
    const auto states = takePropertyWords(*connection_, stateCookie).words;

    Situation situation;
    situation.exists = static_cast<bool>(attributes);
    situation.isViewable = attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
    situation.hasManager = root && (root->all_event_masks & XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT) != 0;
    situation.isManaged = !managed.empty() && managed.front() != withdrawnState;
    situation.isIconic = !managed.empty() && managed.front() == iconicState;
    situation.isShaded = std::find(states.begin(), states.end(), atoms_.shaded) != states.end();
    situation.desktop = takePropertyWords(*connection_, desktopCookie).words;
    situation.currentDesktop = takePropertyWords(*connection_, currentCookie).words;
    return situation;
}

void XWindowActivation::askManager(const Situation& situation) {
    // Whoever calls a window wants it here, not to be taken to where it was left.
    if (!situation.desktop.empty() && !situation.currentDesktop.empty() &&
        situation.desktop.front() != allDesktops &&
        situation.desktop.front() != situation.currentDesktop.front()) {
        send(atoms_.desktop, situation.currentDesktop.front(), sourcePager, 0, 0);
    }
    if (situation.isShaded) {
        send(atoms_.state, stateRemove, atoms_.shaded, XCB_ATOM_NONE, sourcePager);
    }
    send(atoms_.activeWindow, sourcePager, time_, XCB_WINDOW_NONE, 0);
}

void XWindowActivation::takeFocus() {
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    connection_->discard(
        xcb_configure_window_checked(connection_->get(), window_, XCB_CONFIG_WINDOW_STACK_MODE, &above));
    connection_->discard(
        xcb_set_input_focus_checked(connection_->get(), XCB_INPUT_FOCUS_POINTER_ROOT, window_, time_));
}

void XWindowActivation::send(xcb_atom_t type, std::uint32_t first, std::uint32_t second, std::uint32_t third,
                             std::uint32_t fourth) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window_;
    message.type = type;
    message.data.data32[0] = first;
    message.data.data32[1] = second;
    message.data.data32[2] = third;
    message.data.data32[3] = fourth;
    connection_->discard(
        xcb_send_event_checked(connection_->get(), 0, connection_->root(),
                               XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                               reinterpret_cast<const char*>(&message)));
}

} // namespace tarvex
