#include "Platform/Linux/X11/StrutTracker.h"

#include "Platform/Linux/X11/EventMask.h"

#include <algorithm>
#include <limits>
#include <unordered_set>
#include <utility>

namespace tarvex {

namespace {

constexpr std::uint32_t candidateEvents = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
constexpr std::uint32_t iconicState = 3;

// Larger than any root window, and small enough to add to.
constexpr std::uint32_t farAway = std::numeric_limits<std::uint16_t>::max();

int pixels(std::uint32_t value) {
    return static_cast<int>(std::min(value, farAway));
}

StrutEdge edgeOf(std::uint32_t depth, std::uint32_t start, std::uint32_t end) {
    // A range without length is one that was never filled in.
    return end > start ? StrutEdge{pixels(depth), pixels(start), pixels(end)}
                       : StrutEdge{pixels(depth), 0, static_cast<int>(farAway)};
}

std::optional<StrutPanel> panelOf(const PixelRect& window, const std::vector<std::uint32_t>& partial,
                                  const std::vector<std::uint32_t>& whole) {
    if (partial.size() >= 12) {
        return StrutPanel{
            window, edgeOf(partial[0], partial[4], partial[5]), edgeOf(partial[1], partial[6], partial[7]),
            edgeOf(partial[2], partial[8], partial[9]), edgeOf(partial[3], partial[10], partial[11])};
    }
    if (whole.size() >= 4) {
        return StrutPanel{window, edgeOf(whole[0], 0, farAway), edgeOf(whole[1], 0, farAway),
                          edgeOf(whole[2], 0, farAway), edgeOf(whole[3], 0, farAway)};
    }
    return std::nullopt;
}

struct KindRequests {
    xcb_get_property_cookie_t type;
    xcb_get_property_cookie_t partialStrut;
    xcb_get_property_cookie_t strut;
};

} // namespace

struct StrutTracker::PanelRequests {
    xcb_window_t window;
    xcb_get_property_cookie_t partialStrut;
    xcb_get_property_cookie_t strut;
    xcb_get_property_cookie_t state;
    xcb_get_window_attributes_cookie_t attributes;
    xcb_get_geometry_cookie_t geometry;
    xcb_translate_coordinates_cookie_t position;
};

StrutTracker::StrutTracker(XConnection& connection, XEventPump& pump)
    : connection_(&connection), pump_(&pump) {
    connection.internAtoms({"_NET_CLIENT_LIST", "_NET_SUPPORTING_WM_CHECK", "_NET_WM_STRUT_PARTIAL",
                            "_NET_WM_STRUT", "_NET_WM_WINDOW_TYPE", "_NET_WM_WINDOW_TYPE_DOCK", "WM_STATE"});
    watch();
}

const std::vector<StrutPanel>& StrutTracker::panels() {
    refreshIfStale();
    return panels_;
}

std::uint64_t StrutTracker::revision() {
    refreshIfStale();
    return revision_;
}

template <typename Event>
void StrutTracker::markStaleOn(std::uint8_t responseType) {
    subscriptions_.push_back(pump_->subscribe(responseType, [this](const xcb_generic_event_t& event) {
        markStale(reinterpret_cast<const Event&>(event).window);
    }));
}

void StrutTracker::watch() {
    selectRootEvents(*connection_, XCB_EVENT_MASK_PROPERTY_CHANGE);
    subscriptions_.push_back(pump_->subscribe(XCB_PROPERTY_NOTIFY, [this](const xcb_generic_event_t& event) {
        handleProperty(reinterpret_cast<const xcb_property_notify_event_t&>(event));
    }));
    subscriptions_.push_back(pump_->subscribe(XCB_DESTROY_NOTIFY, [this](const xcb_generic_event_t& event) {
        const auto& destroy = reinterpret_cast<const xcb_destroy_notify_event_t&>(event);
        isListStale_ = candidates_.erase(destroy.window) > 0 || isListStale_;
    }));
    markStaleOn<xcb_configure_notify_event_t>(XCB_CONFIGURE_NOTIFY);
    markStaleOn<xcb_map_notify_event_t>(XCB_MAP_NOTIFY);
    markStaleOn<xcb_unmap_notify_event_t>(XCB_UNMAP_NOTIFY);
}

void StrutTracker::handleProperty(const xcb_property_notify_event_t& event) {
    if (event.window == connection_->root()) {
        isListStale_ = isListStale_ || event.atom == connection_->atom("_NET_CLIENT_LIST") ||
                       event.atom == connection_->atom("_NET_SUPPORTING_WM_CHECK");
    } else if (event.atom == connection_->atom("_NET_WM_STRUT_PARTIAL") ||
               event.atom == connection_->atom("_NET_WM_STRUT") ||
               event.atom == connection_->atom("WM_STATE")) {
        markStale(event.window);
    }
}

void StrutTracker::markStale(xcb_window_t window) {
    const auto found = candidates_.find(window);
    if (found != candidates_.end()) {
        found->second.isStale = true;
        isAnyCandidateStale_ = true;
    }
}

void StrutTracker::refreshIfStale() {
    if (!isListStale_ && !isAnyCandidateStale_) {
        return;
    }
    if (isListStale_) {
        readWindowList();
    }
    readStaleCandidates();
    std::vector<StrutPanel> panels;
    for (const xcb_window_t window : order_) {
        const auto found = candidates_.find(window);
        if (found != candidates_.end() && found->second.panel) {
            panels.push_back(*found->second.panel);
        }
    }
    if (panels != panels_) {
        panels_ = std::move(panels);
        ++revision_;
    }
}

void StrutTracker::readWindowList() {
    // Cleared first: a change that happens during the query marks the answer stale again.
    isListStale_ = false;
    order_ = findCandidates(
        readPropertyWords(*connection_, connection_->root(), connection_->atom("_NET_CLIENT_LIST")).words);
    std::unordered_map<xcb_window_t, Candidate> candidates;
    for (const xcb_window_t window : order_) {
        const auto known = candidates_.find(window);
        if (known != candidates_.end()) {
            candidates.insert(std::move(*known));
            continue;
        }
        // Selected before its properties are read, so that no change falls in between.
        addEventMask(*connection_, window, candidateEvents);
        candidates.try_emplace(window);
        isAnyCandidateStale_ = true;
    }
    candidates_ = std::move(candidates);
}

// Known candidates stay so without a question, since their end would have been announced. The rest are asked
// every time: the id of a window that nobody listens to may have passed to another window.
std::vector<xcb_window_t> StrutTracker::findCandidates(const std::vector<xcb_window_t>& windows) {
    std::unordered_map<xcb_window_t, KindRequests> requests;
    for (const xcb_window_t window : windows) {
        if (!candidates_.contains(window) && !requests.contains(window)) {
            requests.emplace(
                window,
                KindRequests{
                    requestPropertyWords(*connection_, window, connection_->atom("_NET_WM_WINDOW_TYPE")),
                    requestPropertyWords(*connection_, window, connection_->atom("_NET_WM_STRUT_PARTIAL")),
                    requestPropertyWords(*connection_, window, connection_->atom("_NET_WM_STRUT"))});
        }
    }
    std::unordered_set<xcb_window_t> seen;
    std::vector<xcb_window_t> candidates;
    for (const xcb_window_t window : windows) {
        if (!seen.insert(window).second) {
            continue;
        }
        const auto request = requests.find(window);
        bool isCandidate = request == requests.end();
        if (!isCandidate) {
            const XPropertyWords type = takePropertyWords(*connection_, request->second.type);
            const XPropertyWords partial = takePropertyWords(*connection_, request->second.partialStrut);
            const XPropertyWords strut = takePropertyWords(*connection_, request->second.strut);
            isCandidate = isDock(type.words) || !partial.words.empty() || !strut.words.empty();
        }
        if (isCandidate) {
            candidates.push_back(window);
        }
    }
    return candidates;
}

bool StrutTracker::isDock(const std::vector<std::uint32_t>& types) {
    return std::find(types.begin(), types.end(), connection_->atom("_NET_WM_WINDOW_TYPE_DOCK")) !=
           types.end();
}

void StrutTracker::readStaleCandidates() {
    isAnyCandidateStale_ = false;
    std::vector<PanelRequests> requests;
    for (auto& [window, candidate] : candidates_) {
        if (candidate.isStale) {
            candidate.isStale = false;
            requests.push_back(requestPanel(window));
        }
    }
    for (const PanelRequests& request : requests) {
        candidates_[request.window].panel = takePanel(request);
    }
}

StrutTracker::PanelRequests StrutTracker::requestPanel(xcb_window_t window) {
    return {window,
            requestPropertyWords(*connection_, window, connection_->atom("_NET_WM_STRUT_PARTIAL")),
            requestPropertyWords(*connection_, window, connection_->atom("_NET_WM_STRUT")),
            requestPropertyWords(*connection_, window, connection_->atom("WM_STATE")),
            xcb_get_window_attributes(connection_->get(), window),
            xcb_get_geometry(connection_->get(), window),
            xcb_translate_coordinates(connection_->get(), window, connection_->root(), 0, 0)};
}

std::optional<StrutPanel> StrutTracker::takePanel(const PanelRequests& requests) {
    const XPropertyWords partial = takePropertyWords(*connection_, requests.partialStrut);
    const XPropertyWords strut = takePropertyWords(*connection_, requests.strut);
    const XPropertyWords state = takePropertyWords(*connection_, requests.state);
    const auto attributes = connection_->take(xcb_get_window_attributes_reply, requests.attributes);
    const auto geometry = connection_->take(xcb_get_geometry_reply, requests.geometry);
    const auto position = connection_->take(xcb_translate_coordinates_reply, requests.position);
    if (!attributes || !geometry || !position) {
        return std::nullopt;
    }
    // A mapped window in an unmapped frame counts: the window manager maps the frame last, and nobody tells.
    const bool isHidden = attributes->map_state == XCB_MAP_STATE_UNMAPPED ||
                          (!state.words.empty() && state.words.front() == iconicState);
    if (isHidden) {
        return std::nullopt;
    }
    return panelOf({position->dst_x, position->dst_y, geometry->width, geometry->height}, partial.words,
                   strut.words);
}

} // namespace tarvex
