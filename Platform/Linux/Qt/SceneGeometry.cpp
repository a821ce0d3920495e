#include "Platform/Linux/Qt/SceneGeometry.h"

#include "Platform/Linux/X11/DesktopLayout.h"

#include <algorithm>
#include <cmath>

namespace tarvex {

namespace {

/// Wider lines are drawn in, so that every number fits a whole one.
constexpr double widestLine = 1e5;
/// How far a glyph may reach out of its box, in pixels.
constexpr int glyphOverhang = 3;

int pixelWidthOf(double lineWidth) {
    return std::max(1, roundToPixel(std::min(lineWidth, widestLine)));
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
    if (!isFinite(rect)) {
        return std::nullopt;
    }
    const int left = roundToPixel(rect.minX());
    const int top = roundToPixel(viewHeight_ - rect.maxY());
    return QRect(left, top, roundToPixel(rect.maxX()) - left, roundToPixel(viewHeight_ - rect.minY()) - top);
}

std::optional<OutlineSides> SceneGeometry::pixelsOf(const StrokeRect& stroke) const {
    const auto edge = pixelsOf(stroke.rect);
    if (!edge || !(stroke.lineWidth > 0)) {
        return std::nullopt;
    }
    const int width = pixelWidthOf(stroke.lineWidth);
    const int outside = width / 2;
    const QRect outer = edge->adjusted(-outside, -outside, outside, outside);
    if (outer.width() < 2 * width || outer.height() < 2 * width) {
        return OutlineSides{outer, QRect(), QRect(), QRect()};
    }
    const int inner = outer.height() - 2 * width;
    const int bottom = outer.y() + outer.height() - width;
    const int right = outer.x() + outer.width() - width;
    return OutlineSides{
        QRect(outer.x(), outer.y(), outer.width(), width), QRect(outer.x(), bottom, outer.width(), width),
        QRect(outer.x(), outer.y() + width, width, inner), QRect(right, outer.y() + width, width, inner)};
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
