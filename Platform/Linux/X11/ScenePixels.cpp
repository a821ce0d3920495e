#include "Platform/Linux/X11/ScenePixels.h"

#include "Platform/Linux/X11/ViewPixels.h"

#include <algorithm>
#include <optional>

namespace tarvex {

namespace {

/// Without blending, a faint white line would vanish on a light window and glare on a dark one.
constexpr PixelColor shapedLineColor = 0xFFB4B8BE;
/// What a see-through fill leaves of itself without blending. A pattern inside would cost more than it shows:
/// the server copies and repaints whatever lies below a shape rectangle by rectangle, and every program there
/// is told of each one that goes away. Fine lines doubled the time that a window takes to its zone.
constexpr int shapedFillBorder = 10;

/// Turns the primitives of one scene into fills.
class FillBuilder {
public:
    FillBuilder(const ScenePlacement& placement, OverlayStyle style)
        : placement_(&placement),
          style_(style),
          window_(placement.layout.pixelsOfScreenRect(placement.viewFrame)),
          viewLeft_(placement.viewFrame.x + placement.layout.primaryLeft - window_.x),
          viewBottom_(placement.layout.primaryBottom - placement.viewFrame.y - window_.y) {}

    void operator()(const FillRect& fill) {
        const std::optional<PixelRect> rect = pixelsOfViewRect(inWindow(fill.rect), viewBottom_);
        const std::uint32_t alpha = alphaByteOf(fill.color);
        if (!rect || alpha == 0) {
            return;
        }
        const std::uint32_t rgb = rgbOf(fill.color, placement_->accentColor);
        if (style_ == OverlayStyle::blended || alpha == 0xFF) {
            add(*rect, premultiplied(rgb, alpha));
        } else {
            add(insideSides(*rect, shapedFillBorder), premultiplied(rgb, 0xFF));
        }
    }

    void operator()(const StrokeRect& stroke) {
        const std::optional<PixelSides> sides =
            pixelsOfOutline({inWindow(stroke.rect), stroke.color, stroke.lineWidth}, viewBottom_);
        const std::uint32_t alpha = alphaByteOf(stroke.color);
        if (!sides || alpha == 0) {
            return;
        }
        const std::uint32_t rgb = rgbOf(stroke.color, placement_->accentColor);
        const bool isFaintWhite = stroke.color.name == ColorName::white && alpha < 0xFF;
        add(*sides, style_ == OverlayStyle::blended ? premultiplied(rgb, alpha)
                    : isFaintWhite                  ? shapedLineColor
                                                    : premultiplied(rgb, 0xFF));
    }

    /// Zones are shown by rectangles alone, which the server draws by itself; nothing else is drawn here.
    template <typename Primitive>
    void operator()(const Primitive& /*primitive*/) {}

    [[nodiscard]] std::vector<PixelFill> take() { return std::move(fills_); }

private:
    /// A view that does not begin on a whole pixel is shown by a window that does.
    [[nodiscard]] Rect inWindow(const Rect& rect) const {
        return {rect.x + viewLeft_, rect.y, rect.width, rect.height};
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

    void add(const PixelSides& sides, PixelColor color) {
        for (const PixelRect& side : sides) {
            add(side, color);
        }
    }

    const ScenePlacement* placement_;
    OverlayStyle style_;
    PixelRect window_;
    /// The view's left and bottom edge in the window, in pixels; 0 and its height as a rule.
    double viewLeft_;
    double viewBottom_;
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
