#pragma once

#include "Platform/Linux/X11/XConnection.h"
#include "Platform/Linux/X11/XEventPump.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace tarvex {

/// Whether a button of that number is a step of a wheel, in any direction, as the X server counts them.
[[nodiscard]] constexpr bool isWheelButton(std::uint32_t button) {
    return button >= 4 && button <= 7;
}

/// Hears of every press of a mouse button, whoever gets it, for as long as it lives (XInput 2.2, raw events).
/// Steps of a wheel are no presses. On a server without that extension it hears of none.
class ButtonPressWatch {
public:
    /// The connection and the pump must outlive the watch. Waits for the server.
    /// @param pressed called before the window that gets the press is told
    ButtonPressWatch(XConnection& connection, XEventPump& pump, std::function<void()> pressed);

    ButtonPressWatch(const ButtonPressWatch&) = delete;
    ButtonPressWatch& operator=(const ButtonPressWatch&) = delete;
    ButtonPressWatch(ButtonPressWatch&&) = delete;
    ButtonPressWatch& operator=(ButtonPressWatch&&) = delete;
    ~ButtonPressWatch();

private:
    void select(std::uint32_t eventMask);
    void handle(const xcb_generic_event_t& event);

    XConnection* connection_;
    std::function<void()> pressed_;
    std::uint8_t opcode_ = 0;
    /// The user's pointer. Its own selection leaves those on all pointers together alone.
    std::uint16_t device_ = 0;
    std::unique_ptr<XEventPump::Subscription> subscription_;
};

} // namespace tarvex
