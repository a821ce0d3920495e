#pragma once

#include "Core/Geometry.h"

#import <Foundation/Foundation.h>

namespace tarvex {

/// The same place in the toolkit's types: both have points, y up.
[[nodiscard]] inline NSPoint nativePoint(const Point& point) {
    return NSMakePoint(point.x, point.y);
}

[[nodiscard]] inline NSSize nativeSize(const Size& size) {
    return NSMakeSize(size.width, size.height);
}

[[nodiscard]] inline NSRect nativeRect(const Rect& rect) {
    return NSMakeRect(rect.x, rect.y, rect.width, rect.height);
}

[[nodiscard]] inline Point pointOf(const NSPoint& point) {
    return {point.x, point.y};
}

[[nodiscard]] inline Size sizeOf(const NSSize& size) {
    return {size.width, size.height};
}

[[nodiscard]] inline Rect rectOf(const NSRect& rect) {
    return {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height};
}

} // namespace tarvex
