#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tarvex {

/// Port: the keyboard layout that the user has chosen. Nothing throws.
class KeyboardLayoutPlatform {
public:
    KeyboardLayoutPlatform() = default;
    KeyboardLayoutPlatform(const KeyboardLayoutPlatform&) = delete;
    KeyboardLayoutPlatform& operator=(const KeyboardLayoutPlatform&) = delete;
    KeyboardLayoutPlatform(KeyboardLayoutPlatform&&) = delete;
    KeyboardLayoutPlatform& operator=(KeyboardLayoutPlatform&&) = delete;
    virtual ~KeyboardLayoutPlatform() = default;

    /// What the key gives without any modifier, as the key caps would show it (UTF-8): the character itself
    /// for a dead key, not upper-cased. None when the layout gives nothing for it.
    /// @param keyCode the virtual key code of the physical key
    [[nodiscard]] virtual std::optional<std::string> unshiftedCharacter(std::uint16_t keyCode) = 0;

    /// The text in capitals, by the rules of Unicode.
    [[nodiscard]] virtual std::string upperCased(const std::string& text) = 0;
};

} // namespace tarvex
