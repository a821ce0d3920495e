#include "Platform/Linux/X11/XEventPump.h"

#include <utility>

namespace tarvex {

namespace {

constexpr std::uint8_t sentEventBit = 0x80;

} // namespace

XEventPump::XEventPump(XConnection& connection) : connection_(&connection) {}

std::unique_ptr<XEventPump::Subscription> XEventPump::subscribe(std::uint8_t responseType,
                                                                EventHandler handler) {
    return add(byType_[responseType], std::move(handler));
}

std::unique_ptr<XEventPump::Subscription> XEventPump::subscribeTurnEnd(std::function<void()> handler) {
    return add(turnEnd_, [handler = std::move(handler)](const xcb_generic_event_t&) { handler(); });
}

std::unique_ptr<XEventPump::Subscription> XEventPump::add(Registrations& registrations,
                                                          EventHandler handler) {
    auto registration = std::make_shared<Registration>();
    registration->handler = std::move(handler);
    registrations.push_back(registration);
    return std::make_unique<Subscription>([&registrations, registration] {
        // A walk over the list may be under way and hold the registration.
        registration->isCancelled = true;
        registrations.remove(registration);
    });
}

void XEventPump::processPending() {
    // One read takes in all that has arrived, as a rule; what it leaves keeps the descriptor readable.
    process(&xcb_poll_for_event);
}

void XEventPump::processQueued() {
    process(&xcb_poll_for_queued_event);
}

void XEventPump::process(xcb_generic_event_t* (*firstEvent)(xcb_connection_t*)) {
    if (isProcessing_) {
        return;
    }
    isProcessing_ = true;
    XcbOwned<xcb_generic_event_t> event(firstEvent(connection_->get()));
    do {
        while (event) {
            dispatch(*event);
            event.reset(xcb_poll_for_queued_event(connection_->get()));
        }
        isTurnDue_ = false;
        call(turnEnd_, {});
        connection_->flush();
        // The work at the end of the turn may have waited for a reply and so taken more events in.
        event.reset(xcb_poll_for_queued_event(connection_->get()));
    } while (event || isTurnDue_);
    isProcessing_ = false;
    if (connection_->isBroken() && connectionLost_) {
        std::exchange(connectionLost_, nullptr)();
    }
}

int XEventPump::fileDescriptor() const {
    return xcb_get_file_descriptor(connection_->get());
}

void XEventPump::dispatch(const xcb_generic_event_t& event) {
    const auto found = byType_.find(static_cast<std::uint8_t>(event.response_type & ~sentEventBit));
    if (found != byType_.end()) {
        call(found->second, event);
    }
}

void XEventPump::call(const Registrations& registrations, const xcb_generic_event_t& event) {
    const Registrations snapshot = registrations;
    for (const auto& registration : snapshot) {
        if (!registration->isCancelled) {
            registration->handler(event);
        }
    }
}

} // namespace tarvex
