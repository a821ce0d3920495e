#pragma once

#include "Core/Geometry.h"
#include "Core/Grid/GridModel.h"

#include <optional>

namespace tarvex {

/// Converts between the unit square of a display and screen space (points, origin at the bottom-left of the
/// primary display, y up). Nothing is rounded.
class CoordinateTransformer {
public:
    /// The screen-space rectangle that a normalized rectangle covers on the given visible frame.
    [[nodiscard]] Rect toFrame(const NormalizedRect& rect, const Rect& visibleFrame) const;

    /// The normalized position of a screen point; none when the visible frame does not contain it
    /// (half-open: the right and the top edge are outside).
    [[nodiscard]] std::optional<NormalizedPoint> toNormalizedPoint(Point point,
                                                                   const Rect& visibleFrame) const;
};

} // namespace tarvex
