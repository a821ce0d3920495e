#include "Platform/Linux/Qt/SystemColors.h"

#include "Platform/Linux/X11/SystemPalette.h"

#include <QGuiApplication>
#include <QPalette>

#include <algorithm>
#include <array>

namespace tarvex {

namespace {

/// Below this a highlight is taken for a grey (of 255).
constexpr int leastSaturation = 60;
/// Below this it is taken for black.
constexpr int leastValue = 80;

/// What Qt's own styles use when no desktop theme tells them better.
constexpr std::array<QRgb, 3> unthemedHighlights{0xFF308CC6, 0xFF000080, 0xFF00008B};

} // namespace

std::uint32_t SystemColors::accentColor() {
    return accentColorForHighlight(QGuiApplication::palette().color(QPalette::Active, QPalette::Highlight));
}

std::uint32_t SystemColors::accentColorForHighlight(const QColor& highlight) {
    const QColor color = highlight.toHsv();
    const QRgb rgb = highlight.rgb();
    const bool isUnthemed =
        std::find(unthemedHighlights.begin(), unthemedHighlights.end(), rgb) != unthemedHighlights.end();
    if (isUnthemed || color.hsvSaturation() < leastSaturation || color.value() < leastValue) {
        return systemBlue;
    }
    return rgb & RGB_MASK;
}

} // namespace tarvex
