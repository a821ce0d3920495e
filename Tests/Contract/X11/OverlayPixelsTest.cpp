#include "Platform/Linux/X11/SceneDifference.h"
#include "Platform/Linux/X11/ScenePixels.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <random>

namespace tarvex {

namespace {

constexpr PixelRect area{0, 0, 60, 40};

/// A picture pixel by pixel, drawn the plain way.
class Canvas {
public:
    explicit Canvas(const std::vector<PixelFill>& picture = {}) {
        for (const PixelFill& fill : picture) {
            forEach(fill.rect, [&](PixelColor& pixel) { pixel = over(fill.color, pixel); });
        }
    }

    /// Writes the tiles; false when one lies outside the area or two overlap.
    bool write(const std::vector<PixelFill>& tiles) {
        std::vector<bool> written(pixels_.size());
        bool isSound = true;
        for (const PixelFill& tile : tiles) {
            isSound = isSound && tile.rect.x >= 0 && tile.rect.y >= 0 && tile.rect.right() <= area.width &&
                      tile.rect.bottom() <= area.height && tile.rect.width > 0 && tile.rect.height > 0;
            forEach(tile.rect, [&](PixelColor& pixel) {
                const auto index = static_cast<std::size_t>(&pixel - pixels_.data());
                isSound = isSound && !written[index];
                written[index] = true;
                pixel = tile.color;
            });
        }
        return isSound;
    }

    [[nodiscard]] std::size_t differences(const Canvas& other) const {
        std::size_t count = 0;
        for (std::size_t index = 0; index < pixels_.size(); ++index) {
            count += pixels_[index] != other.pixels_[index] ? 1 : 0;
        }
        return count;
    }

    bool operator==(const Canvas&) const = default;

private:
    static PixelColor over(PixelColor source, PixelColor below) {
        PixelColor result = 0;
        for (const unsigned shift : {0U, 8U, 16U, 24U}) {
            const double rest = 1 - static_cast<double>(source >> 24U) / 255;
            const double channel = (source >> shift & 0xFFU) + rest * (below >> shift & 0xFFU);
            result |= std::min(static_cast<PixelColor>(std::floor(channel + 0.499)), 255U) << shift;
        }
        return result;
    }

    template <typename Action>
    void forEach(const PixelRect& rect, Action action) {
        for (int y = std::max(rect.y, 0); y < std::min(rect.bottom(), area.height); ++y) {
            for (int x = std::max(rect.x, 0); x < std::min(rect.right(), area.width); ++x) {
                action(pixels_[static_cast<std::size_t>(y * area.width + x)]);
            }
        }
    }

    std::vector<PixelColor> pixels_ =
        std::vector<PixelColor>(static_cast<std::size_t>(area.width * area.height));
};

std::size_t pixelCount(const std::vector<PixelFill>& tiles) {
    std::size_t count = 0;
    for (const PixelFill& tile : tiles) {
        count += static_cast<std::size_t>(tile.rect.width * tile.rect.height);
    }
    return count;
}

std::vector<PixelFill> randomPicture(std::mt19937& random, int longest) {
    constexpr PixelColor colors[]{0x38383838, 0x80054280, 0xFFFFFFFF, 0xFF000000, 0x00000000};
    const auto number = [&random](int least, int most) {
        return std::uniform_int_distribution(least, most)(random);
    };
    std::vector<PixelFill> picture;
    for (int count = number(0, longest); count > 0; --count) {
        picture.push_back(
            {{number(-10, 55), number(-10, 35), number(1, 40), number(1, 30)}, colors[number(0, 4)]});
    }
    return picture;
}

TEST(OverlayPixels, ChangedPixelsTurnAnyPictureIntoAnyOther) {
    std::mt19937 random(7);
    for (int round = 0; round < 2000; ++round) {
        const auto before = randomPicture(random, 8);
        auto after = randomPicture(random, 8);
        // Most pictures of a drag share their beginning.
        after.insert(after.begin(), before.begin(), before.begin() + static_cast<long>(before.size() / 2));
        Canvas canvas(before);
        const Canvas wanted(after);
        const std::size_t differences = canvas.differences(wanted);
        const auto tiles = changedPixels(before, after, area);
        ASSERT_TRUE(canvas.write(tiles)) << "round " << round;
        ASSERT_EQ(canvas, wanted) << "round " << round;
        ASSERT_EQ(pixelCount(tiles), differences) << "round " << round;
    }
}

TEST(OverlayPixels, VisiblePixelsAreThePictureWithoutItsClearParts) {
    std::mt19937 random(11);
    for (int round = 0; round < 500; ++round) {
        const auto picture = randomPicture(random, 10);
        Canvas canvas;
        const auto tiles = visiblePixels(picture, area);
        ASSERT_TRUE(canvas.write(tiles)) << "round " << round;
        ASSERT_EQ(canvas, Canvas(picture)) << "round " << round;
        ASSERT_EQ(pixelCount(tiles), Canvas().differences(Canvas(picture))) << "round " << round;
    }
}

TEST(OverlayPixels, EqualPicturesDifferNowhere) {
    std::mt19937 random(3);
    const auto picture = randomPicture(random, 10);
    EXPECT_TRUE(changedPixels(picture, picture, area).empty());
    EXPECT_TRUE(changedPixels({}, {}, area).empty());
}

TEST(OverlayPixels, PixelsOutsideTheAreaAreLeftAlone) {
    const std::vector<PixelFill> picture{{{0, 0, 60, 40}, 0xFFFFFFFF}};
    const std::vector<PixelFill> expected{{{10, 20, 5, 6}, 0xFFFFFFFF}};
    EXPECT_EQ(visiblePixels(picture, {10, 20, 5, 6}), expected);
    EXPECT_TRUE(visiblePixels(picture, {70, 50, 5, 6}).empty());
}

TEST(OverlayPixels, TilesOfOneColorStandTogether) {
    const std::vector<PixelFill> picture{
        {{0, 0, 4, 4}, 0xFFFFFFFF}, {{8, 0, 4, 4}, 0xFF000000}, {{16, 0, 4, 4}, 0xFFFFFFFF}};
    const auto tiles = visiblePixels(picture, area);
    ASSERT_EQ(tiles.size(), 3U);
    EXPECT_EQ(tiles[0].color, 0xFF000000);
    EXPECT_EQ(tiles[1].color, tiles[2].color);
}

class OverlayScenePixels : public ::testing::Test {
protected:
    [[nodiscard]] std::vector<PixelFill> blended(const Scene& scene) const {
        return pixelFillsOfScene(scene, placement_, OverlayStyle::blended);
    }

