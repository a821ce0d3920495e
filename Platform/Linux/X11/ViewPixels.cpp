#include "Platform/Linux/X11/ViewPixels.h"

#include <algorithm>
#include <cmath>

namespace tarvex {

namespace {

/// Wider lines are drawn in, so that every number fits a whole one.
constexpr double widestLine = 1e5;

} // namespace

std::optional<PixelRect> pixelsOfViewRect(const Rect& rect, double viewHeight) {
    if (!std::isfinite(rect.x) || !std::isfinite(rect.y) || !std::isfinite(rect.width) ||
        !std::isfinite(rect.height)) {
        return std::nullopt;
    }
    const int left = roundToPixel(rect.minX());
    const int top = roundToPixel(viewHeight - rect.maxY());
    return PixelRect{left, top, roundToPixel(rect.maxX()) - left,
                     roundToPixel(viewHeight - rect.minY()) - top};
}

int pixelWidthOf(double lineWidth) {
    return std::max(1, roundToPixel(std::min(lineWidth, widestLine)));
}

PixelSides insideSides(const PixelRect& outer, int width) {
    if (outer.width <= 2 * width || outer.height <= 2 * width) {
        return {outer};
    }
    const int inner = outer.height - 2 * width;
    return {PixelRect{outer.x, outer.y, outer.width, width},
            PixelRect{outer.x, outer.bottom() - width, outer.width, width},
            PixelRect{outer.x, outer.y + width, width, inner},
            PixelRect{outer.right() - width, outer.y + width, width, inner}};
}

std::optional<PixelSides> pixelsOfOutline(const StrokeRect& stroke, double viewHeight) {
    const std::optional<PixelRect> edge = pixelsOfViewRect(stroke.rect, viewHeight);
    if (!edge || !(stroke.lineWidth > 0)) {
        return std::nullopt;
    }
    const int width = pixelWidthOf(stroke.lineWidth);
    const int outside = width / 2;
    return insideSides(
        {edge->x - outside, edge->y - outside, edge->width + 2 * outside, edge->height + 2 * outside}, width);
}

} // namespace tarvex
