#include "Platform/Linux/X11/XWindowBorders.h"

#include "Platform/Linux/X11/EventMask.h"
#include "Platform/Linux/X11/WindowManagerProtocol.h"

#include <algorithm>
#include <utility>

namespace tarvex {

namespace {

/// Wider than any border; what a property holds may be anything.
constexpr std::uint32_t widestBorder = 1000;

int widthOf(std::uint32_t value) {
    return static_cast<int>(std::min(value, widestBorder));
}

} // namespace

XWindowBorders::XWindowBorders(XConnection& connection, XEventPump& pump, xcb_window_t window,
                               std::function<void()> told)
    : connection_(&connection), window_(window), extents_(connection.atom("_NET_FRAME_EXTENTS")) {
    addEventMask(connection, window, XCB_EVENT_MASK_PROPERTY_CHANGE);
    subscription_ =
        pump.subscribe(XCB_PROPERTY_NOTIFY, [this, told = std::move(told)](const xcb_generic_event_t& event) {
            const auto& property = reinterpret_cast<const xcb_property_notify_event_t&>(event);
            if (property.window == window_ && property.atom == extents_ &&
                property.state == XCB_PROPERTY_NEW_VALUE) {
                told();
            }
        });
    request();
}

std::optional<XBorders> XWindowBorders::read() {
    const std::vector<std::uint32_t> words = readPropertyWords(*connection_, window_, extents_).words;
    if (words.size() >= 4) {
        last_ = XBorders{widthOf(words[0]), widthOf(words[1]), widthOf(words[2]), widthOf(words[3])};
    } else if (!last_) {
        // There may have been no window manager yet when the window was made.
        request();
    }
    return last_;
}

void XWindowBorders::request() {
    sendToWindowManager(*connection_, window_, connection_->atom("_NET_REQUEST_FRAME_EXTENTS"), {});
    connection_->flush();
}

} // namespace tarvex
