#pragma once

#include "Platform/Linux/X11/ClientSearch.h"
#include "Platform/Linux/X11/EventMask.h"
#include "Platform/Linux/X11/StrutGeometry.h"
#include "Platform/Linux/X11/XConnection.h"
#include "Platform/Linux/X11/XEventPump.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace tarvex {

/// Knows the panels that the window manager shows and what they keep free. It listens to panels alone, among
/// all windows, and asks the server again only when one of them or the list of windows has changed, and only
/// when somebody wants to know. Some window managers leave panels out of their list. Where no panel is
/// listed, the windows that the manager holds are therefore searched for panels as well: when the list
/// changes and, since not even that follows every panel, when somebody wants to know and a second has passed.
class StrutTracker {
public:
    using Clock = std::chrono::steady_clock;

    /// The connection and the pump must outlive the tracker.
    /// @param now tells the time
    StrutTracker(XConnection& connection, XEventPump& pump,
                 std::function<Clock::time_point()> now = Clock::now);

    /// The panels on the screen: those that are listed in the window manager's order, then the others. Valid
    /// until the next call of any method.
    [[nodiscard]] const std::vector<StrutPanel>& panels();

    /// Another number whenever panels() has changed.
    [[nodiscard]] std::uint64_t revision();

private:
    /// A window that is or may become a panel; its events are selected.
    struct Candidate {
        bool isStale = true;
        bool isDock = false;
        /// By the window manager, among its windows.
        bool isListed = false;
        /// None while it is hidden or keeps nothing free.
        std::optional<StrutPanel> panel;
    };

    /// A window that turned out to be a candidate.
    struct Found {
        xcb_window_t window;
        bool isDock;
    };

    struct Atoms {
        xcb_atom_t clientList;
        xcb_atom_t managerCheck;
        xcb_atom_t partialStrut;
        xcb_atom_t strut;
        xcb_atom_t windowType;
        xcb_atom_t dockType;
        xcb_atom_t managedState;
    };

    struct PanelRequests;

    [[nodiscard]] static Atoms internAtoms(XConnection& connection);
    void watch();
    template <typename Event>
    void markStaleOn(std::uint8_t responseType);
    void handleProperty(const xcb_property_notify_event_t& event);
    void markStale(xcb_window_t window);
    void refreshIfStale();
    void readWindowList();
    void searchUnlisted();
    void forgetTheRest();
    [[nodiscard]] std::vector<Found> findCandidates(const std::vector<xcb_window_t>& windows);
    void adopt(const std::vector<Found>& found, bool isListed);
    void readStaleCandidates();
    [[nodiscard]] PanelRequests requestPanel(xcb_window_t window);
    [[nodiscard]] std::optional<StrutPanel> takePanel(const PanelRequests& requests,
                                                      const Candidate& candidate);

    XConnection* connection_;
    XEventPump* pump_;
    std::function<Clock::time_point()> now_;
    Atoms atoms_;
    RootEventSelection rootEvents_;
    std::vector<std::unique_ptr<XEventPump::Subscription>> subscriptions_;
    ClientSearch search_;
    bool isListStale_ = true;
    bool isAnyCandidateStale_ = false;
    /// Whether there is a panel in the window manager's list, and so all of them.
    bool listsPanels_ = false;
    Clock::time_point nextSearch_;
    std::unordered_set<xcb_window_t> listed_;
    std::vector<xcb_window_t> order_;
    std::unordered_map<xcb_window_t, Candidate> candidates_;
    std::vector<StrutPanel> panels_;
    std::uint64_t revision_ = 0;
};

} // namespace tarvex
