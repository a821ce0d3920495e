#include "Platform/Linux/Qt/SceneGeometry.h"

#include "Platform/Linux/X11/ViewPixels.h"

#include <algorithm>
#include <cmath>

namespace tarvex {

namespace {

/// How far a glyph may reach out of its box, in pixels.
constexpr int glyphOverhang = 3;

QRect rectOf(const PixelRect& pixels) {
    return {pixels.x, pixels.y, pixels.width, pixels.height};
}

bool isFinite(const Rect& rect) {
    return std::isfinite(rect.x) && std::isfinite(rect.y) && std::isfinite(rect.width) &&
           std::isfinite(rect.height);
}

bool isFinite(Point point) {
    return std::isfinite(point.x) && std::isfinite(point.y);
}

/// Lists where one primitive lies.
class BoundsCollector {
public:
    BoundsCollector(const SceneGeometry& geometry, QtFonts& fonts, std::vector<QRect>& bounds)
        : geometry_(&geometry), fonts_(&fonts), bounds_(&bounds) {}

    void operator()(const FillRect& fill) { add(geometry_->pixelsOf(fill.rect)); }

    void operator()(const StrokeRect& stroke) {
        if (const auto sides = geometry_->pixelsOf(stroke)) {
            bounds_->insert(bounds_->end(), sides->begin(), sides->end());
        }
    }

    void operator()(const StrokeLine& line) {
        if (const auto pixels = geometry_->pixelsOf(line)) {
            bounds_->push_back(*pixels);
        } else if (isFinite(line.start) && isFinite(line.end)) {
            addSmooth({std::min(line.start.x, line.end.x), std::min(line.start.y, line.end.y),
                       std::abs(line.end.x - line.start.x), std::abs(line.end.y - line.start.y)},
                      line.lineWidth);
        }
    }

    void operator()(const FillEllipse& fill) { addSmooth(fill.rect, 0); }

    void operator()(const StrokeEllipse& stroke) { addSmooth(stroke.rect, stroke.lineWidth); }

    void operator()(const FillRoundedRect& fill) { addSmooth(fill.rect, 0); }

    void operator()(const TextLabel& label) {
        const TextRun& run = fonts_->layOut(label.text, label.font);
        const QPoint baseline = geometry_->baselineOf(label, run);
        const auto width = static_cast<int>(run.size.width);
        const auto height = static_cast<int>(run.size.height);
        const QRect box(baseline.x(), baseline.y() + static_cast<int>(run.descent) - height, width, height);
        bounds_->push_back(box.adjusted(-glyphOverhang, -glyphOverhang, glyphOverhang, glyphOverhang));
    }

private:
    void add(const std::optional<QRect>& rect) {
        if (rect) {
            bounds_->push_back(*rect);
        }
    }

    /// Smooth edges reach into the pixel beyond.
    void addSmooth(const Rect& rect, double lineWidth) {
        if (isFinite(rect)) {
            const int margin = pixelWidthOf(lineWidth) / 2 + 2;
            add(geometry_->pixelsOf(rect)->adjusted(-margin, -margin, margin, margin));
        }
    }

    const SceneGeometry* geometry_;
    QtFonts* fonts_;
    std::vector<QRect>* bounds_;
};

} // namespace

std::optional<QRect> SceneGeometry::pixelsOf(const Rect& rect) const {
    const std::optional<PixelRect> pixels = pixelsOfViewRect(rect, viewHeight_);
    return pixels ? std::optional(rectOf(*pixels)) : std::nullopt;
}

std::optional<OutlineSides> SceneGeometry::pixelsOf(const StrokeRect& stroke) const {
    const std::optional<PixelSides> sides = pixelsOfOutline(stroke, viewHeight_);
    if (!sides) {
        return std::nullopt;
    }
    return OutlineSides{rectOf((*sides)[0]), rectOf((*sides)[1]), rectOf((*sides)[2]), rectOf((*sides)[3])};
}

std::optional<QRect> SceneGeometry::pixelsOf(const StrokeLine& line) const {
    if (!isFinite(line.start) || !isFinite(line.end) || !(line.lineWidth > 0)) {
        return std::nullopt;
    }
    const int width = pixelWidthOf(line.lineWidth);
    const int left = roundToPixel(std::min(line.start.x, line.end.x));
    const int right = roundToPixel(std::max(line.start.x, line.end.x));
    const int top = roundToPixel(viewHeight_ - std::max(line.start.y, line.end.y));
    const int bottom = roundToPixel(viewHeight_ - std::min(line.start.y, line.end.y));
    if (line.start.x == line.end.x) {
        return QRect(roundToPixel(line.start.x - width / 2.0), top, width, bottom - top);
    }
    if (line.start.y == line.end.y) {
        return QRect(left, roundToPixel(viewHeight_ - line.start.y - width / 2.0), right - left, width);
    }
    return std::nullopt;
}

QPoint SceneGeometry::baselineOf(const TextLabel& label, const TextRun& run) const {
    return {roundToPixel(label.origin.x),
            roundToPixel(viewHeight_ - label.origin.y) - static_cast<int>(run.descent)};
}

QRectF SceneGeometry::exactOf(const Rect& rect) const {
    return {rect.x, viewHeight_ - rect.maxY(), rect.width, rect.height};
}

std::vector<QRect> SceneGeometry::boundsOf(const ScenePrimitive& primitive, QtFonts& fonts) const {
    std::vector<QRect> bounds;
    std::visit(BoundsCollector(*this, fonts, bounds), primitive);
    return bounds;
}

} // namespace tarvex
