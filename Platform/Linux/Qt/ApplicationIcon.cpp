#include "Platform/Linux/Qt/ApplicationIcon.h"

#include "Platform/Linux/X11/SystemPalette.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPixmap>

#include <array>

namespace tarvex {

namespace {

/// The side of the square that the picture is described in.
constexpr int designSide = 128;

struct Tile {
    QRectF rect;
    QColor color;
};

QPixmap drawn(int side) {
    QPixmap pixmap(side, side);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
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
    return pixmap;
}

} // namespace

QIcon applicationIcon() {
    QIcon icon;
    for (const int side : {16, 24, 32, 48, 64}) {
        icon.addPixmap(drawn(side));
    }
    return icon;
}

} // namespace tarvex
