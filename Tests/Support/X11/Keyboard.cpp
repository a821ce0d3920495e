#include "Tests/Support/X11/Keyboard.h"

#include <xcb/xtest.h>

#include <exception>
#include <stdexcept>

namespace tarvex::test {

Keyboard::~Keyboard() {
    try {
        while (!down_.empty()) {
            releaseKey(*down_.begin());
        }
    } catch (const std::exception&) {
        // The server is gone, and its keys with it.
        down_.clear();
    }
}

void Keyboard::press(std::uint32_t keysym) {
    pressKey(keycodeOf(keysym));
}

void Keyboard::release(std::uint32_t keysym) {
    releaseKey(keycodeOf(keysym));
}

void Keyboard::pressKey(std::uint8_t keycode) {
    down_.insert(keycode);
    fake(XCB_KEY_PRESS, keycode);
}

void Keyboard::releaseKey(std::uint8_t keycode) {
    down_.erase(keycode);
    fake(XCB_KEY_RELEASE, keycode);
}

std::uint8_t Keyboard::keycodeOf(std::uint32_t keysym) {
    const xcb_setup_t* setup = xcb_get_setup(client_.connection());
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const Owned<xcb_get_keyboard_mapping_reply_t> mapping(xcb_get_keyboard_mapping_reply(
        client_.connection(), xcb_get_keyboard_mapping(client_.connection(), setup->min_keycode, count),
        nullptr));
    if (!mapping) {
        throw std::runtime_error("no keyboard mapping");
    }
    const xcb_keysym_t* keysyms = xcb_get_keyboard_mapping_keysyms(mapping.get());
    const int length = xcb_get_keyboard_mapping_keysyms_length(mapping.get());
    for (int index = 0; index < length; ++index) {
        if (keysyms[index] == keysym) {
            return static_cast<std::uint8_t>(setup->min_keycode + index / mapping->keysyms_per_keycode);
        }
    }
    throw std::runtime_error("the keyboard has no key for keysym " + std::to_string(keysym));
}

void Keyboard::fake(std::uint8_t type, std::uint8_t keycode) {
    xcb_test_fake_input(client_.connection(), type, keycode, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
    client_.sync();
}

} // namespace tarvex::test
