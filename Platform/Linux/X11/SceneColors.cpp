#include "Platform/Linux/X11/SceneColors.h"

#include "Platform/Linux/X11/SystemPalette.h"

#include <algorithm>
#include <cmath>

namespace tarvex {

namespace {

constexpr std::uint32_t whiteRgb = 0xFFFFFF;

} // namespace

std::uint32_t rgbOf(const Color& color, std::uint32_t accentColor) {
    switch (color.name) {
    case ColorName::white:
        return whiteRgb;
    case ColorName::accent:
        return accentColor & whiteRgb;
    case ColorName::blue:
        return systemBlue;
    case ColorName::red:
        return systemRed;
    case ColorName::gray:
        return static_cast<std::uint32_t>(std::lround(std::clamp(color.lightness, 0.0, 1.0) * 255)) *
               0x010101;
    case ColorName::clear:
    case ColorName::black:
        break;
    }
    return 0;
}

std::uint32_t alphaByteOf(const Color& color) {
    const double alpha = color.name == ColorName::clear || std::isnan(color.alpha) ? 0 : color.alpha;
    return static_cast<std::uint32_t>(std::lround(std::clamp(alpha, 0.0, 1.0) * 255));
}

PixelColor premultiplied(std::uint32_t rgb, std::uint32_t alpha) {
    PixelColor result = alpha << 24U;
    for (const unsigned shift : {0U, 8U, 16U}) {
        result |= ((rgb >> shift & 0xFFU) * alpha + 127) / 255 << shift;
    }
    return result;
}

} // namespace tarvex
