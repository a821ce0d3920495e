#include "Platform/Linux/Qt/TextColors.h"

#include <algorithm>
#include <cmath>

namespace tarvex {

namespace {

/// What the guidelines ask of small text.
constexpr double leastContrast = 4.5;
/// How much of the text's own colour the fainter text has at least.
constexpr double faintShare = 0.65;
constexpr double shareStep = 0.05;
/// How much of the text's colour is in what an outline on a dark window is derived from.
constexpr double outlineShare = 0.5;

double luminanceOf(const QColor& color) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor mixed(const QColor& text, const QColor& window, double share) {
    const auto part = [&](int ofText, int ofWindow) {
        return static_cast<int>(std::lround(ofText * share + ofWindow * (1 - share)));
    };
    return {part(text.red(), window.red()), part(text.green(), window.green()),
            part(text.blue(), window.blue())};
}

} // namespace

double contrastBetween(const QColor& one, const QColor& other) {
    const auto [darker, lighter] = std::minmax({luminanceOf(one), luminanceOf(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor qtColorOf(TextColor color, const QPalette& palette) {
    const QColor text = palette.color(QPalette::WindowText);
    if (color == TextColor::label) {
        return text;
    }
    const QColor window = palette.color(QPalette::Window);
    for (double share = faintShare; share < 1; share += shareStep) {
        const QColor faint = mixed(text, window, share);
        if (contrastBetween(faint, window) >= leastContrast) {
            return faint;
        }
    }
    return text;
}

QPalette outlinedPalette(const QPalette& palette) {
    QPalette outlined;
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        const QColor window = palette.color(group, QPalette::Window);
        const QColor text = palette.color(group, QPalette::WindowText);
        if (luminanceOf(window) < luminanceOf(text)) {
            outlined.setColor(group, QPalette::Window, mixed(text, window, outlineShare));
        }
    }
    return outlined;
}

} // namespace tarvex
