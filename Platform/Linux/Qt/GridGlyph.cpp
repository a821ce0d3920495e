#include "Platform/Linux/Qt/GridGlyph.h"

#include "Platform/Linux/Qt/DrawnIcon.h"

#include <QColor>
#include <QPainter>

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
    return drawnIcon(&GridGlyph::image);
}

} // namespace tarvex
