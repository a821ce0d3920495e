#include "Platform/MacOS/AppKit/NativeColors.h"

namespace tarvex {

namespace {

NSColor* opaqueColor(const Color& color) {
    switch (color.name) {
    case ColorName::white:
        return [NSColor whiteColor];
    case ColorName::black:
        return [NSColor blackColor];
    case ColorName::gray:
        return [NSColor colorWithCalibratedWhite:color.lightness alpha:1];
    case ColorName::accent:
        return [NSColor controlAccentColor];
    case ColorName::blue:
        return [NSColor systemBlueColor];
    case ColorName::red:
        return [NSColor systemRedColor];
    case ColorName::clear:
        break;
    }
    return [NSColor clearColor];
}

} // namespace

NSColor* nativeColor(const Color& color) {
    NSColor* const opaque = opaqueColor(color);
    // Clear is black without alpha; giving it one would make it black. And one of the system's colours with
    // another alpha may be what it is now for good, where the opaque one follows the appearance.
    const bool hasItsAlpha = color.name == ColorName::clear || color.alpha == 1;
    return hasItsAlpha ? opaque : [opaque colorWithAlphaComponent:color.alpha];
}

NSColor* nativeColor(TextColor color) {
    return color == TextColor::secondaryLabel ? [NSColor secondaryLabelColor] : [NSColor labelColor];
}

} // namespace tarvex
