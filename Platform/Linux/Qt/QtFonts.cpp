#include "Platform/Linux/Qt/QtFonts.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QRawFont>
#include <QTextLayout>

#include <algorithm>
#include <cmath>
#include <utility>

namespace tarvex {

namespace {

/// A line that is being placed brings new numbers with every step.
constexpr std::size_t maxRunsPerFace = 1024;
constexpr double smallestSize = 1;
constexpr double largestSize = 500;

bool isDigit(QChar character) {
    return character >= u'0' && character <= u'9';
}

/// Gives every digit the same width, each in the middle of its own, and returns how far the line grows.
double alignDigits(QGlyphRun& run, double digitWidth, double shift) {
    const QRawFont font = run.rawFont();
    const QList<quint32> digits = font.glyphIndexesForString(QStringLiteral("0123456789"));
    const QList<quint32> glyphs = run.glyphIndexes();
    const QList<QPointF> advances = font.advancesForGlyphIndexes(glyphs);
    QList<QPointF> positions = run.positions();
    for (qsizetype index = 0; index < glyphs.size(); ++index) {
        const double room = digits.contains(glyphs[index]) ? digitWidth - advances[index].x() : 0;
        positions[index].rx() += shift + room / 2;
        shift += room;
    }
    run.setPositions(positions);
    return shift;
}

} // namespace

const TextRun& QtFonts::layOut(const std::string& text, const Font& font) {
    Face& face = faceFor(font);
    const auto known = face.runs.find(text);
    if (known != face.runs.end()) {
        return known->second;
    }
    if (face.runs.size() >= maxRunsPerFace) {
        face.runs.clear();
    }
    return face.runs.emplace(text, makeRun(face, text)).first->second;
}

QtFonts::Face& QtFonts::faceFor(const Font& font) {
    const QFont applicationFont = QGuiApplication::font();
    if (applicationFont != applicationFont_) {
        applicationFont_ = applicationFont;
        faces_.clear();
    }
    const auto known =
        std::find_if(faces_.begin(), faces_.end(), [&](const Face& face) { return face.font == font; });
    return known != faces_.end() ? *known : faces_.emplace_back(makeFace(font));
}

QtFonts::Face QtFonts::makeFace(const Font& font) {
    Face face;
    face.font = font;
    face.qtFont = applicationFont_;
    // Compared this way round, so that what is no number counts as the smallest.
    const double size = font.size > smallestSize ? std::min(font.size, largestSize) : smallestSize;
    face.qtFont.setPixelSize(static_cast<int>(std::lround(size)));
    face.qtFont.setWeight(static_cast<QFont::Weight>(std::clamp(font.weight, 1, 1000)));
    if (font.hasMonospacedDigits) {
        const QFontMetricsF metrics(face.qtFont, &surface_);
        for (const QChar digit : QStringLiteral("0123456789")) {
            face.digitWidth = std::max(face.digitWidth, metrics.horizontalAdvance(digit));
        }
    }
    return face;
}

TextRun QtFonts::makeRun(const Face& face, const std::string& text) {
    const QString string = QString::fromStdString(text);
    const QFontMetricsF metrics(face.qtFont, &surface_);
    QTextLayout layout(string, face.qtFont, &surface_);
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    TextRun run;
    run.descent = std::ceil(metrics.descent());
    run.size.height = std::ceil(metrics.ascent()) + run.descent;
    if (!line.isValid()) {
        return run;
    }
    double growth = 0;
    const bool hasDigits = std::any_of(string.begin(), string.end(), isDigit);
    for (QGlyphRun glyphs : line.glyphRuns()) {
        QList<QPointF> positions = glyphs.positions();
        for (QPointF& position : positions) {
            position.ry() -= line.ascent();
        }
        glyphs.setPositions(positions);
        if (face.digitWidth > 0 && hasDigits) {
            growth = alignDigits(glyphs, face.digitWidth, growth);
        }
        run.glyphs.push_back(std::move(glyphs));
    }
    run.size.width = std::ceil(line.naturalTextWidth() + growth);
    return run;
}

} // namespace tarvex
