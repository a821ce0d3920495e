#include "Platform/Linux/X11/StrutTracker.h"

#include "Platform/Linux/X11/EventMask.h"
#include "Platform/Linux/X11/WindowManagerProtocol.h"
#include "Platform/Linux/X11/XAtoms.h"

#include <algorithm>
#include <limits>
#include <unordered_set>
#include <utility>

namespace tarvex {

namespace {

/// How long what a search found is held to be true; the drag of a window asks far more often.
constexpr std::chrono::seconds searchPeriod{1};

constexpr std::uint32_t candidateEvents = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;

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

StrutTracker::StrutTracker(XConnection& connection, XEventPump& pump, std::function<Clock::time_point()> now)
    : connection_(&connection),
      pump_(&pump),
      now_(std::move(now)),
      atoms_(internAtoms(connection)),
      rootEvents_(connection, XCB_EVENT_MASK_PROPERTY_CHANGE),
      search_(connection) {
    watch();
}

StrutTracker::Atoms StrutTracker::internAtoms(XConnection& connection) {
    return makeAtoms<Atoms>(connection, {{&Atoms::clientList, "_NET_CLIENT_LIST"},
                                         {&Atoms::managerCheck, "_NET_SUPPORTING_WM_CHECK"},
                                         {&Atoms::partialStrut, "_NET_WM_STRUT_PARTIAL"},
                                         {&Atoms::strut, "_NET_WM_STRUT"},
                                         {&Atoms::windowType, "_NET_WM_WINDOW_TYPE"},
                                         {&Atoms::dockType, "_NET_WM_WINDOW_TYPE_DOCK"},
                                         {&Atoms::managedState, "WM_STATE"}});
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
    markStaleOn<xcb_reparent_notify_event_t>(XCB_REPARENT_NOTIFY);
}

void StrutTracker::handleProperty(const xcb_property_notify_event_t& event) {
    if (event.window == connection_->root()) {
        isListStale_ = isListStale_ || event.atom == atoms_.clientList || event.atom == atoms_.managerCheck;
    } else if (event.atom == atoms_.partialStrut || event.atom == atoms_.strut ||
               event.atom == atoms_.managedState) {
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
    const bool wasListStale = isListStale_;
    if (wasListStale) {
        readWindowList();
    }
    if (!listsPanels_ && now_() >= nextSearch_) {
        searchUnlisted();
    }
    if (wasListStale) {
        forgetTheRest();
    } else if (!isAnyCandidateStale_) {
        return;
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
    const std::vector<xcb_window_t> windows =
        readPropertyWords(*connection_, connection_->root(), atoms_.clientList).words;
    listed_ = {windows.begin(), windows.end()};
    const std::vector<Found> found = findCandidates(windows);
    listsPanels_ = std::any_of(found.begin(), found.end(), [](const Found& each) { return each.isDock; });
    order_.clear();
    adopt(found, true);
    search_.startOver();
    nextSearch_ = {};
}

void StrutTracker::searchUnlisted() {
    nextSearch_ = now_() + searchPeriod;
    std::vector<xcb_window_t> windows = search_.findNew();
    std::erase_if(windows, [this](xcb_window_t window) { return listed_.contains(window); });
    adopt(findCandidates(windows), false);
}

void StrutTracker::forgetTheRest() {
    const std::unordered_set<xcb_window_t> present(order_.begin(), order_.end());
    std::erase_if(candidates_, [&](const auto& candidate) { return !present.contains(candidate.first); });
}

// Known candidates stay so without a question, since their end would have been announced. The rest are asked
// every time: the id of a window that nobody listens to may have passed to another window.
std::vector<StrutTracker::Found> StrutTracker::findCandidates(const std::vector<xcb_window_t>& windows) {
    std::unordered_map<xcb_window_t, KindRequests> requests;
    for (const xcb_window_t window : windows) {
        if (!candidates_.contains(window) && !requests.contains(window)) {
            requests.emplace(window,
                             KindRequests{requestPropertyWords(*connection_, window, atoms_.windowType),
                                          requestPropertyWords(*connection_, window, atoms_.partialStrut),
                                          requestPropertyWords(*connection_, window, atoms_.strut)});
        }
    }
    std::unordered_set<xcb_window_t> seen;
    std::vector<Found> found;
    for (const xcb_window_t window : windows) {
        if (!seen.insert(window).second) {
            continue;
        }
        const auto request = requests.find(window);
        if (request == requests.end()) {
            found.push_back({window, candidates_.at(window).isDock});
            continue;
        }
        const XPropertyWords type = takePropertyWords(*connection_, request->second.type);
        const XPropertyWords partial = takePropertyWords(*connection_, request->second.partialStrut);
        const XPropertyWords strut = takePropertyWords(*connection_, request->second.strut);
        const bool isDock = isAmong(type.words, atoms_.dockType);
        if (isDock || !partial.words.empty() || !strut.words.empty()) {
            found.push_back({window, isDock});
        }
    }
    return found;
}

void StrutTracker::adopt(const std::vector<Found>& found, bool isListed) {
    for (const auto& [window, isDock] : found) {
        const auto [position, isNew] = candidates_.try_emplace(window);
        Candidate& candidate = position->second;
        if (isNew) {
            // Selected before its properties are read, so that no change falls in between.
            addEventMask(*connection_, window, candidateEvents);
        }
        candidate.isStale = candidate.isStale || candidate.isListed != isListed;
        candidate.isListed = isListed;
        candidate.isDock = isDock;
        isAnyCandidateStale_ = isAnyCandidateStale_ || candidate.isStale;
        if (std::find(order_.begin(), order_.end(), window) == order_.end()) {
            order_.push_back(window);
        }
    }
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
        Candidate& candidate = candidates_.at(request.window);
        candidate.panel = takePanel(request, candidate);
    }
}

StrutTracker::PanelRequests StrutTracker::requestPanel(xcb_window_t window) {
    return {window,
            requestPropertyWords(*connection_, window, atoms_.partialStrut),
            requestPropertyWords(*connection_, window, atoms_.strut),
            requestPropertyWords(*connection_, window, atoms_.managedState),
            xcb_get_window_attributes(connection_->get(), window),
            xcb_get_geometry(connection_->get(), window),
            xcb_translate_coordinates(connection_->get(), window, connection_->root(), 0, 0)};
}

std::optional<StrutPanel> StrutTracker::takePanel(const PanelRequests& requests, const Candidate& candidate) {
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
    const bool isHidden = attributes->map_state == XCB_MAP_STATE_UNMAPPED || isIconic(state.words);
    // Nobody keeps anything free for a panel that has withdrawn from the window manager, such as one that
    // slides out above the windows.
    if (isHidden || !(candidate.isListed || isManaged(state.words))) {
        return std::nullopt;
    }
    const PixelRect window{position->dst_x, position->dst_y, geometry->width, geometry->height};
    std::optional<StrutPanel> panel = panelOf(window, partial.words, strut.words);
    if (candidate.isDock && !candidate.isListed) {
        panel = panel.value_or(StrutPanel{});
        panel->window = window;
        panel->isLaidOut = true;
    }
    return panel;
}

} // namespace tarvex
