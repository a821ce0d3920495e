#pragma once

#include "Core/Geometry.h"
#include "Platform/Linux/X11/PixelRect.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace tarvex {

/// Rounds to the nearest whole pixel, halves upwards, so that a shared edge rounds the same from both sides.
/// A setting may be any number: what lies beyond a million pixels is drawn in, and what is no number counts
/// as 0.
[[nodiscard]] inline int roundToPixel(double value) {
    constexpr double farthest = 1e6;
    return std::isnan(value) ? 0 : static_cast<int>(std::floor(std::clamp(value, -farthest, farthest) + 0.5));
}

/// Where screen space and accessibility space lie on the root window. One point is one pixel.
///
/// Screen space: origin at the bottom-left of the primary monitor, y up. Accessibility space: origin at the
/// left of the primary monitor and the top of the highest monitor, y down.
struct DesktopLayout {
    int primaryLeft = 0;
    int primaryBottom = 0;
    /// The top of the monitor that reaches highest.
    int top = 0;

    bool operator==(const DesktopLayout&) const = default;

    /// The screen-space point at the centre of a root pixel: a pixel of the topmost row lies inside its
    /// screen, whose top edge is outside.
    [[nodiscard]] Point screenPointOfPixel(int x, int y) const {
        return {x + 0.5 - primaryLeft, primaryBottom - (y + 0.5)};
    }

    [[nodiscard]] Rect screenRectOfPixels(const PixelRect& rect) const {
        return {static_cast<double>(rect.x - primaryLeft), static_cast<double>(primaryBottom - rect.bottom()),
                static_cast<double>(rect.width), static_cast<double>(rect.height)};
    }

    /// The pixels of a screen-space rectangle. Edges are rounded, then subtracted, so that neighbouring
    /// rectangles neither gap nor overlap by a pixel.
    [[nodiscard]] PixelRect pixelsOfScreenRect(const Rect& rect) const {
        const int left = roundToPixel(rect.minX() + primaryLeft);
        const int right = roundToPixel(rect.maxX() + primaryLeft);
        const int upper = roundToPixel(primaryBottom - rect.maxY());
        const int bottom = roundToPixel(primaryBottom - rect.minY());
        return {left, upper, right - left, bottom - upper};
    }

    /// The pixels of a rectangle in accessibility space, rounded likewise.
    [[nodiscard]] PixelRect pixelsOfAccessibilityRect(const Rect& rect) const {
        const int left = roundToPixel(rect.minX() + primaryLeft);
        const int right = roundToPixel(rect.maxX() + primaryLeft);
        const int upper = roundToPixel(rect.minY() + top);
        const int bottom = roundToPixel(rect.maxY() + top);
        return {left, upper, right - left, bottom - upper};
    }

    [[nodiscard]] Point accessibilityPointOfPixel(int x, int y) const {
        return {static_cast<double>(x - primaryLeft), static_cast<double>(y - top)};
    }
};

/// Answers how the desktop is laid out now.
class DesktopLayoutProvider {
public:
    DesktopLayoutProvider() = default;
    DesktopLayoutProvider(const DesktopLayoutProvider&) = delete;
    DesktopLayoutProvider& operator=(const DesktopLayoutProvider&) = delete;
    DesktopLayoutProvider(DesktopLayoutProvider&&) = delete;
    DesktopLayoutProvider& operator=(DesktopLayoutProvider&&) = delete;
    virtual ~DesktopLayoutProvider() = default;

    /// Does not wait for the server unless monitors changed since the last call.
    [[nodiscard]] virtual const DesktopLayout& layout() = 0;
};

} // namespace tarvex
