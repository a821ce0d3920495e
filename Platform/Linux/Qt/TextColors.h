#pragma once

#include "App/Toolkit/Form.h"

#include <QColor>
#include <QPalette>

namespace tarvex {

/// How far two opaque colours stand apart, from 1 to 21 (Web Content Accessibility Guidelines 2.1, contrast
/// ratio).
[[nodiscard]] double contrastBetween(const QColor& one, const QColor& other);

/// The colour of text on a window, in the palette's current colour group. The fainter one is mixed from the
/// text's and the window's colours, and keeps readable on light and on dark windows.
[[nodiscard]] QColor qtColorOf(TextColor color, const QPalette& palette);

/// The palette for a control that has no background of its own. Qt's styles derive its outline from the
/// window's colour, darker, which on dark windows leaves nothing to see; there it is derived from a lighter
/// one. On light windows the palette is unset.
[[nodiscard]] QPalette outlinedPalette(const QPalette& palette);

} // namespace tarvex
