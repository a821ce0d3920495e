#include "Platform/Linux/Qt/QtTextMeasurer.h"
#include "Platform/Linux/Qt/SceneDamage.h"
#include "Platform/Linux/Qt/ViewPicture.h"
#include "Tests/Contract/X11/MainLoopApplication.h"
#include "Tests/Support/RandomSource.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace tarvex::contract {

namespace {

constexpr std::uint32_t accent = 0x123456;
constexpr QSize size(320, 240);

class ScenePainting : public ::testing::Test {
protected:
    QImage paintedOnBlack(const Scene& scene) {
        QImage ground(size, QImage::Format_RGB32);
        ground.fill(Qt::black);
        ViewPicture picture(size, ground, fonts_);
        picture.paint(scene, {}, {}, accent);
        return picture.image().copy();
    }

    static QRect inkOf(const QImage& image) {
        QRect ink;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                ink = (image.pixel(x, y) & 0xFFFFFF) != 0 ? ink.united(QRect(x, y, 1, 1)) : ink;
            }
        }
        return ink;
    }

    MainLoopApplication application_;
    QtFonts fonts_;
    QtTextMeasurer measurer_{fonts_};
};

TEST_F(ScenePainting, TextStaysInTheBoxThatIsMeasured) {
    for (const Font& font :
         {Font{12, 500, true}, Font{13, 400, false}, Font{14, 600, false}, Font{24, 400, true}}) {
        for (const char* text : {"640×355", "1111×1111", "0×0", "2560×1440", "Cancel", "OK", "Ågy"}) {
            const Size box = measurer_.sizeOfText(text, font);
            ASSERT_GT(box.width, 5);
            ASSERT_GE(box.height, font.size);
            const QRect ink =
                inkOf(paintedOnBlack({{TextLabel{{50, 60}, text, font, {ColorName::white, 1}}}}));
            const QRect frame(50, 240 - 60 - static_cast<int>(box.height), static_cast<int>(box.width),
                              static_cast<int>(box.height));
            EXPECT_FALSE(ink.isEmpty()) << text;
            EXPECT_TRUE(frame.contains(ink)) << text << " at " << font.size;
            // Nor is the box much larger than the text.
            EXPECT_LE(box.width - ink.width(), 6) << text;
        }
    }
}

TEST_F(ScenePainting, MonospacedDigitsAreEquallyWide) {
    const Font font{12, 500, true};
    const double width = measurer_.sizeOfText("0000", font).width;
    for (const char* text : {"1111", "4444", "7777", "1234", "9876"}) {
        EXPECT_EQ(measurer_.sizeOfText(text, font).width, width) << text;
    }
}

TEST_F(ScenePainting, TextThatIsNotThereHasALineHeight) {
    EXPECT_EQ(measurer_.sizeOfText("", {}).width, 0);
    EXPECT_EQ(measurer_.sizeOfText("", {}).height, measurer_.sizeOfText("x", {}).height);
}

TEST_F(ScenePainting, OutlineIsCrispAndEvenAtItsCorners) {
    const QImage image = paintedOnBlack({{StrokeRect{{10.3, 20.4, 50, 40}, {ColorName::white, 0.4}, 1}}});
    EXPECT_EQ(inkOf(image), QRect(10, 240 - 60, 50, 40));
    for (const QPoint& point : {QPoint(10, 180), QPoint(59, 180), QPoint(10, 219), QPoint(59, 219),
                                QPoint(30, 180), QPoint(10, 200)}) {
        EXPECT_EQ(image.pixel(point), 0xFF666666U) << point.x() << ", " << point.y();
    }
    EXPECT_EQ(image.pixel(11, 181), 0xFF000000U);
}

TEST_F(ScenePainting, StraightLinesCoverWholePixels) {
    const QImage upright = paintedOnBlack({{StrokeLine{{100.4, 0}, {100.4, 240}, {ColorName::white, 1}, 7}}});
    EXPECT_EQ(inkOf(upright).size(), QSize(7, 240));
    EXPECT_EQ(upright.pixel(inkOf(upright).topLeft()), 0xFFFFFFFFU);
    const QImage across = paintedOnBlack({{StrokeLine{{0, 33.3}, {320, 33.3}, {ColorName::red, 1}, 2}}});
    EXPECT_EQ(inkOf(across).size(), QSize(320, 2));
    EXPECT_EQ(across.pixel(inkOf(across).bottomRight()), 0xFFFF453AU);
}

TEST_F(ScenePainting, ColorsAreThoseOfTheirNames) {
    const auto colorOf = [&](const Color& color) {
        return paintedOnBlack({{FillRect{{0, 0, 10, 10}, color}}}).pixel(5, 235) & 0xFFFFFF;
    };
    EXPECT_EQ(colorOf({ColorName::white, 1}), 0xFFFFFFU);
    EXPECT_EQ(colorOf({ColorName::gray, 1, 0.4}), 0x666666U);
    EXPECT_EQ(colorOf({ColorName::accent, 1}), accent);
    EXPECT_EQ(colorOf({ColorName::blue, 1}), 0x0A84FFU);
    EXPECT_EQ(colorOf({ColorName::red, 1}), 0xFF453AU);
    EXPECT_EQ(colorOf({ColorName::clear, 1}), 0U);
}

