#include "Platform/Linux/Qt/GridGlyph.h"

#include "Tests/Contract/X11/MainLoopApplication.h"

#include <QPainter>
#include <QTransform>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace tarvex::contract {

namespace {

class GridGlyphTest : public ::testing::TestWithParam<int> {};

int contrast(QRgb one, QRgb other) {
    return std::abs(qGray(one) - qGray(other));
}

/// The glyph on a panel of that colour.
QImage onPanel(int side, QRgb panel) {
    QImage image(side, side, QImage::Format_RGB32);
    image.fill(panel);
    QPainter(&image).drawImage(0, 0, GridGlyph::image(side));
    return image;
}

/// How many runs of pixels along the line through the upper tiles stand out from the panel.
int marksAlong(const QImage& image, QRgb panel) {
    const int row = image.height() * 9 / 32;
    int marks = 0;
    bool isMarked = false;
    for (int x = 0; x < image.width(); ++x) {
        const bool stands = contrast(image.pixel(x, row), panel) > 100;
        marks += stands && !isMarked ? 1 : 0;
        isMarked = stands;
    }
    return marks;
}

TEST_P(GridGlyphTest, TilesStandOutFromDarkAndLightPanels) {
    const int side = GetParam();
    // On a dark panel two light tiles; on a light one the two rims of each.
    EXPECT_EQ(marksAlong(onPanel(side, 0xFF1E1E1E), 0xFF1E1E1E), 2);
    EXPECT_EQ(marksAlong(onPanel(side, 0xFF000000), 0xFF000000), 2);
    EXPECT_EQ(marksAlong(onPanel(side, 0xFFF0F0F0), 0xFFF0F0F0), 4);
    EXPECT_EQ(marksAlong(onPanel(side, 0xFFFFFFFF), 0xFFFFFFFF), 4);
}

TEST_P(GridGlyphTest, PictureIsSymmetric) {
    const QImage image = GridGlyph::image(GetParam());
    EXPECT_EQ(image, image.transformed(QTransform(0, 1, 1, 0, 0, 0)));
    const int side = image.width();
    int opaqueRows = 0;
    for (int y = 0; y < side; ++y) {
        opaqueRows += qAlpha(image.pixel(side / 4, y)) == 0xFF ? 1 : 0;
    }
    EXPECT_GE(opaqueRows * 4, side * 3);
}

TEST_P(GridGlyphTest, IconIsDrawnInThePixelsOfTheScale) {
    const MainLoopApplication application;
    const int side = GetParam();
    for (const int scale : {1, 2}) {
        const QPixmap pixmap = GridGlyph::icon().pixmap(QSize(side, side), scale);
        EXPECT_EQ(pixmap.toImage().convertToFormat(QImage::Format_ARGB32), [&] {
            QImage expected = GridGlyph::image(side * scale).convertToFormat(QImage::Format_ARGB32);
            expected.setDevicePixelRatio(scale);
            return expected;
        }());
        QImage canvas(side * scale, side * scale, QImage::Format_ARGB32_Premultiplied);
        canvas.fill(Qt::transparent);
        canvas.setDevicePixelRatio(scale);
        QPainter painter(&canvas);
        GridGlyph::icon().paint(&painter, QRect(0, 0, side, side));
        painter.end();
        canvas.setDevicePixelRatio(1);
        EXPECT_EQ(canvas, GridGlyph::image(side * scale)) << scale;
    }
}

INSTANTIATE_TEST_SUITE_P(Panels, GridGlyphTest, ::testing::Values(16, 22, 24, 32, 48));

TEST(GridGlyphSizes, AnySizeGivesAPicture) {
    for (int side = -1; side <= 256; ++side) {
        const QImage image = GridGlyph::image(side);
        EXPECT_EQ(image.width(), std::max(side, 1));
    }
}

} // namespace

} // namespace tarvex::contract
