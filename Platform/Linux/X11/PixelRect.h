#pragma once

#include <algorithm>

namespace tarvex {

/// A rectangle of whole pixels on the root window, origin at its top-left, y down; of a window's own pixels
/// where that is said.
struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    [[nodiscard]] int right() const { return x + width; }

    [[nodiscard]] int bottom() const { return y + height; }

    [[nodiscard]] bool isEmpty() const { return width <= 0 || height <= 0; }

    bool operator==(const PixelRect&) const = default;
};

/// The pixels that are in both; empty when there are none.
[[nodiscard]] inline PixelRect intersectionOf(const PixelRect& one, const PixelRect& other) {
    const int left = std::max(one.x, other.x);
    const int top = std::max(one.y, other.y);
    return {left, top, std::max(0, std::min(one.right(), other.right()) - left),
            std::max(0, std::min(one.bottom(), other.bottom()) - top)};
}

/// Whether some pixel is in both.
[[nodiscard]] inline bool intersect(const PixelRect& one, const PixelRect& other) {
    return !intersectionOf(one, other).isEmpty();
}

/// The smallest rectangle around both; an empty one adds nothing.
[[nodiscard]] inline PixelRect boundsOf(const PixelRect& one, const PixelRect& other) {
    if (one.isEmpty() || other.isEmpty()) {
        return one.isEmpty() ? other : one;
    }
    const int left = std::min(one.x, other.x);
    const int top = std::min(one.y, other.y);
    return {left, top, std::max(one.right(), other.right()) - left,
            std::max(one.bottom(), other.bottom()) - top};
}

} // namespace tarvex
