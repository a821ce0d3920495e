#pragma once

#include "Platform/Linux/X11/XConnection.h"

#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <unordered_map>

namespace tarvex {

/// Hands the events of a connection to those who wait for them. It reads what has arrived and never waits.
/// The main loop calls processPending() when the connection's file descriptor is readable, and
/// processQueued() before it goes to sleep, since a wait for a reply may have taken events off the
/// descriptor.
class XEventPump {
public:
    using EventHandler = std::function<void(const xcb_generic_event_t&)>;

    /// Keeps a handler registered; destroying it ends that, also from within a handler. The pump must outlive
    /// it.
    class Subscription {
    public:
        explicit Subscription(std::function<void()> cancel) : cancel_(std::move(cancel)) {}

        Subscription(const Subscription&) = delete;
        Subscription& operator=(const Subscription&) = delete;
        Subscription(Subscription&&) = delete;
        Subscription& operator=(Subscription&&) = delete;

        ~Subscription() { cancel_(); }

    private:
        std::function<void()> cancel_;
    };

    explicit XEventPump(XConnection& connection);

    /// Calls the handler for every event whose response type, without the bit that marks sent events, is the
    /// given one. Extension events count from the extension's first event; generic events (XCB_GE_GENERIC) of
    /// all extensions come together.
    [[nodiscard]] std::unique_ptr<Subscription> subscribe(std::uint8_t responseType, EventHandler handler);

    /// Calls the handler whenever all events that had arrived have been handled, before requests are flushed:
    /// the place for work that several events share.
    [[nodiscard]] std::unique_ptr<Subscription> subscribeTurnEnd(std::function<void()> handler);

    /// Calls the handler once, when the connection breaks.
    void setConnectionLostHandler(std::function<void()> handler) { connectionLost_ = std::move(handler); }

    /// Handles the events that have arrived, then ends the turn and flushes. When so many have arrived that
    /// one read does not take them all, the descriptor stays readable. Calls from within a handler do
    /// nothing.
    void processPending();

    /// The same for events that were read before; does not touch the descriptor.
    void processQueued();

    /// For a handler at the end of a turn: another turn follows this one, even when no further event has been
    /// read meanwhile.
    void repeatTurn() { isTurnDue_ = true; }

    /// The descriptor that becomes readable when events arrive.
    [[nodiscard]] int fileDescriptor() const;

private:
    struct Registration {
        EventHandler handler;
        bool isCancelled = false;
    };

    using Registrations = std::list<std::shared_ptr<Registration>>;

    [[nodiscard]] std::unique_ptr<Subscription> add(Registrations& registrations, EventHandler handler);
    void process(xcb_generic_event_t* (*firstEvent)(xcb_connection_t*));
    void dispatch(const xcb_generic_event_t& event);
    static void call(const Registrations& registrations, const xcb_generic_event_t& event);

    XConnection* connection_;
    std::unordered_map<std::uint8_t, Registrations> byType_;
    Registrations turnEnd_;
    std::function<void()> connectionLost_;
    bool isProcessing_ = false;
    bool isTurnDue_ = false;
};

} // namespace tarvex
