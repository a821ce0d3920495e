#include "Core/Grid/CoordinateTransformer.h"

namespace tarvex {

Rect CoordinateTransformer::toFrame(const NormalizedRect& rect, const Rect& visibleFrame) const {
    return {visibleFrame.minX() + rect.x() * visibleFrame.width,
            visibleFrame.maxY() - (rect.y() + rect.height()) * visibleFrame.height,
            rect.width() * visibleFrame.width, rect.height() * visibleFrame.height};
}

std::optional<NormalizedPoint> CoordinateTransformer::toNormalizedPoint(Point point,
                                                                        const Rect& visibleFrame) const {
    if (!visibleFrame.contains(point)) {
        return std::nullopt;
    }
    return NormalizedPoint((point.x - visibleFrame.minX()) / visibleFrame.width,
                           (visibleFrame.maxY() - point.y) / visibleFrame.height);
}

} // namespace tarvex
