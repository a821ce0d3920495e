#pragma once

#include <algorithm>

namespace tarvex {

/// A position in points. The coordinate space is stated where a point is used.
struct Point {
    double x = 0;
    double y = 0;

    bool operator==(const Point&) const = default;
};

/// An extent in points.
struct Size {
    double width = 0;
    double height = 0;

    bool operator==(const Size&) const = default;
};

/// An axis-aligned rectangle in points, given by the corner with the smallest coordinates and its extent.
/// Containment is half-open: the edges at minX and minY belong to the rectangle, those at maxX and maxY do
/// not, so that neighbouring rectangles never share a point.
struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    [[nodiscard]] double minX() const { return x; }

    [[nodiscard]] double minY() const { return y; }

    [[nodiscard]] double maxX() const { return x + width; }

    [[nodiscard]] double maxY() const { return y + height; }

    [[nodiscard]] Point origin() const { return {x, y}; }

    [[nodiscard]] Size size() const { return {width, height}; }

    /// True when the rectangle covers no area.
    [[nodiscard]] bool isEmpty() const { return width <= 0 || height <= 0; }

    [[nodiscard]] bool contains(Point point) const {
        return point.x >= minX() && point.x < maxX() && point.y >= minY() && point.y < maxY();
    }

    /// The same extent, moved by (dx, dy).
    [[nodiscard]] Rect translated(double dx, double dy) const { return {x + dx, y + dy, width, height}; }

    /// The smallest rectangle that covers both.
    [[nodiscard]] Rect unionWith(const Rect& other) const {
        const double left = std::min(minX(), other.minX());
        const double bottom = std::min(minY(), other.minY());
        return {left, bottom, std::max(maxX(), other.maxX()) - left, std::max(maxY(), other.maxY()) - bottom};
    }

    bool operator==(const Rect&) const = default;
};

} // namespace tarvex