TEST_F(ScenePainting, ShapesThatAreNoNumbersAreLeftOut) {
    const double none = std::numeric_limits<double>::quiet_NaN();
    const double endless = std::numeric_limits<double>::infinity();
    const Color white{ColorName::white, 1};
    for (const double number : {none, endless}) {
        const Rect rect{10, number, 20, 20};
        const QImage image =
            paintedOnBlack({{FillRect{rect, white}, StrokeRect{rect, white, 1}, FillEllipse{rect, white},
                             StrokeEllipse{rect, white, 1}, FillRoundedRect{rect, {6, 6}, white},
                             StrokeLine{{0, number}, {10, 0}, white, 1}}});
        EXPECT_TRUE(inkOf(image).isEmpty());
    }
}

unsigned below(RandomSource& random, unsigned limit) {
    return random.integer(0U, limit - 1);
}

/// A scene of all kinds of shapes, many of which an earlier one of the same source has as well.
Scene randomScene(RandomSource& random) {
    Scene scene{{FillRect{{0, 0, 320, 240}, {ColorName::black, 0.45}}}};
    const auto number = [&](int limit) {
        return static_cast<double>(below(random, static_cast<unsigned>(limit)));
    };
    const auto color = [&] { return Color{below(random, 2) == 0 ? ColorName::white : ColorName::blue, 0.6}; };
    const unsigned count = below(random, 12);
    for (unsigned index = 0; index < count; ++index) {
        const Rect rect{number(4) * 70, number(3) * 60, 40 + number(2) * 60, 30 + number(2) * 40};
        switch (below(random, 7)) {
        case 0:
            scene.primitives.emplace_back(FillRect{rect, color()});
            break;
        case 1:
            scene.primitives.emplace_back(StrokeRect{rect, color(), 1 + number(3)});
            break;
        case 2:
            scene.primitives.emplace_back(StrokeLine{{rect.x, 0}, {rect.x, 240}, color(), 7});
            break;
        case 3:
            scene.primitives.emplace_back(
                StrokeLine{{rect.x, rect.y}, {rect.maxX(), rect.maxY()}, color(), 3});
            break;
        case 4:
            scene.primitives.emplace_back(FillEllipse{rect, color()});
            scene.primitives.emplace_back(StrokeEllipse{rect, color(), 1});
            break;
        case 5:
            scene.primitives.emplace_back(FillRoundedRect{rect, {6, 6}, color()});
            break;
        default:
            scene.primitives.emplace_back(
                TextLabel{{rect.x + 0.5, rect.y}, "120×80", {12, 500, true}, color()});
            break;
        }
    }
    return scene;
}

Form randomForm(RandomSource& random) {
    Control button;
    button.kind = ControlKind::pushButton;
    button.id = "one";
    button.frame = {200, 20, 96, 32};
    button.text = "OK";
    button.isHidden = below(random, 4) == 0;
    button.buttonStyle = ButtonStyle{};
    button.buttonStyle->shadow = ControlShadow{{ColorName::black, 0.5}, 0.5, 5, {0, -2}};
    button.buttonStyle->cornerRadius = 8;
    return {{button}};
}

class ScenePaintingAnew : public ScenePainting, public ::testing::WithParamInterface<bool> {};

TEST_P(ScenePaintingAnew, PaintingTheDifferenceGivesTheWholePicture) {
    QImage ground;
    if (GetParam()) {
        ground = QImage(size, QImage::Format_RGB32);
        ground.fill(QColor(10, 120, 60));
    }
    RandomSource random(20'261'121);
    ViewPicture picture(size, ground, fonts_);
    for (int round = 0; round < 100; ++round) {
        SCOPED_TRACE(round);
        const Scene scene = randomScene(random);
        const Form form = randomForm(random);
        const ControlFeedback feedback{below(random, 2) == 0 ? "one" : "",
                                       below(random, 3) == 0 ? "one" : ""};
        const QImage before = picture.image().copy();
        const QRegion region = picture.paint(scene, form, feedback, accent);
        ViewPicture whole(size, ground, fonts_);
        EXPECT_EQ(whole.paint(scene, form, feedback, accent), QRegion(QRect(QPoint(), size)));
        ASSERT_EQ(picture.image(), whole.image());
        if (round == 0) {
            continue;
        }
        // What is not told has not changed.
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x) {
                if (!region.contains(QPoint(x, y))) {
                    ASSERT_EQ(picture.image().pixel(x, y), before.pixel(x, y)) << x << ", " << y;
                }
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Grounds, ScenePaintingAnew, ::testing::Bool(),
                         [](const auto& info) { return info.param ? "OnADesktop" : "SeeThrough"; });

TEST_F(ScenePainting, EqualScenesDifferNowhereAndAMovedLineOnlyWhereItIs) {
    const Color white{ColorName::white, 0.85};
    const Scene first{{FillRect{{0, 0, 320, 240}, {ColorName::black, 0.45}},
                       StrokeRect{{0, 0, 320, 240}, white, 1}, StrokeLine{{100, 0}, {100, 240}, white, 2}}};
    Scene second = first;
    EXPECT_TRUE(changedRegion(first, second, 240, QRect(QPoint(), size), fonts_).isEmpty());
    second.primitives[2] = StrokeLine{{110, 0}, {110, 240}, white, 2};
    EXPECT_EQ(changedRegion(first, second, 240, QRect(QPoint(), size), fonts_),
              QRegion(99, 0, 2, 240) + QRegion(109, 0, 2, 240));
}

} // namespace

} // namespace tarvex::contract
