#pragma once

#include "App/Toolkit/Scene.h"
#include "Platform/Linux/X11/DesktopLayout.h"

#include <array>
#include <optional>

namespace tarvex {

// Where the rectangles of a scene lie in the picture of a view: pixels, origin at its top-left, y down. One
// point is one pixel. Whoever draws a scene, the toolkit or the server, goes by this, so that a zone looks
// the same under a drag and in the editor.

/// The sides of an outline; they do not overlap, so that a see-through colour is even at the corners. Those
/// that are not needed are empty.
using PixelSides = std::array<PixelRect, 4>;

/// Edges are rounded and then subtracted, so that neighbours neither gap nor overlap. None for a rectangle
/// that is not finite.
/// @param rect in view coordinates: points, origin at the bottom-left, y up
/// @param viewHeight in points
[[nodiscard]] std::optional<PixelRect> pixelsOfViewRect(const Rect& rect, double viewHeight);

/// At least one pixel.
/// @param lineWidth in points
[[nodiscard]] int pixelWidthOf(double lineWidth);

/// The band of that width along the inside of a rectangle.
[[nodiscard]] PixelSides insideSides(const PixelRect& outer, int width);

/// A line of one pixel runs just inside the edge, and wider ones half on either side of it. None for what is
/// not finite or has no width.
[[nodiscard]] std::optional<PixelSides> pixelsOfOutline(const StrokeRect& stroke, double viewHeight);

} // namespace tarvex