    [[nodiscard]] std::vector<PixelFill> shaped(const Scene& scene) const {
        return pixelFillsOfScene(scene, placement_, OverlayStyle::shaped);
    }

    static Scene filled(const Rect& rect, Color color = {ColorName::white, 1}) {
        return {{FillRect{rect, color}}};
    }

    static Scene outlined(const Rect& rect, double lineWidth = 1) {
        return {{StrokeRect{rect, {ColorName::white, 1}, lineWidth}}};
    }

    // A view of 200 by 100 points whose root pixels start at (300, 500).
    ScenePlacement placement_{{300, 400, 200, 100}, {0, 1000, 0}, 0x336699};
};

TEST_F(OverlayScenePixels, OriginIsTheBottomLeftOfTheView) {
    const std::vector<PixelFill> expected{{{10, 70, 30, 10}, 0xFFFFFFFF}};
    EXPECT_EQ(blended(filled({10, 20, 30, 10})), expected);
}

TEST_F(OverlayScenePixels, ColorsArePremultiplied) {
    EXPECT_EQ(blended(filled({0, 0, 9, 9}, {ColorName::white, 0.22}))[0].color, 0x38383838U);
    EXPECT_EQ(blended(filled({0, 0, 9, 9}, {ColorName::accent, 0.5}))[0].color, 0x801A334DU);
    EXPECT_EQ(blended(filled({0, 0, 9, 9}, {ColorName::black, 0.5}))[0].color, 0x80000000U);
}

TEST_F(OverlayScenePixels, EdgesAreRoundedAndThenSubtracted) {
    // Three columns of 66.67 points: neighbours share every edge, on the pixels of the root.
    const double third = 200.0 / 3;
    int right = 0;
    for (int column = 0; column < 3; ++column) {
        const auto fills = blended(filled({column * third, 0, third, 100}));
        ASSERT_EQ(fills.size(), 1U);
        EXPECT_EQ(fills[0].rect.x, right);
        right = fills[0].rect.right();
    }
    EXPECT_EQ(right, 200);
}

TEST_F(OverlayScenePixels, FillCoversWhatAWindowPlacedThereCovers) {
    placement_.viewFrame = {300.4, 400.3, 200, 100};
    const Rect zone{33.3, 12.6, 50.5, 40.7};
    const PixelRect window = placement_.layout.pixelsOfScreenRect(zone.translated(300.4, 400.3));
    const PixelRect view = placement_.layout.pixelsOfScreenRect(placement_.viewFrame);
    const PixelRect expected{window.x - view.x, window.y - view.y, window.width, window.height};
    EXPECT_EQ(blended(filled(zone))[0].rect, expected);
}

TEST_F(OverlayScenePixels, OutlineOfOnePointIsOnePixelJustInsideTheEdge) {
    const auto tiles = visiblePixels(blended(outlined({20, 10, 50, 30})), {0, 0, 200, 100});
    EXPECT_EQ(pixelCount(tiles), 2U * 50 + 2U * 28);
    for (const PixelFill& tile : tiles) {
        EXPECT_GE(tile.rect.x, 20);
        EXPECT_LE(tile.rect.right(), 70);
        EXPECT_GE(tile.rect.y, 60);
        EXPECT_LE(tile.rect.bottom(), 90);
        EXPECT_TRUE(tile.rect.width == 1 || tile.rect.height == 1);
    }
}

TEST_F(OverlayScenePixels, WiderOutlineIsCentredOnTheEdge) {
    const auto tiles = visiblePixels(blended(outlined({20, 10, 50, 30}, 4)), {0, 0, 200, 100});
    // From two pixels outside to two inside.
    EXPECT_EQ(pixelCount(tiles), 54U * 34 - 46U * 26);
}

TEST_F(OverlayScenePixels, OutlineDrawsNoPixelTwice) {
    const auto fills = blended({{StrokeRect{{20, 10, 50, 30}, {ColorName::white, 0.22}, 1}}});
    for (const PixelFill& tile : visiblePixels(fills, {0, 0, 200, 100})) {
        EXPECT_EQ(tile.color, 0x38383838U);
    }
    EXPECT_EQ(fills.size(), 4U);
}

TEST_F(OverlayScenePixels, OutlineOfAThinRectangleFillsIt) {
    const std::vector<PixelFill> expected{{{20, 89, 50, 1}, 0xFFFFFFFF}};
    EXPECT_EQ(blended(outlined({20, 10, 50, 1})), expected);
}

TEST_F(OverlayScenePixels, WhatReachesOutsideIsCutToTheView) {
    const std::vector<PixelFill> expected{{{0, 0, 200, 100}, 0xFFFFFFFF}};
    EXPECT_EQ(blended(filled({-1e300, -1e300, 2e300, 2e300})), expected);
    EXPECT_TRUE(blended(filled({500, 0, 10, 10})).empty());
    EXPECT_TRUE(blended(outlined({-10, -10, 220, 120})).empty());
}

TEST_F(OverlayScenePixels, WhatCannotBeSeenOrIsNoNumberIsLeftOut) {
    const double none = std::numeric_limits<double>::quiet_NaN();
    const double endless = std::numeric_limits<double>::infinity();
    EXPECT_TRUE(blended(filled({0, 0, 10, 10}, {})).empty());
    EXPECT_TRUE(blended(filled({0, 0, 10, 10}, {ColorName::white, 0})).empty());
    EXPECT_TRUE(blended(filled({0, 0, 10, 10}, {ColorName::white, none})).empty());
    EXPECT_TRUE(blended(filled({0, 0, 0, 10})).empty());
    EXPECT_TRUE(blended(filled({0, 0, -10, 10})).empty());
    EXPECT_TRUE(blended(filled({none, 0, 10, 10})).empty());
    EXPECT_TRUE(blended(filled({0, 0, endless, 10})).empty());
    EXPECT_TRUE(blended(outlined({0, 0, 10, 10}, 0)).empty());
    EXPECT_TRUE(blended(outlined({0, 0, 10, 10}, none)).empty());
}

TEST_F(OverlayScenePixels, ShapedFillIsAnOpaqueBandAroundTheDesktop) {
    const auto tiles =
        visiblePixels(shaped(filled({20, 10, 106, 80}, {ColorName::accent, 0.5})), {0, 0, 200, 100});
    for (const PixelFill& tile : tiles) {
        EXPECT_EQ(tile.color, 0xFF336699U);
    }
    EXPECT_EQ(pixelCount(tiles), 106U * 80 - 86U * 60);
    EXPECT_TRUE(visiblePixels(tiles, {30, 20, 86, 60}).empty());
}

TEST_F(OverlayScenePixels, ShapedFillTooSmallForItsBandIsSolid) {
    const std::vector<PixelFill> expected{{{20, 70, 106, 20}, 0xFF336699}};
    EXPECT_EQ(shaped(filled({20, 10, 106, 20}, {ColorName::accent, 0.5})), expected);
}

TEST_F(OverlayScenePixels, ShapeOfManyZonesIsMadeOfFewRectangles) {
    Scene scene;
    for (int zone = 0; zone < 12; ++zone) {
        scene.primitives.emplace_back(FillRect{{zone * 16.0, 0, 15, 100}, {ColorName::accent, 0.5}});
    }
    EXPECT_LE(shaped(scene).size(), 4U * 12);
}

TEST_F(OverlayScenePixels, ShapedOutlineIsOpaqueOnTheSamePixels) {
    const Scene scene{{StrokeRect{{20, 10, 50, 30}, {ColorName::white, 0.22}, 1}}};
    const auto thin = shaped(scene);
    const auto reference = blended(scene);
    ASSERT_EQ(thin.size(), reference.size());
    for (std::size_t index = 0; index < thin.size(); ++index) {
        EXPECT_EQ(thin[index].rect, reference[index].rect);
        EXPECT_EQ(thin[index].color >> 24U, 0xFFU);
    }
}

} // namespace

} // namespace tarvex
