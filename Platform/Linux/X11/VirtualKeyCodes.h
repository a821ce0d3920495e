#pragma once

#include <cstdint>
#include <optional>

namespace tarvex {

// Virtual key codes (Apple, HIToolbox Events.h) name keys by their place on the keyboard, whatever the layout
// prints on them. The X server's key codes do so too: they are the kernel's, plus eight.

/// None for a key that has no virtual key code.
[[nodiscard]] std::optional<std::uint16_t> virtualKeyCodeOf(std::uint8_t xKeyCode);

/// None for a key that the X server cannot name: of all published codes only Function.
[[nodiscard]] std::optional<std::uint8_t> xKeyCodeOf(std::uint16_t virtualKeyCode);

/// Whether the key is one that is held while others are pressed, or a lock.
[[nodiscard]] bool isModifierKey(std::uint16_t virtualKeyCode);

} // namespace tarvex
