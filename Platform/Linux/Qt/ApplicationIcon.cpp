#include "Platform/Linux/Qt/ApplicationIcon.h"

#include "Platform/Linux/Qt/DrawnIcon.h"
#include "Platform/Linux/X11/SystemPalette.h"

#include <QLinearGradient>
#include <QPainter>

#include <algorithm>
#include <array>

namespace tarvex {

namespace {

/// The side of the square that the picture is described in.
constexpr int designSide = 128;

struct Tile {
    QRectF rect;
    QColor color;
};

QImage drawn(int side) {
    QImage image(std::max(side, 1), std::max(side, 1), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(1.0 * side / designSide, 1.0 * side / designSide);
    painter.setPen(Qt::NoPen);
    const QRectF ground(8, 12, 112, 104);
    QLinearGradient gradient(ground.topLeft(), ground.bottomLeft());
    gradient.setColorAt(0, QColor(0x3D, 0x46, 0x54));
    gradient.setColorAt(1, QColor(0x23, 0x2A, 0x35));
    painter.setBrush(gradient);
    painter.drawRoundedRect(ground, 20, 20);
    const QColor plain(255, 255, 255, 230);
    const std::array tiles{Tile{{22, 26, 39, 35}, QColor::fromRgb(systemBlue)}, Tile{{67, 26, 39, 35}, plain},
                           Tile{{22, 67, 39, 35}, plain}, Tile{{67, 67, 39, 35}, plain}};
    for (const Tile& tile : tiles) {
        painter.setBrush(tile.color);
        painter.drawRoundedRect(tile.rect, 6, 6);
    }
    painter.end();
    return image;
}

} // namespace

QIcon applicationIcon() {
    return drawnIcon(&drawn);
}

} // namespace tarvex
