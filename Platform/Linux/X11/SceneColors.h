#pragma once

#include "App/Toolkit/Scene.h"

#include <cstdint>

namespace tarvex {

/// A premultiplied colour, 0xAARRGGBB. 0 is see-through.
using PixelColor = std::uint32_t;

/// The colour without its alpha, 0xRRGGBB: one rule for everything that is drawn, so that a zone looks the
/// same under a drag and in the editor. Clear counts as black.
/// @param accentColor 0xRRGGBB
[[nodiscard]] std::uint32_t rgbOf(const Color& color, std::uint32_t accentColor);

/// The alpha, 0 to 255; 0 for clear, and for what is no number.
[[nodiscard]] std::uint32_t alphaByteOf(const Color& color);

/// @param alpha 0 to 255
[[nodiscard]] PixelColor premultiplied(std::uint32_t rgb, std::uint32_t alpha);

} // namespace tarvex
