#pragma once

#include <cstdint>

namespace tarvex {

/// A pixel, as the X server counts them.
struct PixelPlace {
    std::int16_t x = 0;
    std::int16_t y = 0;

    bool operator==(const PixelPlace&) const = default;
};

} // namespace tarvex
