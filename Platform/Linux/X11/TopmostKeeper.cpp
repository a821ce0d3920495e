#include "Platform/Linux/X11/TopmostKeeper.h"

#include "Platform/Linux/X11/EventMask.h"

#include <algorithm>
#include <cstddef>
#include <span>

namespace tarvex {

namespace {

constexpr std::uint32_t stackingEvents = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
/// More raises than this within the period are a struggle with somebody who raises himself each time.
constexpr std::size_t maxRaises = 8;
constexpr std::chrono::seconds raisePeriod{1};

struct Candidate {
    xcb_window_t window;
    xcb_get_window_attributes_cookie_t attributes;
    xcb_get_geometry_cookie_t geometry;
};

bool intersect(const PixelRect& one, const PixelRect& other) {
    return one.x < other.right() && other.x < one.right() && one.y < other.bottom() && other.y < one.bottom();
}

bool contains(const PixelRect& outer, const PixelRect& inner) {
    return outer.x <= inner.x && outer.y <= inner.y && outer.right() >= inner.right() &&
           outer.bottom() >= inner.bottom();
}

} // namespace

TopmostKeeper::TopmostKeeper(XConnection& connection, XEventPump& pump) : connection_(&connection) {
    const auto attributes = connection.take(xcb_get_window_attributes_reply,
                                            xcb_get_window_attributes(connection.get(), connection.root()));
    hasSelected_ = attributes && (attributes->your_event_mask & stackingEvents) == 0;
    if (hasSelected_) {
        selectRootEvents(connection, stackingEvents);
    }
    subscriptions_.push_back(pump.subscribe(XCB_MAP_NOTIFY, [this](const xcb_generic_event_t& event) {
        const auto& map = reinterpret_cast<const xcb_map_notify_event_t&>(event);
        note(map.event, map.window);
    }));
    subscriptions_.push_back(pump.subscribe(XCB_CONFIGURE_NOTIFY, [this](const xcb_generic_event_t& event) {
        const auto& configure = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
        note(configure.event, configure.window);
    }));
}

TopmostKeeper::~TopmostKeeper() {
    if (!hasSelected_) {
        return;
    }
    // Other parts may have selected further events on the root window since.
    const auto attributes = connection_->take(
        xcb_get_window_attributes_reply, xcb_get_window_attributes(connection_->get(), connection_->root()));
    if (attributes) {
        const std::uint32_t mask = attributes->your_event_mask & ~stackingEvents;
        connection_->discard(xcb_change_window_attributes_checked(connection_->get(), connection_->root(),
                                                                  XCB_CW_EVENT_MASK, &mask));
    }
}

void TopmostKeeper::note(xcb_window_t parent, xcb_window_t window) {
    isStackingStale_ = isStackingStale_ || (parent == connection_->root() && !isOwn(window));
}

bool TopmostKeeper::isOwn(xcb_window_t window) const {
    const xcb_setup_t& setup = *xcb_get_setup(connection_->get());
    return (window & ~setup.resource_id_mask) == setup.resource_id_base;
}

void TopmostKeeper::keepOnTop(xcb_window_t window, const PixelRect& frame) {
    if (!isStackingStale_) {
        return;
    }
    isStackingStale_ = false;
    const std::optional<xcb_window_t> obscuring = findObscuring(window, frame);
    if (!obscuring || !mayRaise()) {
        return;
    }
    xcb_configure_window_value_list_t values{};
    values.sibling = *obscuring;
    values.stack_mode = XCB_STACK_MODE_ABOVE;
    connection_->discard(xcb_configure_window_aux_checked(
        connection_->get(), window, XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE, &values));
}

std::optional<xcb_window_t> TopmostKeeper::findObscuring(xcb_window_t window, const PixelRect& frame) {
    const auto tree =
        connection_->take(xcb_query_tree_reply, xcb_query_tree(connection_->get(), connection_->root()));
    if (!tree) {
        return std::nullopt;
    }
    const std::span<const xcb_window_t> children(
        xcb_query_tree_children(tree.get()),
        static_cast<std::size_t>(xcb_query_tree_children_length(tree.get())));
    const auto own = std::find(children.begin(), children.end(), window);
    std::vector<Candidate> candidates;
    for (auto child = own; child != children.end(); ++child) {
        if (!isOwn(*child)) {
            candidates.push_back({*child, xcb_get_window_attributes(connection_->get(), *child),
                                  xcb_get_geometry(connection_->get(), *child)});
        }
    }
    std::optional<xcb_window_t> highest;
    for (const Candidate& candidate : candidates) {
        const auto attributes = connection_->take(xcb_get_window_attributes_reply, candidate.attributes);
        const auto geometry = connection_->take(xcb_get_geometry_reply, candidate.geometry);
        if (!attributes || !geometry || attributes->map_state != XCB_MAP_STATE_VIEWABLE ||
            attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT) {
            continue;
        }
        const PixelRect covered{geometry->x, geometry->y, geometry->width + 2 * geometry->border_width,
                                geometry->height + 2 * geometry->border_width};
        // Screen lockers cover whole monitors, one by one or all together.
        const bool mayLock = attributes->override_redirect != 0 && contains(covered, frame);
        if (!mayLock && intersect(covered, frame)) {
            highest = candidate.window;
        }
    }
    return highest;
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
