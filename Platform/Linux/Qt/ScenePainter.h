#pragma once

#include "App/Toolkit/Scene.h"
#include "Platform/Linux/Qt/QtFonts.h"

#include <QColor>
#include <QImage>
#include <QRegion>

#include <cstdint>

namespace tarvex {

/// The colour as the toolkit has it. The alpha is that given, whatever the system's colour has.
/// @param accentColor 0xRRGGBB
[[nodiscard]] QColor qtColorOf(const Color& color, std::uint32_t accentColor);

/// Paints scenes. Straight lines, outlines and rectangles cover whole pixels; curves and text are smooth.
class ScenePainter {
public:
    /// The fonts, which whoever measures the texts must share, must outlive the painter.
    explicit ScenePainter(QtFonts& fonts) : fonts_(&fonts) {}

    /// Composites the primitives, in their order, over what is there. Only pixels of the region change.
    /// @param image the picture of the view, of 32 bits a pixel, premultiplied or opaque; one point of the
    ///   view is one pixel
    /// @param region in pixels of the picture; it must not reach out of it
    void paint(QImage& image, const Scene& scene, const QRegion& region, std::uint32_t accentColor);

private:
    QtFonts* fonts_;
};

} // namespace tarvex
