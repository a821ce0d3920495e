#pragma once

#include "App/Toolkit/Scene.h"
#include "Platform/Linux/Qt/QtFonts.h"

#include <QPointF>
#include <QRect>
#include <QRectF>

#include <array>
#include <optional>
#include <vector>

namespace tarvex {

/// The sides of an outline; they do not overlap, so that a see-through colour is even at the corners.
using OutlineSides = std::array<QRect, 4>;

/// Where the primitives of a scene lie in the picture of a view: pixels, origin at its top-left, y down. One
/// point is one pixel. Edges are rounded and then subtracted, so that neighbours neither gap nor overlap.
class SceneGeometry {
public:
    /// @param viewHeight in points, that of the view and of its picture
    explicit SceneGeometry(double viewHeight) : viewHeight_(viewHeight) {}

    /// None for a rectangle that is not finite.
    [[nodiscard]] std::optional<QRect> pixelsOf(const Rect& rect) const;

    /// A line of one pixel runs just inside the edge, and wider ones half on either side of it.
    [[nodiscard]] std::optional<OutlineSides> pixelsOf(const StrokeRect& stroke) const;

    /// The pixels of a line that runs upright or across; none for other ones.
    [[nodiscard]] std::optional<QRect> pixelsOf(const StrokeLine& line) const;

    /// Where a line of text has its baseline begin.
    [[nodiscard]] QPoint baselineOf(const TextLabel& label, const TextRun& run) const;

    /// Not rounded.
    [[nodiscard]] QRectF exactOf(const Rect& rect) const;

    [[nodiscard]] QPointF exactOf(Point point) const { return {point.x, viewHeight_ - point.y}; }

    /// Rectangles that hold all pixels that the primitive can touch, and of outlines not their inside.
    [[nodiscard]] std::vector<QRect> boundsOf(const ScenePrimitive& primitive, QtFonts& fonts) const;

private:
    double viewHeight_;
};

} // namespace tarvex
