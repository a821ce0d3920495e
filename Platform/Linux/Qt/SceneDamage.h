#pragma once

#include "App/Toolkit/Scene.h"
#include "Platform/Linux/Qt/QtFonts.h"

#include <QRect>
#include <QRegion>

#include <vector>

namespace tarvex {

/// The pixels that may differ between the pictures of two scenes on the same ground: those of the primitives
/// that only one of them has, or that come in another order. Outlines count without their inside.
/// @param viewHeight in points
/// @param area the pixels of the picture; nothing beyond is told
[[nodiscard]] QRegion changedRegion(const Scene& before, const Scene& after, double viewHeight,
                                    const QRect& area, QtFonts& fonts);

/// The pixels of all the rectangles, cut to the area; the whole area when there are so many of them that
/// telling them apart would cost more than drawing everything.
[[nodiscard]] QRegion regionOfRects(std::vector<QRect> rects, const QRect& area);

} // namespace tarvex
