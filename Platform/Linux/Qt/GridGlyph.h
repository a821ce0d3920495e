#pragma once

#include <QIcon>
#include <QImage>

namespace tarvex {

/// The picture "rectangle.grid.2x2": two by two tiles. Each is light with a dark rim, so that it stands out
/// from dark and from light panels alike; nobody tells which of the two a panel is.
class GridGlyph {
public:
    /// The picture in a square of so many pixels.
    [[nodiscard]] static QImage image(int side);

    /// An icon that is drawn at whatever size and scale it is asked for.
    [[nodiscard]] static QIcon icon();
};

} // namespace tarvex
