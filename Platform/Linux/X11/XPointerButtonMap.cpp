#include "Platform/Linux/X11/XPointerButtonMap.h"

#include <xcb/xinput.h>

namespace tarvex {

namespace {

/// The pointer's own map is kept under the number that stands for all devices and so names none.
constexpr std::uint16_t pointerKey = XCB_INPUT_DEVICE_ALL;

std::uint32_t apply(const std::vector<std::uint8_t>& map, std::uint32_t button) {
    return button >= 1 && button <= map.size() ? map[button - 1] : button;
}

} // namespace

std::uint32_t XPointerButtonMap::logicalButton(std::uint32_t physicalButton, std::uint16_t source) {
    return apply(pointerMap(), apply(deviceMap(source), physicalButton));
}

const XPointerButtonMap::Map& XPointerButtonMap::pointerMap() {
    const auto [entry, isNew] = maps_.try_emplace(pointerKey);
    if (isNew) {
        if (const auto reply = connection_->take(xcb_get_pointer_mapping_reply,
                                                 xcb_get_pointer_mapping(connection_->get()))) {
            const std::uint8_t* buttons = xcb_get_pointer_mapping_map(reply.get());
            entry->second.assign(buttons, buttons + xcb_get_pointer_mapping_map_length(reply.get()));
        }
    }
    return entry->second;
}

const XPointerButtonMap::Map& XPointerButtonMap::deviceMap(std::uint16_t device) {
    const auto [entry, isNew] = maps_.try_emplace(device);
    // The request counts devices in eight bits.
    if (isNew && device != pointerKey && device <= UINT8_MAX) {
        if (const auto reply = connection_->take(
                xcb_input_get_device_button_mapping_reply,
                xcb_input_get_device_button_mapping(connection_->get(), static_cast<std::uint8_t>(device)))) {
            const std::uint8_t* buttons = xcb_input_get_device_button_mapping_map(reply.get());
            entry->second.assign(buttons,
                                 buttons + xcb_input_get_device_button_mapping_map_length(reply.get()));
        }
    }
    return entry->second;
}

} // namespace tarvex
