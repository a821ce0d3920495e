#pragma once

#include "Platform/Linux/X11/XkbProtocol.h"
#include "Tests/Support/X11/XClient.h"

#include <array>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace tarvex::contract {

/// What the user's desktop does to the keyboard with the keyboard extension. Each call returns when the
/// server has processed it.
class XkbClient {
public:
    explicit XkbClient(const std::string& displayName) : client_{displayName} {
        const test::Owned<xcb_xkb_use_extension_reply_t> reply(xcb_xkb_use_extension_reply(
            client_.connection(),
            xcb_xkb_use_extension(client_.connection(), XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION),
            nullptr));
        if (!reply || reply->supported == 0) {
            throw std::runtime_error("the server lacks the keyboard extension");
        }
    }

    /// Has keys that are held repeat after so many milliseconds, and every so many from then on.
    void setRepeat(std::uint16_t delay, std::uint16_t interval) {
        const std::array<std::uint8_t, 32> allKeys = [] {
            std::array<std::uint8_t, 32> keys{};
            keys.fill(0xFF);
            return keys;
        }();
        constexpr std::uint32_t repeatKeys = XCB_XKB_BOOL_CTRL_REPEAT_KEYS;
        xcb_xkb_set_controls(client_.connection(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                             repeatKeys, repeatKeys, repeatKeys, delay, interval, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                             0, 0, 0, allKeys.data());
        client_.sync();
    }

    /// Switches to one of several layouts, counted from zero.
    void switchToLayout(std::uint8_t layout) {
        xcb_xkb_latch_lock_state(client_.connection(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, layout, 0, 0, 0);
        client_.sync();
    }

private:
    test::XClient client_;
};

} // namespace tarvex::contract
