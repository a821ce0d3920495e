#pragma once

#include "App/Toolkit/Scene.h"

#include <QFont>
#include <QGlyphRun>
#include <QImage>
#include <QList>

#include <cstddef>
#include <deque>
#include <string>
#include <unordered_map>
#include <vector>

namespace tarvex {

/// One line of text, laid out: its glyphs with the start of the baseline at the origin, y down, and its box.
struct TextRun {
    QList<QGlyphRun> glyphs;
    /// Whole points, so that a box on whole points has crisp text in it.
    Size size;
    /// From the bottom of the box up to the baseline, in points.
    double descent = 0;
};

/// Lays text out in the faces of the application's own font family. Whoever measures text and whoever draws
/// it must share one object, so that the text fits its box. An application object must exist.
class QtFonts {
public:
    /// The text (UTF-8) in that face. Valid until the next call.
    [[nodiscard]] const TextRun& layOut(const std::string& text, const Font& font);

    /// The face as the toolkit's own controls take it; their digits keep their own widths.
    [[nodiscard]] QFont qtFont(const Font& font) { return faceFor(font).qtFont; }

private:
    struct Face {
        Font font;
        QFont qtFont;
        /// Of the widest digit; 0 when digits keep their own widths.
        double digitWidth = 0;
        std::unordered_map<std::string, TextRun> runs;
    };

    [[nodiscard]] Face& faceFor(const Font& font);
    [[nodiscard]] Face makeFace(const Font& font);
    [[nodiscard]] TextRun makeRun(const Face& face, const std::string& text);

    /// What the faces are made from; another one when the user changes the desktop's font.
    QFont applicationFont_;
    /// Stands for every surface that text is drawn to: one point is one pixel, whatever the toolkit's scale.
    QImage surface_{1, 1, QImage::Format_ARGB32_Premultiplied};
    std::deque<Face> faces_;
};

} // namespace tarvex
