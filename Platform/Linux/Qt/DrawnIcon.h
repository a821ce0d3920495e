#pragma once

#include <QIcon>
#include <QImage>

#include <functional>

namespace tarvex {

/// Draws a picture in a square of so many pixels.
using IconDrawing = std::function<QImage(int side)>;

/// An icon that is drawn when, and at the size and scale at which, it is asked for. To those who want to know
/// which sizes there are it names the usual ones.
[[nodiscard]] QIcon drawnIcon(IconDrawing drawing);

} // namespace tarvex
