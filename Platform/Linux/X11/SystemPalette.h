#pragma once

#include <cstdint>

namespace tarvex {

/// The colours that belong to the system where no desktop theme gives them, 0xRRGGBB: clear enough to be told
/// from light and dark windows alike.
inline constexpr std::uint32_t systemBlue = 0x0A84FF;
inline constexpr std::uint32_t systemRed = 0xFF453A;

} // namespace tarvex
