#include "Platform/Linux/Qt/QtFonts.h"
#include "Platform/Linux/Qt/ScenePainter.h"
#include "Platform/Linux/X11/ScenePixels.h"
#include "Tests/Contract/X11/MainLoopApplication.h"
#include "Tests/Support/RandomSource.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace tarvex::contract {

namespace {

constexpr QSize size(120, 90);
constexpr std::uint32_t accent = 0x2F6FDF;
constexpr std::uint32_t groundColor = 0xFF405060;

/// The picture that the server makes of the fills, where something composites the window.
QImage composited(const std::vector<PixelFill>& fills) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(groundColor);
    for (const PixelFill& fill : fills) {
        const std::uint32_t rest = 255 - (fill.color >> 24U);
        for (int y = fill.rect.y; y < fill.rect.bottom(); ++y) {
            for (int x = fill.rect.x; x < fill.rect.right(); ++x) {
                const std::uint32_t below = image.pixel(x, y);
                std::uint32_t result = 0xFF000000;
                for (const unsigned shift : {0U, 8U, 16U}) {
                    const std::uint32_t channel =
                        (fill.color >> shift & 0xFFU) + ((below >> shift & 0xFFU) * rest + 127) / 255;
                    result |= std::min(channel, 255U) << shift;
                }
                image.setPixel(x, y, result);
            }
        }
    }
    return image;
}

/// The largest difference of a channel. Both round once for each layer.
int difference(const QImage& one, const QImage& other) {
    int largest = 0;
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const QRgb a = one.pixel(x, y);
            const QRgb b = other.pixel(x, y);
            largest = std::max({largest, std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                                std::abs(qBlue(a) - qBlue(b))});
        }
    }
    return largest;
}

Scene randomZones(RandomSource& random) {
    constexpr std::array names{ColorName::white, ColorName::black, ColorName::accent,
                               ColorName::blue,  ColorName::red,   ColorName::gray};
    Scene scene;
    for (int remaining = random.integer(1, 6); remaining > 0; --remaining) {
        const Rect rect{random.between(-20, 110), random.between(-20, 80), random.between(1, 90),
                        random.between(1, 70)};
        const Color color{names[random.integer(std::size_t{0}, names.size() - 1)], random.unit(),
                          random.unit()};
        if (random.coin()) {
            scene.primitives.emplace_back(FillRect{rect, color});
        } else {
            scene.primitives.emplace_back(StrokeRect{rect, color, random.integer(1, 4) * 1.0});
        }
    }
    return scene;
}

/// Zones under a drag are drawn by the server and zones in the editor by the toolkit: nobody may see that.
TEST(SceneAgreement, TheServersPictureIsTheToolkitsPicture) {
    const MainLoopApplication application;
    QtFonts fonts;
    ScenePainter painter(fonts);
    constexpr std::uint32_t seed = 20;
    SCOPED_TRACE("seed " + std::to_string(seed));
    RandomSource random(seed);
    const ScenePlacement placement{
        {0, 0, 1.0 * size.width(), 1.0 * size.height()}, DesktopLayout{0, size.height(), 0}, accent};
    for (int round = 0; round < 500; ++round) {
        const Scene scene = randomZones(random);
        QImage painted(size, QImage::Format_RGB32);
        painted.fill(groundColor);
        painter.paint(painted, scene, QRegion(0, 0, size.width(), size.height()), accent);
        const QImage served = composited(pixelFillsOfScene(scene, placement, OverlayStyle::blended));
        ASSERT_LE(difference(painted, served), 2) << "round " << round;
    }
}

} // namespace

} // namespace tarvex::contract
