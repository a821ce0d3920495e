#include "Platform/Linux/X11/XWindowActivation.h"

#include "Platform/Linux/X11/EventMask.h"
#include "Platform/Linux/X11/WindowManagerProtocol.h"
#include "Platform/Linux/X11/XAtoms.h"

namespace tarvex {

namespace {

using window_manager::sourcePager;
using window_manager::stateRemove;

/// Of _NET_WM_DESKTOP.
constexpr std::uint32_t allDesktops = 0xFFFFFFFF;

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
    return makeAtoms<Atoms>(connection, {{&Atoms::activeWindow, "_NET_ACTIVE_WINDOW"},
                                         {&Atoms::userTime, "_NET_WM_USER_TIME"},
                                         {&Atoms::managedState, "WM_STATE"},
                                         {&Atoms::state, "_NET_WM_STATE"},
                                         {&Atoms::shaded, "_NET_WM_STATE_SHADED"},
                                         {&Atoms::desktop, "_NET_WM_DESKTOP"},
                                         {&Atoms::currentDesktop, "_NET_CURRENT_DESKTOP"},
                                         {&Atoms::serverTime, "_TARVEX_SERVER_TIME"}});
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
    situation.hasManager = hasWindowManager(root);
    situation.isManaged = isManaged(managed);
    situation.isIconic = isIconic(managed);
    situation.isShaded = isAmong(states, atoms_.shaded);
    situation.desktop = takePropertyWords(*connection_, desktopCookie).words;
    situation.currentDesktop = takePropertyWords(*connection_, currentCookie).words;
    return situation;
}

void XWindowActivation::askManager(const Situation& situation) {
    // Whoever calls a window wants it here, not to be taken to where it was left.
    if (!situation.desktop.empty() && !situation.currentDesktop.empty() &&
        situation.desktop.front() != allDesktops &&
        situation.desktop.front() != situation.currentDesktop.front()) {
        send(atoms_.desktop, {situation.currentDesktop.front(), sourcePager});
    }
    if (situation.isShaded) {
        send(atoms_.state, {stateRemove, atoms_.shaded, XCB_ATOM_NONE, sourcePager});
    }
    send(atoms_.activeWindow, {sourcePager, time_, XCB_WINDOW_NONE});
}

void XWindowActivation::takeFocus() {
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    connection_->discard(
        xcb_configure_window_checked(connection_->get(), window_, XCB_CONFIG_WINDOW_STACK_MODE, &above));
    connection_->discard(
        xcb_set_input_focus_checked(connection_->get(), XCB_INPUT_FOCUS_POINTER_ROOT, window_, time_));
}

void XWindowActivation::send(xcb_atom_t type, const std::array<std::uint32_t, 5>& data) {
    sendToWindowManager(*connection_, window_, type, data);
}

} // namespace tarvex
