#pragma once

#include "App/Hotkeys/HotkeyPlatform.h"

namespace tarvex {

/// Hotkeys through the Carbon Event Manager, the one interface that lets a program have a key combination
/// without listening to the keyboard. Status codes are OSStatus values.
class CarbonHotkeyPlatform final : public HotkeyPlatform {
public:
    [[nodiscard]] std::unique_ptr<HotkeyHandler> installHandler(PressHandler handler) override;
    [[nodiscard]] HotkeyRegistration registerHotkey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                    const HotkeyIdentifier& identifier) override;
};

} // namespace tarvex
