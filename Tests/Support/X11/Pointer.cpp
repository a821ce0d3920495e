#include "Tests/Support/X11/Pointer.h"

#include <xcb/xtest.h>

#include <algorithm>
#include <exception>
#include <stdexcept>

namespace tarvex::test {

Pointer::~Pointer() {
    try {
        while (!down_.empty()) {
            release(*down_.begin());
        }
    } catch (const std::exception&) {
        // The server is gone, and its buttons with it.
        down_.clear();
    }
}

void Pointer::moveTo(PixelPoint point) {
    constexpr std::uint8_t absolute = 0;
    fake(XCB_MOTION_NOTIFY, absolute, point);
}

void Pointer::glideTo(PixelPoint point, int steps) {
    const PixelPoint start = position();
    for (int step = 1; step <= steps; ++step) {
        moveTo({start.x + (point.x - start.x) * step / steps, start.y + (point.y - start.y) * step / steps});
    }
}

void Pointer::press(std::uint8_t button) {
    down_.insert(button);
    fake(XCB_BUTTON_PRESS, button, {});
}

void Pointer::release(std::uint8_t button) {
    down_.erase(button);
    fake(XCB_BUTTON_RELEASE, button, {});
}

PixelPoint Pointer::position() {
    const Owned<xcb_query_pointer_reply_t> reply(xcb_query_pointer_reply(
        client_.connection(), xcb_query_pointer(client_.connection(), client_.root()), nullptr));
    if (!reply) {
        throw std::runtime_error("the pointer has no position");
    }
    return {reply->root_x, reply->root_y};
}

void Pointer::setMapping(const std::vector<std::uint8_t>& buttons) {
    const Owned<xcb_get_pointer_mapping_reply_t> current(xcb_get_pointer_mapping_reply(
        client_.connection(), xcb_get_pointer_mapping(client_.connection()), nullptr));
    if (!current) {
        throw std::runtime_error("no pointer mapping");
    }
    const std::uint8_t* first = xcb_get_pointer_mapping_map(current.get());
    std::vector<std::uint8_t> mapping(first, first + xcb_get_pointer_mapping_map_length(current.get()));
    std::copy_n(buttons.begin(), std::min(buttons.size(), mapping.size()), mapping.begin());
    const Owned<xcb_set_pointer_mapping_reply_t> reply(xcb_set_pointer_mapping_reply(
        client_.connection(),
        xcb_set_pointer_mapping(client_.connection(), static_cast<std::uint8_t>(mapping.size()),
                                mapping.data()),
        nullptr));
    if (!reply || reply->status != XCB_MAPPING_STATUS_SUCCESS) {
        throw std::runtime_error("the pointer mapping was refused");
    }
}

void Pointer::fake(std::uint8_t type, std::uint8_t detail, PixelPoint point) {
    xcb_test_fake_input(client_.connection(), type, detail, XCB_CURRENT_TIME,
                        type == XCB_MOTION_NOTIFY ? client_.root() : XCB_NONE,
                        static_cast<std::int16_t>(point.x), static_cast<std::int16_t>(point.y), 0);
    client_.sync();
}

} // namespace tarvex::test
