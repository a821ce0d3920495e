#include "Platform/Linux/X11/ButtonPressWatch.h"

#include <xcb/xinput.h>

#include <utility>

namespace tarvex {

namespace {

/// Raw events come to everybody from this version on, also while somebody holds the pointer.
constexpr std::uint16_t inputMajor = 2;
constexpr std::uint16_t inputMinor = 2;

} // namespace

ButtonPressWatch::ButtonPressWatch(XConnection& connection, XEventPump& pump, std::function<void()> pressed)
    : connection_(&connection), pressed_(std::move(pressed)) {
    const auto* input = connection.extension(xcb_input_id);
    if (input == nullptr) {
        return;
    }
    const auto versionCookie = xcb_input_xi_query_version(connection.get(), inputMajor, inputMinor);
    const auto pointerCookie = xcb_input_xi_get_client_pointer(connection.get(), XCB_WINDOW_NONE);
    const auto version = connection.take(xcb_input_xi_query_version_reply, versionCookie);
    const auto pointer = connection.take(xcb_input_xi_get_client_pointer_reply, pointerCookie);
    const bool hasRawEvents = version && (std::pair(version->major_version, version->minor_version) >=
                                          std::pair(inputMajor, inputMinor));
    if (!hasRawEvents || !pointer) {
        return;
    }
    opcode_ = input->major_opcode;
    device_ = pointer->deviceid;
    subscription_ =
        pump.subscribe(XCB_GE_GENERIC, [this](const xcb_generic_event_t& event) { handle(event); });
    select(XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS);
}

ButtonPressWatch::~ButtonPressWatch() {
    if (subscription_) {
        select(0);
    }
}

void ButtonPressWatch::select(std::uint32_t eventMask) {
    struct {
        xcb_input_event_mask_t head;
        std::uint32_t mask;
    } const selection{{device_, 1}, eventMask};

    connection_->discard(
        xcb_input_xi_select_events_checked(connection_->get(), connection_->root(), 1, &selection.head));
}

void ButtonPressWatch::handle(const xcb_generic_event_t& event) {
    const auto& press = reinterpret_cast<const xcb_input_raw_button_press_event_t&>(event);
    const bool isPress = press.extension == opcode_ && press.event_type == XCB_INPUT_RAW_BUTTON_PRESS;
    if (isPress && !isWheelButton(press.detail)) {
        pressed_();
    }
}

} // namespace tarvex
