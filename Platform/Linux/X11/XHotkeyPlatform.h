#pragma once

#include "App/Hotkeys/HotkeyPlatform.h"
#include "Platform/Linux/X11/XHotkeyGrabs.h"

#include <cstdint>
#include <memory>

namespace tarvex {

/// Hotkeys as key grabs on the root window of the connection's screen.
///
/// A refused registration leaves nothing grabbed and gives no reference. Its status is an X error code:
///  - Access (10): another client has the combination, or one of its lock variants, or this program has
///    registered it before. The server would let a client grab twice, but only one of two ids could be meant;
///  - Value (2): the key code is none of a key that X can name;
///  - Match (8): no key of the keyboard stands for one of the modifiers;
/// or XConnection::connectionLost. Of the mask only Command, Option, Control and Shift count.
class XHotkeyPlatform final : public HotkeyPlatform {
public:
    /// Connection and pump must outlive the platform; hotkeys and handlers need not go before it.
    /// @param lost called from the pump; it must not destroy the platform
    XHotkeyPlatform(
        XConnection& connection, XEventPump& pump,
        HotkeyLossHandler lost = [](const HotkeyIdentifier&, std::int32_t) {});

    /// Never null. The handler of a later call takes over.
    [[nodiscard]] std::unique_ptr<HotkeyHandler> installHandler(PressHandler handler) override;

    /// Waits for the server.
    [[nodiscard]] HotkeyRegistration registerHotkey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                    const HotkeyIdentifier& identifier) override;

private:
    void handlePress(const HotkeyIdentifier& identifier) const;

    std::shared_ptr<PressHandler> handler_;
    std::shared_ptr<XHotkeyGrabs> grabs_;
};

} // namespace tarvex
