#include "Platform/Linux/Qt/GridGlyph.h"

#include <QColor>
#include <QIconEngine>
#include <QPainter>
#include <QPixmap>

#include <algorithm>

namespace tarvex {

namespace {

constexpr QRgb lightColor = qRgba(0xF5, 0xF5, 0xF5, 0xFF);
constexpr QRgb darkColor = qRgba(0x2B, 0x2B, 0x2B, 0xFF);

void drawTile(QPainter& painter, const QRect& tile, int rim) {
    const double radius = std::max(1.0, tile.width() / 6.0);
    painter.setBrush(QColor::fromRgba(darkColor));
    painter.drawRoundedRect(tile, radius, radius);
    const double innerRadius = std::max(0.0, radius - rim);
    painter.setBrush(QColor::fromRgba(lightColor));
    painter.drawRoundedRect(tile.adjusted(rim, rim, -rim, -rim), innerRadius, innerRadius);
}

class GridGlyphEngine final : public QIconEngine {
public:
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode /*mode*/, QIcon::State /*state*/) override {
        const qreal ratio = painter->device()->devicePixelRatio();
        const int side = std::min(rect.width(), rect.height());
        QImage image = GridGlyph::image(qRound(side * ratio));
        image.setDevicePixelRatio(ratio);
        painter->drawImage(
            QPointF(rect.x() + (rect.width() - side) / 2.0, rect.y() + (rect.height() - side) / 2.0), image);
    }

    // The base would paint onto whatever the memory holds.
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap result(size);
        result.fill(Qt::transparent);
        QPainter painter(&result);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return result;
    }

    [[nodiscard]] QIconEngine* clone() const override { return new GridGlyphEngine; }

    bool isNull() override { return false; }
};

} // namespace

QImage GridGlyph::image(int side) {
    QImage image(std::max(side, 1), std::max(side, 1), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    const int margin = qRound(side / 16.0);
    const int gap = std::max(1, qRound(side / 12.0));
    const int tile = (side - 2 * margin - gap) / 2;
    const int rim = std::max(1, qRound(side / 20.0));
    if (tile < 1) {
        return image;
    }
    const int start = (side - 2 * tile - gap) / 2;
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    for (const int row : {0, 1}) {
        for (const int column : {0, 1}) {
            drawTile(painter, QRect(start + column * (tile + gap), start + row * (tile + gap), tile, tile),
                     rim);
        }
    }
    return image;
}

QIcon GridGlyph::icon() {
    return QIcon(new GridGlyphEngine);
}

} // namespace tarvex
