#pragma once

#include "App/Hotkeys/KeyboardLayoutPlatform.h"

namespace tarvex {

/// The keyboard layout of the Text Input Sources service, read afresh on every call, since the user may
/// switch it at any time. Main thread only.
class TextInputKeyboardLayout final : public KeyboardLayoutPlatform {
public:
    [[nodiscard]] std::optional<std::string> unshiftedCharacter(std::uint16_t keyCode) override;
    [[nodiscard]] std::string upperCased(const std::string& text) override;
};

} // namespace tarvex
