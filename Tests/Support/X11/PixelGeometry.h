#pragma once

#include "Core/Geometry.h"

#include <cmath>
#include <cstdint>
#include <ostream>
#include <string>

namespace tarvex::test {

/// A position in root pixels: origin at the top-left of the X screen, y down.
struct PixelPoint {
    int x = 0;
    int y = 0;

    bool operator==(const PixelPoint&) const = default;
};

/// A rectangle in root pixels.
struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool operator==(const PixelRect&) const = default;

    [[nodiscard]] PixelPoint center() const { return {x + width / 2, y + height / 2}; }

    [[nodiscard]] PixelPoint at(double fractionX, double fractionY) const {
        return {x + static_cast<int>(width * fractionX), y + static_cast<int>(height * fractionY)};
    }
};

/// Sizes of the four borders of a window, in pixels.
struct PixelExtents {
    int left = 0;
    int right = 0;
    int top = 0;
    int bottom = 0;

    bool operator==(const PixelExtents&) const = default;
};

[[nodiscard]] inline PixelRect grown(const PixelRect& rect, const PixelExtents& by) {
    return {rect.x - by.left, rect.y - by.top, rect.width + by.left + by.right,
            rect.height + by.top + by.bottom};
}

[[nodiscard]] inline PixelRect shrunk(const PixelRect& rect, const PixelExtents& by) {
    return grown(rect, {-by.left, -by.right, -by.top, -by.bottom});
}

/// Rounds the edges of a rectangle that is already y down, then subtracts, so that neighbours stay
/// neighbours.
[[nodiscard]] inline PixelRect roundedEdges(const Rect& rect) {
    const int left = static_cast<int>(std::lround(rect.minX()));
    const int top = static_cast<int>(std::lround(rect.minY()));
    return {left, top, static_cast<int>(std::lround(rect.maxX())) - left,
            static_cast<int>(std::lround(rect.maxY())) - top};
}

[[nodiscard]] inline std::string describe(const PixelRect& rect) {
    return std::to_string(rect.width) + "x" + std::to_string(rect.height) + " at " + std::to_string(rect.x) +
           "," + std::to_string(rect.y);
}

inline std::ostream& operator<<(std::ostream& stream, const PixelRect& rect) {
    return stream << describe(rect);
}

inline std::ostream& operator<<(std::ostream& stream, const PixelExtents& extents) {
    return stream << "left " << extents.left << " right " << extents.right << " top " << extents.top
                  << " bottom " << extents.bottom;
}

} // namespace tarvex::test
