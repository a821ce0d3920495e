#pragma once

#include "Core/Geometry.h"

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace tarvex {

/// A colour without its alpha: plain, or one that belongs to the system and is resolved by the adapter.
/// accent is the user's own highlight; blue and red are the system's.
enum class ColorName : std::uint8_t { clear, white, black, gray, accent, blue, red };

/// A colour that a primitive is drawn with.
struct Color {
    ColorName name = ColorName::clear;
    /// 0 (see-through) to 1 (opaque).
    double alpha = 0;
    /// How light a gray is, from 0 (black) to 1 (white); other colours leave it alone.
    double lightness = 0;

    bool operator==(const Color&) const = default;
};

/// A face of the system's own font. Weights are those of CSS: 400 is regular, 500 medium, 600 semibold.
struct Font {
    /// In points.
    double size = 13;
    int weight = 400;
    /// All digits are equally wide, so that a number that changes does not jump.
    bool hasMonospacedDigits = false;

    bool operator==(const Font&) const = default;
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

/// A straight line with square ends, half of its width on either side.
struct StrokeLine {
    Point start;
    Point end;
    Color color;
    /// In points.
    double lineWidth = 1;

    bool operator==(const StrokeLine&) const = default;
};

/// A filled ellipse inside a rectangle.
struct FillEllipse {
    Rect rect;
    Color color;

    bool operator==(const FillEllipse&) const = default;
};

/// The outline of an ellipse inside a rectangle. The line is centred on the edge.
struct StrokeEllipse {
    Rect rect;
    Color color;
    /// In points.
    double lineWidth = 1;

    bool operator==(const StrokeEllipse&) const = default;
};

/// A filled rectangle with rounded corners.
struct FillRoundedRect {
    Rect rect;
    /// The radii of each corner, in points.
    Size radii;
    Color color;

    bool operator==(const FillRoundedRect&) const = default;
};

/// One line of text. Its box, as a TextMeasurer gives it, has its bottom-left corner at the origin.
struct TextLabel {
    Point origin;
    /// UTF-8.
    std::string text;
    Font font;
    Color color;

    bool operator==(const TextLabel&) const = default;
};

/// One step of drawing, in the view's coordinates.
using ScenePrimitive =
    std::variant<FillRect, StrokeRect, StrokeLine, FillEllipse, StrokeEllipse, FillRoundedRect, TextLabel>;

/// What a view shows: primitives in drawing order, in view coordinates (points, origin at the bottom-left of
/// the view, y up). It is drawn over a see-through background, each primitive over the ones before it. An
/// adapter may move the edges of an outline to whole pixels.
struct Scene {
    std::vector<ScenePrimitive> primitives;

    bool operator==(const Scene&) const = default;
};

} // namespace tarvex
