#pragma once

#include "Tests/Support/X11/PixelGeometry.h"

namespace tarvex::test {

/// A part of a display as fractions of its usable area: from its left and top edge to its right and bottom
/// one.
struct ZoneSpan {
    double left = 0;
    double right = 1;
    double top = 0;
    double bottom = 1;
};

inline constexpr ZoneSpan leftHalf{0, 0.5, 0, 1};
inline constexpr ZoneSpan rightHalf{0.5, 1, 0, 1};

/// The frame of a window that covers that part, in root pixels: the whole margin at an outer edge of the
/// area, half of it at an edge that two zones share.
/// @param area the usable area of the display in root pixels
[[nodiscard]] inline PixelRect zoneFrame(const PixelRect& area, const ZoneSpan& span, double margin = 8) {
    const auto inset = [margin](double fraction) {
        return fraction == 0 || fraction == 1 ? margin : margin / 2;
    };
    const double left = area.x + span.left * area.width + inset(span.left);
    const double right = area.x + span.right * area.width - inset(span.right);
    const double top = area.y + span.top * area.height + inset(span.top);
    const double bottom = area.y + span.bottom * area.height - inset(span.bottom);
    return roundedEdges({left, top, right - left, bottom - top});
}

/// A point well inside that part of the area.
[[nodiscard]] inline PixelPoint pointIn(const PixelRect& area, const ZoneSpan& span) {
    return area.at((span.left + span.right) / 2, (span.top + span.bottom) / 2);
}

} // namespace tarvex::test
