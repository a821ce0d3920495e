#include "Platform/Linux/X11/XPressRecord.h"

#include <xcb/record.h>
#include <xcb/xcbext.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <utility>

namespace tarvex {

namespace {

/// Of a reply that holds events (RECORD extension, RecordEnableContext).
constexpr std::uint8_t categoryFromServer = 0;

/// More presses than a hand makes before the first of them is asked for, unless it turns the wheel.
constexpr std::size_t mostKept = 64;

} // namespace

XPressRecord::XPressRecord(std::string displayName) : displayName_(std::move(displayName)) {}

void XPressRecord::begin() {
    if (connection_) {
        return;
    }
    connection_ = XConnection::open(displayName_);
    if (connection_ && !enable()) {
        connection_.reset();
    }
}

void XPressRecord::end() {
    connection_.reset();
    presses_.clear();
}

bool XPressRecord::enable() {
    xcb_connection_t* const server = connection_->get();
    if (connection_->extension(xcb_record_id) == nullptr || xcb_get_setup(server)->roots_len != 1) {
        return false;
    }
    const xcb_record_context_t context = xcb_generate_id(server);
    // Events of devices belong to no client; the request wants some all the same.
    constexpr xcb_record_client_spec_t clients = XCB_RECORD_CS_FUTURE_CLIENTS;
    xcb_record_range_t range{};
    range.device_events = {XCB_BUTTON_PRESS, XCB_BUTTON_PRESS};
    connection_->discard(xcb_record_create_context_checked(server, context, 0, 1, 1, &clients, &range));
    // From here on the server listens to nothing on this connection. The first reply says that it has begun.
    const xcb_record_enable_context_cookie_t cookie = xcb_record_enable_context(server, context);
    sequence_ = cookie.sequence;
    return static_cast<bool>(connection_->take(xcb_record_enable_context_reply, cookie));
}

std::optional<PixelPlace> XPressRecord::placeOfPress(xcb_timestamp_t time) {
    if (connection_) {
        read();
    }
    const auto press = std::ranges::find(presses_, time, &Press::time);
    if (press == presses_.end()) {
        return std::nullopt;
    }
    const PixelPlace place = press->place;
    presses_.erase(presses_.begin(), std::next(press));
    return place;
}

void XPressRecord::read() {
    xcb_connection_t* const server = connection_->get();
    for (bool hasRead = true; hasRead;) {
        // The only events are those that every client is told of. When none is left this call reads, without
        // waiting.
        const XcbOwned<xcb_generic_event_t> event(xcb_poll_for_event(server));
        hasRead = event != nullptr;
        void* reply = nullptr;
        xcb_generic_error_t* error = nullptr;
        while (xcb_poll_for_reply(server, sequence_, &reply, &error) != 0 && reply != nullptr) {
            const XcbOwned<xcb_record_enable_context_reply_t> owned(
                static_cast<xcb_record_enable_context_reply_t*>(reply));
            keep(*owned);
            hasRead = true;
        }
        const XcbOwned<xcb_generic_error_t> owned(error);
    }
}

void XPressRecord::keep(const xcb_record_enable_context_reply_t& reply) {
    if (reply.category != categoryFromServer) {
        return;
    }
    const std::uint8_t* const data = xcb_record_enable_context_data(&reply);
    const auto size = static_cast<std::size_t>(xcb_record_enable_context_data_length(&reply));
    xcb_button_press_event_t event{};
    for (std::size_t offset = 0; offset + sizeof event <= size; offset += sizeof event) {
        std::memcpy(&event, data + offset, sizeof event);
        if (event.response_type == XCB_BUTTON_PRESS) {
            presses_.push_back({event.time, {event.root_x, event.root_y}});
        }
    }
    while (presses_.size() > mostKept) {
        presses_.pop_front();
    }
}

} // namespace tarvex
