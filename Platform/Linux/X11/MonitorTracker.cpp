#include "Platform/Linux/X11/MonitorTracker.h"

#include <xcb/randr.h>

#include <algorithm>

namespace tarvex {

namespace {

constexpr std::uint16_t randrEvents =
    XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
    XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE | XCB_RANDR_NOTIFY_MASK_OUTPUT_PROPERTY;

} // namespace

MonitorTracker::MonitorTracker(XConnection& connection, XEventPump& pump)
    : connection_(&connection),
      pump_(&pump),
      rootEvents_(connection, XCB_EVENT_MASK_STRUCTURE_NOTIFY),
      serverListsMonitors_(tarvex::serverListsMonitors(connection)) {
    connection.internAtoms({"EDID", "ConnectorType", "Panel"});
    watch();
}

const std::vector<Monitor>& MonitorTracker::monitors() {
    refreshIfStale();
    return list_.monitors;
}

const Monitor* MonitorTracker::find(std::uint32_t number) {
    refreshIfStale();
    const auto found = std::find_if(list_.monitors.begin(), list_.monitors.end(),
                                    [&](const Monitor& monitor) { return monitor.number == number; });
    return found == list_.monitors.end() ? nullptr : &*found;
}

const PixelRect& MonitorTracker::root() {
    refreshIfStale();
    return list_.root;
}

const DesktopLayout& MonitorTracker::layout() {
    refreshIfStale();
    return layout_;
}

std::uint64_t MonitorTracker::revision() {
    refreshIfStale();
    return revision_;
}

void MonitorTracker::watch() {
    // A monitor that is set or deleted by hand, without any output changing, is announced as a new
    // configuration of the root alone.
    subscriptions_.push_back(pump_->subscribe(XCB_CONFIGURE_NOTIFY, [this](const xcb_generic_event_t& event) {
        const auto& configure = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
        isStale_ = isStale_ || configure.window == connection_->root();
    }));
    const auto* randr = connection_->extension(xcb_randr_id);
    if (!serverListsMonitors_ || randr == nullptr) {
        return;
    }
    connection_->discard(
        xcb_randr_select_input_checked(connection_->get(), connection_->root(), randrEvents));
    const auto screenChange = static_cast<std::uint8_t>(randr->first_event + XCB_RANDR_SCREEN_CHANGE_NOTIFY);
    subscriptions_.push_back(
        pump_->subscribe(screenChange, [this](const xcb_generic_event_t& /*event*/) { isStale_ = true; }));
    const auto notification = static_cast<std::uint8_t>(randr->first_event + XCB_RANDR_NOTIFY);
    subscriptions_.push_back(pump_->subscribe(notification, [this](const xcb_generic_event_t& event) {
        isStale_ = isStale_ || concernsMonitors(event);
    }));
}

bool MonitorTracker::concernsMonitors(const xcb_generic_event_t& notification) {
    const auto& notify = reinterpret_cast<const xcb_randr_notify_event_t&>(notification);
    if (notify.subCode != XCB_RANDR_NOTIFY_OUTPUT_PROPERTY) {
        return true;
    }
    // Backlights and colour corrections are properties of outputs too, and change all evening.
    const xcb_atom_t property = notify.u.op.atom;
    return property == connection_->atom("EDID") || property == connection_->atom("ConnectorType");
}

void MonitorTracker::refreshIfStale() {
    if (!isStale_) {
        return;
    }
    // Cleared first: a change that happens during the query marks the answer stale again.
    isStale_ = false;
    list_ = readMonitors(*connection_, serverListsMonitors_);
    ++revision_;
    updateLayout();
}

void MonitorTracker::updateLayout() {
    layout_ = {};
    layout_.primaryBottom = list_.root.height;
    if (list_.monitors.empty()) {
        return;
    }
    const PixelRect& primary = list_.monitors.front().area;
    layout_.primaryLeft = primary.x;
    layout_.primaryBottom = primary.bottom();
    layout_.top = primary.y;
    for (const Monitor& monitor : list_.monitors) {
        layout_.top = std::min(layout_.top, monitor.area.y);
    }
}

} // namespace tarvex
