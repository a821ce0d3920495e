#include "Platform/Linux/Qt/ScenePainter.h"

#include "Platform/Linux/Qt/SceneGeometry.h"
#include "Platform/Linux/X11/SceneColors.h"

#include <QPainter>

#include <algorithm>

namespace tarvex {

namespace {

using Pixel = QRgb;

constexpr Pixel everySecondByte = 0x00FF00FF;

/// Two channels at once, each times the factor (of 255), rounded.
Pixel scaledPair(Pixel pair, Pixel factor) {
    const Pixel product = pair * factor + 0x00800080;
    return (product + (product >> 8U & everySecondByte)) >> 8U & everySecondByte;
}

/// Composites a premultiplied colour over the pixels of a rectangle. The toolkit would share larger fills
/// out among threads, which takes longer than to do them.
void blend(QImage& image, const QRect& rect, Pixel color) {
    const Pixel rest = 255 - static_cast<Pixel>(qAlpha(color));
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        Pixel* row = reinterpret_cast<Pixel*>(image.scanLine(y)) + rect.left();
        for (int x = 0; x < rect.width(); ++x) {
            const Pixel below = row[x];
            row[x] = color + (scaledPair(below & everySecondByte, rest) |
                              scaledPair(below >> 8U & everySecondByte, rest) << 8U);
        }
    }
}

/// Paints one primitive after the other.
class PrimitivePainter {
public:
    PrimitivePainter(QImage& image, QPainter& painter, const SceneGeometry& geometry, const QRegion& region,
                     QtFonts& fonts, std::uint32_t accentColor)
        : image_(&image),
          painter_(&painter),
          geometry_(&geometry),
          region_(&region),
          fonts_(&fonts),
          accentColor_(accentColor) {}

    void operator()(const FillRect& fill) { fillPixels(geometry_->pixelsOf(fill.rect), fill.color); }

    void operator()(const StrokeRect& stroke) {
        if (const auto sides = geometry_->pixelsOf(stroke)) {
            for (const QRect& side : *sides) {
                fillPixels(side, stroke.color);
            }
        }
    }

    void operator()(const StrokeLine& line) {
        if (const auto pixels = geometry_->pixelsOf(line)) {
            fillPixels(pixels, line.color);
            return;
        }
        setPen(line.color, line.lineWidth);
        painter_->drawLine(geometry_->exactOf(line.start), geometry_->exactOf(line.end));
    }

    void operator()(const FillEllipse& fill) {
        setBrush(fill.color);
        painter_->drawEllipse(geometry_->exactOf(fill.rect));
    }

    void operator()(const StrokeEllipse& stroke) {
        setPen(stroke.color, stroke.lineWidth);
        painter_->setBrush(Qt::NoBrush);
        painter_->drawEllipse(geometry_->exactOf(stroke.rect));
    }

    void operator()(const FillRoundedRect& fill) {
        setBrush(fill.color);
        // On whole pixels its straight sides are crisp.
        if (const auto pixels = geometry_->pixelsOf(fill.rect)) {
            painter_->drawRoundedRect(*pixels, fill.radii.width, fill.radii.height);
        }
    }

    void operator()(const TextLabel& label) {
        const TextRun& run = fonts_->layOut(label.text, label.font);
        const QPoint baseline = geometry_->baselineOf(label, run);
        painter_->setPen(qtColorOf(label.color, accentColor_));
        for (const QGlyphRun& glyphs : run.glyphs) {
            painter_->drawGlyphRun(baseline, glyphs);
        }
    }

private:
    void fillPixels(const std::optional<QRect>& pixels, const Color& color) {
        if (!pixels || pixels->isEmpty()) {
            return;
        }
        const Pixel pixel = premultiplied(rgbOf(color, accentColor_), alphaByteOf(color));
        for (const QRect& part : *region_) {
            const QRect filled = part & *pixels;
            if (!filled.isEmpty()) {
                blend(*image_, filled, pixel);
            }
        }
    }

    void setPen(const Color& color, double width) {
        painter_->setPen(QPen(qtColorOf(color, accentColor_), width, Qt::SolidLine, Qt::FlatCap));
    }

    void setBrush(const Color& color) {
        painter_->setPen(Qt::NoPen);
        painter_->setBrush(qtColorOf(color, accentColor_));
    }

    QImage* image_;
    QPainter* painter_;
    const SceneGeometry* geometry_;
    const QRegion* region_;
    QtFonts* fonts_;
    std::uint32_t accentColor_;
};

} // namespace

QColor qtColorOf(const Color& color, std::uint32_t accentColor) {
    return QColor::fromRgba(alphaByteOf(color) << 24U | rgbOf(color, accentColor));
}

void ScenePainter::paint(QImage& image, const Scene& scene, const QRegion& region,
                         std::uint32_t accentColor) {
    // No painter may be at work when pixels that others share are copied.
    image.detach();
    const SceneGeometry geometry(image.height());
    QPainter painter(&image);
    PrimitivePainter primitivePainter(image, painter, geometry, region, *fonts_, accentColor);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRegion(region);
    const QRect whole = region.boundingRect();
    for (const ScenePrimitive& primitive : scene.primitives) {
        const std::vector<QRect> bounds = geometry.boundsOf(primitive, *fonts_);
        if (std::any_of(bounds.begin(), bounds.end(), [&](const QRect& rect) {
                return whole.intersects(rect) && region.intersects(rect);
            })) {
            std::visit(primitivePainter, primitive);
        }
    }
}

} // namespace tarvex
