#pragma once

#include "Platform/Linux/X11/StrutGeometry.h"
#include "Platform/Linux/X11/XConnection.h"
#include "Platform/Linux/X11/XEventPump.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

namespace tarvex {

/// Knows the panels that the window manager shows and what they keep free. It listens to panels alone, among
/// all windows, and asks the server again only when one of them or the list of windows has changed, and only
/// when somebody wants to know.
class StrutTracker {
public:
    /// The connection and the pump must outlive the tracker.
    StrutTracker(XConnection& connection, XEventPump& pump);

    /// The panels on the screen, in the window manager's order. Valid until the next call of any method.
    [[nodiscard]] const std::vector<StrutPanel>& panels();

    /// Another number whenever panels() has changed.
    [[nodiscard]] std::uint64_t revision();

private:
    /// A window that is or may become a panel; its events are selected.
    struct Candidate {
        bool isStale = true;
        /// None while it is hidden or keeps nothing free.
        std::optional<StrutPanel> panel;
    };

    struct PanelRequests;

    void watch();
    template <typename Event>
    void markStaleOn(std::uint8_t responseType);
    void handleProperty(const xcb_property_notify_event_t& event);
    void markStale(xcb_window_t window);
    void refreshIfStale();
    void readWindowList();
    [[nodiscard]] std::vector<xcb_window_t> findCandidates(const std::vector<xcb_window_t>& windows);
    [[nodiscard]] bool isDock(const std::vector<std::uint32_t>& types);
    void readStaleCandidates();
    [[nodiscard]] PanelRequests requestPanel(xcb_window_t window);
    [[nodiscard]] std::optional<StrutPanel> takePanel(const PanelRequests& requests);

    XConnection* connection_;
    XEventPump* pump_;
    std::vector<std::unique_ptr<XEventPump::Subscription>> subscriptions_;
    bool isListStale_ = true;
    bool isAnyCandidateStale_ = false;
    std::vector<xcb_window_t> order_;
    std::unordered_map<xcb_window_t, Candidate> candidates_;
    std::vector<StrutPanel> panels_;
    std::uint64_t revision_ = 0;
};

} // namespace tarvex
