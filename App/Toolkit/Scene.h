#pragma once

#include "Core/Geometry.h"

#include <cstdint>
#include <variant>
#include <vector>

namespace tarvex {

/// A colour without its alpha: plain, or one that belongs to the system and is resolved by the adapter.
enum class ColorName : std::uint8_t { clear, white, black, accent };

struct Color {
    ColorName name = ColorName::clear;
    /// 0 (see-through) to 1 (opaque).
    double alpha = 0;

    bool operator==(const Color&) const = default;
};

/// A filled rectangle, composited over what is below it.
struct FillRect {
    Rect rect;
    Color color;

    bool operator==(const FillRect&) const = default;
};

/// The outline of a rectangle. The line is centred on the edge.
struct StrokeRect {
    Rect rect;
    Color color;
    /// In points.
    double lineWidth = 1;

    bool operator==(const StrokeRect&) const = default;
};

using ScenePrimitive = std::variant<FillRect, StrokeRect>;

/// What a view shows: primitives in drawing order, in view coordinates (points, origin at the bottom-left of
/// the view, y up). It is drawn over a see-through background, each primitive over the ones before it.
struct Scene {
    std::vector<ScenePrimitive> primitives;

    bool operator==(const Scene&) const = default;
};

} // namespace tarvex
