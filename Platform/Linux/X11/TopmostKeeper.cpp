#include "Platform/Linux/X11/TopmostKeeper.h"

#include "Platform/Linux/X11/OverlayParking.h"
#include "Platform/Linux/X11/XAtoms.h"
#include "Platform/Linux/X11/XWindowTree.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <ranges>
#include <utility>

namespace tarvex {

namespace {

/// More raises than this within the period are a struggle with somebody who raises himself each time.
constexpr std::size_t maxRaises = 8;
constexpr std::chrono::seconds raisePeriod{1};

struct Request {
    xcb_window_t window;
    bool isAbove;
    xcb_get_window_attributes_cookie_t attributes;
    xcb_get_geometry_cookie_t geometry;
};

} // namespace

TopmostKeeper::TopmostKeeper(XConnection& connection, XEventPump& pump)
    : connection_(&connection),
      own_(connection.get()),
      atoms_(internAtoms(connection)),
      stackingEvents_(connection, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY) {
    subscriptions_.push_back(pump.subscribe(XCB_MAP_NOTIFY, [this](const xcb_generic_event_t& event) {
        const auto& map = reinterpret_cast<const xcb_map_notify_event_t&>(event);
        note(map.event, map.window);
    }));
    subscriptions_.push_back(pump.subscribe(XCB_CONFIGURE_NOTIFY, [this](const xcb_generic_event_t& event) {
        const auto& configure = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
        note(configure.event, configure.window);
    }));
}

TopmostKeeper::Atoms TopmostKeeper::internAtoms(XConnection& connection) {
    return makeAtoms<Atoms>(connection, {{&Atoms::managerCheck, "_NET_SUPPORTING_WM_CHECK"},
                                         {&Atoms::windowType, "_NET_WM_WINDOW_TYPE"},
                                         {&Atoms::dock, "_NET_WM_WINDOW_TYPE_DOCK"},
                                         {&Atoms::notification, "_NET_WM_WINDOW_TYPE_NOTIFICATION"},
                                         {&Atoms::tooltip, "_NET_WM_WINDOW_TYPE_TOOLTIP"},
                                         {&Atoms::menu, "_NET_WM_WINDOW_TYPE_MENU"},
                                         {&Atoms::popupMenu, "_NET_WM_WINDOW_TYPE_POPUP_MENU"},
                                         {&Atoms::dropdownMenu, "_NET_WM_WINDOW_TYPE_DROPDOWN_MENU"},
                                         {&Atoms::combo, "_NET_WM_WINDOW_TYPE_COMBO"},
                                         {&Atoms::dragAndDrop, "_NET_WM_WINDOW_TYPE_DND"}});
}

void TopmostKeeper::note(xcb_window_t parent, xcb_window_t window) {
    isStackingStale_ = isStackingStale_ || (parent == connection_->root() && !own_.contains(window));
}

void TopmostKeeper::keepOnTop(xcb_window_t window, const PixelRect& frame) {
    const bool isNew = std::exchange(kept_, window) != window;
    if (!std::exchange(isStackingStale_, false) && !isNew) {
        return;
    }
    const auto managerCheck = requestPropertyWords(*connection_, connection_->root(), atoms_.managerCheck);
    const std::vector<Overlapping> overlapping = findOverlapping(window, frame, isNew);
    const XPropertyWords manager = takePropertyWords(*connection_, managerCheck);
    std::optional<xcb_window_t> lowestOfHigher;
    for (const Overlapping& other : std::views::reverse(overlapping)) {
        const Level level =
            levelOf(other, manager.words.empty() ? std::nullopt : std::optional(manager.words.front()));
        if (level == Level::below) {
            if (other.isAbove && mayRaise()) {
                restackBeside(*connection_, window, other.window, XCB_STACK_MODE_ABOVE);
                return;
            }
            break;
        }
        if (level == Level::above && !other.isAbove) {
            lowestOfHigher = other.window;
        }
    }
    if (lowestOfHigher) {
        restackBeside(*connection_, window, *lowestOfHigher, XCB_STACK_MODE_BELOW);
    }
}

std::vector<TopmostKeeper::Overlapping> TopmostKeeper::findOverlapping(xcb_window_t kept,
                                                                       const PixelRect& frame, bool isNew) {
    const std::vector<xcb_window_t> children = readChildren(*connection_, connection_->root());
    const auto place = std::find(children.begin(), children.end(), kept);
    if (place == children.end()) {
        return {};
    }
    std::vector<Request> requests;
    for (auto child = isNew ? children.begin() : place; child != children.end(); ++child) {
        if (!own_.contains(*child)) {
            requests.push_back({*child, place < child, xcb_get_window_attributes(connection_->get(), *child),
                                xcb_get_geometry(connection_->get(), *child)});
        }
    }
    std::vector<Overlapping> overlapping;
    for (const Request& request : requests) {
        const auto attributes = connection_->take(xcb_get_window_attributes_reply, request.attributes);
        const auto geometry = connection_->take(xcb_get_geometry_reply, request.geometry);
        if (!attributes || !geometry || attributes->map_state != XCB_MAP_STATE_VIEWABLE ||
            attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT) {
            continue;
        }
        const PixelRect covered{geometry->x, geometry->y, geometry->width + 2 * geometry->border_width,
                                geometry->height + 2 * geometry->border_width};
        if (intersect(covered, frame)) {
            overlapping.push_back({request.window, attributes->override_redirect != 0, request.isAbove});
        }
    }
    return overlapping;
}

TopmostKeeper::Level TopmostKeeper::levelOf(const Overlapping& other, std::optional<xcb_window_t> manager) {
    const XPropertyWords type = readPropertyWords(*connection_, other.window, atoms_.windowType);
    if (isHigh(type.words) || (other.isOverrideRedirect && isPopup(type.words))) {
        return Level::above;
    }
    const std::vector<xcb_window_t> clients = findClients(other.window);
    const bool isManagers = manager ? own_.isSameClient(other.window, *manager) : !clients.empty();
    // Menus, tooltips and the windows of screen lockers. Not all toolkits say which is which, but only the
    // frames of some window managers are as unmanaged as these.
    if (other.isOverrideRedirect && !isManagers) {
        return Level::asItIs;
    }
    const bool isHighFrame = std::any_of(clients.begin(), clients.end(), [this](xcb_window_t client) {
        return isHigh(readPropertyWords(*connection_, client, atoms_.windowType).words);
    });
    return isHighFrame ? Level::above : Level::below;
}

bool TopmostKeeper::isHigh(const std::vector<std::uint32_t>& types) const {
    return isAmong(types, atoms_.dock) || isAmong(types, atoms_.notification);
}

bool TopmostKeeper::isPopup(const std::vector<std::uint32_t>& types) const {
    return std::any_of(types.begin(), types.end(), [this](xcb_atom_t type) {
        return type == atoms_.tooltip || type == atoms_.menu || type == atoms_.popupMenu ||
               type == atoms_.dropdownMenu || type == atoms_.combo || type == atoms_.dragAndDrop;
    });
}

std::vector<xcb_window_t> TopmostKeeper::findClients(xcb_window_t frame) {
    std::vector<xcb_window_t> clients;
    const auto addFrom = [&](const std::vector<xcb_window_t>& windows) {
        std::copy_if(windows.begin(), windows.end(), std::back_inserter(clients),
                     [&](xcb_window_t window) { return !own_.isSameClient(window, frame); });
    };
    const std::vector<xcb_window_t> children = readChildren(*connection_, frame);
    addFrom(children);
    if (clients.empty()) {
        // Some window managers wrap the client in a window more.
        for (const xcb_window_t child : children) {
            addFrom(readChildren(*connection_, child));
        }
    }
    return clients;
}

bool TopmostKeeper::mayRaise() {
    const Clock::time_point now = Clock::now();
    std::erase_if(raises_, [&](Clock::time_point raise) { return now - raise > raisePeriod; });
    if (raises_.size() >= maxRaises) {
        return false;
    }
    raises_.push_back(now);
    return true;
}

} // namespace tarvex
