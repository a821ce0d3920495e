#include "Platform/Linux/X11/ScenePixels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace tarvex {

namespace {

/// Without blending, a faint white line would vanish on a light window and glare on a dark one.
constexpr PixelColor shapedLineColor = 0xFFB4B8BE;
/// What a see-through fill leaves of itself without blending. A pattern inside would cost more than it shows:
/// the server copies and repaints whatever lies below a shape rectangle by rectangle, and every program there
/// is told of each one that goes away. Fine lines doubled the time that a window takes to its zone.
constexpr int shapedFillBorder = 10;
/// How far past the view's edges coordinates are followed, in points: far enough for every visible line.
constexpr double reach = 4096;

/// Turns the primitives of one scene into fills.
class FillBuilder {
public:
    FillBuilder(const ScenePlacement& placement, OverlayStyle style)
        : placement_(&placement),
          style_(style),
          window_(placement.layout.pixelsOfScreenRect(placement.viewFrame)) {}

    void operator()(const FillRect& fill) {
        const std::optional<PixelRect> rect = pixelsOf(fill.rect);
        const std::uint32_t alpha = alphaByteOf(fill.color);
        if (!rect || alpha == 0) {
            return;
        }
        const std::uint32_t rgb = rgbOf(fill.color, placement_->accentColor);
        if (style_ == OverlayStyle::blended || alpha == 0xFF) {
            add(*rect, premultiplied(rgb, alpha));
        } else {
            addFrame(*rect, shapedFillBorder, premultiplied(rgb, 0xFF));
        }
    }

    void operator()(const StrokeRect& stroke) {
        const std::optional<PixelRect> rect = pixelsOf(stroke.rect);
        const std::uint32_t alpha = alphaByteOf(stroke.color);
        if (!rect || alpha == 0 || !(stroke.lineWidth > 0)) {
            return;
        }
        const std::uint32_t rgb = rgbOf(stroke.color, placement_->accentColor);
        const int width = std::max(1, roundToPixel(std::min(stroke.lineWidth, reach)));
        const int outside = width / 2;
        const PixelRect outer{rect->x - outside, rect->y - outside, rect->width + 2 * outside,
                              rect->height + 2 * outside};
        const bool isFaintWhite = stroke.color.name == ColorName::white && alpha < 0xFF;
        addFrame(outer, width,
                 style_ == OverlayStyle::blended ? premultiplied(rgb, alpha)
                 : isFaintWhite                  ? shapedLineColor
                                                 : premultiplied(rgb, 0xFF));
    }

    /// Zones are shown by rectangles alone, which the server draws by itself; nothing else is drawn here.
    template <typename Primitive>
    void operator()(const Primitive& /*primitive*/) {}

    [[nodiscard]] std::vector<PixelFill> take() { return std::move(fills_); }

private:
    /// In window coordinates. Edges far outside are drawn in, so that every number fits a whole one.
    [[nodiscard]] std::optional<PixelRect> pixelsOf(const Rect& rect) const {
        const Rect& frame = placement_->viewFrame;
        const std::array<double, 4> edges{rect.minX(), rect.minY(), rect.maxX(), rect.maxY()};
        if (!std::all_of(edges.begin(), edges.end(), [](double edge) { return std::isfinite(edge); })) {
            return std::nullopt;
        }
        const double left = std::clamp(edges[0], -reach, frame.width + reach);
        const double bottom = std::clamp(edges[1], -reach, frame.height + reach);
        const double right = std::clamp(edges[2], -reach, frame.width + reach);
        const double top = std::clamp(edges[3], -reach, frame.height + reach);
        PixelRect pixels = placement_->layout.pixelsOfScreenRect(
            {frame.x + left, frame.y + bottom, right - left, top - bottom});
        pixels.x -= window_.x;
        pixels.y -= window_.y;
        return pixels.width > 0 && pixels.height > 0 ? std::optional(pixels) : std::nullopt;
    }

    void add(const PixelRect& rect, PixelColor color) {
        const int left = std::max(rect.x, 0);
        const int top = std::max(rect.y, 0);
        const int right = std::min(rect.right(), window_.width);
        const int bottom = std::min(rect.bottom(), window_.height);
        if (left < right && top < bottom) {
            fills_.push_back({{left, top, right - left, bottom - top}, color});
        }
    }

    /// The band of the given width along the inside of the rectangle, each pixel once.
    void addFrame(const PixelRect& outer, int width, PixelColor color) {
        if (outer.width <= 2 * width || outer.height <= 2 * width) {
            add(outer, color);
            return;
        }
        const int inner = outer.height - 2 * width;
        add({outer.x, outer.y, outer.width, width}, color);
        add({outer.x, outer.bottom() - width, outer.width, width}, color);
        add({outer.x, outer.y + width, width, inner}, color);
        add({outer.right() - width, outer.y + width, width, inner}, color);
    }

    const ScenePlacement* placement_;
    OverlayStyle style_;
    PixelRect window_;
    std::vector<PixelFill> fills_;
};

} // namespace

std::vector<PixelFill> pixelFillsOfScene(const Scene& scene, const ScenePlacement& placement,
                                         OverlayStyle style) {
    FillBuilder builder(placement, style);
    for (const ScenePrimitive& primitive : scene.primitives) {
        std::visit(builder, primitive);
    }
    return builder.take();
}

} // namespace tarvex
