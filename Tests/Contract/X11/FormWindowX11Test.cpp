#include "Platform/Linux/Qt/FormLabel.h"
#include "Platform/Linux/Qt/QtKeyWindow.h"
#include "Platform/Linux/Qt/SliderScale.h"
#include "Platform/Linux/Qt/TextColors.h"
#include "Tests/Contract/X11/FormWindowFixture.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QKeyEvent>

#include <cmath>
#include <limits>

namespace tarvex::contract {

namespace {

constexpr std::uint32_t escapeKey = 0xFF1B;

QPalette paletteOf(const QColor& window, const QColor& text) {
    QPalette palette(window);
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    return palette;
}

using FormWindowNative = FormWindowFixture;

TEST_F(FormWindowNative, TellsTheWindowManagerWhatItIs) {
    level_ = 3;
    start();
    const xcb_window_t native = desktop_->native("Window");
    test::XClient& client = desktop_->client;
    EXPECT_FALSE(client.isViewable(native));
    show();
    EXPECT_EQ(client.text(native, "_NET_WM_NAME"), "Window");
    EXPECT_EQ(client.words(native, "_NET_WM_WINDOW_TYPE").at(0), client.atom("_NET_WM_WINDOW_TYPE_NORMAL"));
    EXPECT_TRUE(managed().hasState("_NET_WM_STATE_ABOVE"));
    EXPECT_GT(managed().frameExtents().top, 0);
    // Moved and closed, but neither resized to a size of its own, iconified nor maximised: the functions of
    // _MOTIF_WM_HINTS.
    constexpr std::uint32_t closeFunction = 1U << 5U;
    constexpr std::uint32_t iconifyAndMaximizeFunctions = 1U << 3U | 1U << 4U;
    const std::uint32_t functions = client.words(native, "_MOTIF_WM_HINTS").at(1);
    EXPECT_NE(functions & closeFunction, 0U);
    EXPECT_EQ(functions & iconifyAndMaximizeFunctions, 0U);
}

TEST_F(FormWindowNative, NormalLevelDoesNotStayAbove) {
    start();
    show();
    EXPECT_FALSE(managed().hasState("_NET_WM_STATE_ABOVE"));
}

TEST_F(FormWindowNative, IsTheKeyWindowWhileItHasTheKeyboard) {
    start();
    const QtKeyWindow keyWindow;
    EXPECT_EQ(keyWindow.keyWindowTitle(), std::nullopt);
    show();
    EXPECT_EQ(keyWindow.keyWindowTitle(), "Window");
    desktop_->useOther();
    EXPECT_TRUE(waitUntil([&] { return !keyWindow.keyWindowTitle(); }));
}

TEST_F(FormWindowNative, EscapeAndControlWCloseIt) {
    start();
    show();
    desktop_->keyboard.tap(escapeKey);
    EXPECT_TRUE(waitUntil([&] { return !window_->isVisible(); }));
    show();
    desktop_->keyboard.press(test::key::control);
    desktop_->keyboard.tap('w');
    desktop_->keyboard.release(test::key::control);
    EXPECT_TRUE(waitUntil([&] { return !window_->isVisible(); }));
    show();
    desktop_->keyboard.tap('w');
    desktop_->settle();
    EXPECT_TRUE(window_->isVisible());
    EXPECT_EQ(owner_.closings, 2);
}

// As when it ended the recording of a hotkey and is still held.
TEST_F(FormWindowNative, RepeatedEscapeDoesNotCloseIt) {
    start();
    show();
    QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier, QString(), true);
    QCoreApplication::sendEvent(&desktop_->widget("Window"), &repeated);
    EXPECT_TRUE(window_->isVisible());
    QKeyEvent fresh(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(&desktop_->widget("Window"), &fresh);
    EXPECT_FALSE(window_->isVisible());
}

TEST_F(FormWindowNative, WhoSeesAllKeysFirstMayKeepEscape) {
    class Swallower final : public QObject {
    public:
        bool eventFilter(QObject* /*watched*/, QEvent* event) override {
            return event->type() == QEvent::KeyPress;
        }
    };

    start();
    show();
    Swallower swallower;
    qApp->installEventFilter(&swallower);
    desktop_->keyboard.tap(escapeKey);
    desktop_->settle();
    EXPECT_TRUE(window_->isVisible());
    qApp->removeEventFilter(&swallower);
    desktop_->keyboard.tap(escapeKey);
    EXPECT_TRUE(waitUntil([&] { return !window_->isVisible(); }));
}

using FormWindowControls = FormWindowFixture;

TEST_F(FormWindowControls, AssistiveTechnologyIsToldWhatTheyAre) {
    owner_.control("box").text = "\u2318";
    owner_.control("box").toolTip = "Super";
    owner_.control("button").toolTip = "Press it";
    start();
    const auto* const box = QAccessible::queryAccessibleInterface(&control("box"));
    EXPECT_EQ(box->role(), QAccessible::CheckBox);
    EXPECT_EQ(box->text(QAccessible::Name), "Super");
    EXPECT_EQ(control("box").toolTip(), "Super");
    owner_.control("box").accessibleName = "Super key";
    window_->setNeedsLayout();
    desktop_->settle();
    EXPECT_EQ(box->text(QAccessible::Name), "Super key");
    const auto* const button = QAccessible::queryAccessibleInterface(&control("button"));
    EXPECT_EQ(button->text(QAccessible::Name), "button");
    EXPECT_EQ(button->text(QAccessible::Description), "Press it");
    const auto* const label = QAccessible::queryAccessibleInterface(&control("label"));
    EXPECT_EQ(label->role(), QAccessible::StaticText);
    EXPECT_EQ(label->text(QAccessible::Name), "label");
    EXPECT_EQ(control("label").focusPolicy(), Qt::NoFocus);
}

TEST_F(FormWindowControls, AssistiveTechnologySeesAndSetsTheValuesOfASlider) {
    owner_.control("slider").value = 12.5;
    start();
    auto* const slider = QAccessible::queryAccessibleInterface(&control("slider"));
    EXPECT_EQ(slider->role(), QAccessible::Slider);
    auto* const value = slider->valueInterface();
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(value->currentValue().toDouble(), 12.5);
    EXPECT_EQ(value->minimumValue().toDouble(), 0);
    EXPECT_EQ(value->maximumValue().toDouble(), 40);
    EXPECT_EQ(value->minimumStepSize().toDouble(), 1);
    value->setCurrentValue(20.25);
    EXPECT_EQ(owner_.uses, (std::vector<RecordingFormOwner::Use>{{"slider", 20.25}}));
}

TEST_F(FormWindowControls, StandWhereTheFormHasThem) {
    start();
    EXPECT_EQ(control("label").geometry(), QRect(20, 28, 120, 22));
    EXPECT_EQ(control("button").geometry(), QRect(20, 170, 100, 30));
    const QRect sliderFrame(20, 76, 360, 24);
    EXPECT_TRUE(sliderFrame.contains(control("slider").geometry()));
}

TEST_F(FormWindowControls, WidgetStaysWhileTheIdDoes) {
    start();
    const QWidget* const slider = &control("slider");
    const QWidget* const box = &control("box");
    owner_.control("slider").frame.x += 10;
    owner_.control("box").kind = ControlKind::pushButton;
    window_->setNeedsLayout();
    desktop_->settle();
    EXPECT_EQ(&control("slider"), slider);
    EXPECT_NE(&control("box"), box) << "another kind is another control";
}

TEST_F(FormWindowControls, PressBesideTheHandleGoesThere) {
    start();
    show();
    desktop_->click(desktop_->pixelIn("Window", "slider", 0.75));
    ASSERT_EQ(owner_.uses.size(), 1U);
    EXPECT_NEAR(owner_.uses.front().value, 30, 1);
}

TEST_F(FormWindowControls, LineThatIsTooLongEndsInAnEllipsis) {
    owner_.control("label").text = "a line that does not fit into its frame at all";
    start();
    const auto shown = dynamic_cast<const FormLabel&>(control("label")).shownText();
    EXPECT_TRUE(shown.starts_with("a line")) << shown;
    EXPECT_TRUE(shown.ends_with("\u2026")) << shown;
}

TEST(FormWindowColors, FainterTextIsReadableOnLightAndDarkWindows) {
    for (const auto& [window, text] : {std::pair{QColor(0xEF, 0xEF, 0xEF), QColor(Qt::black)},
                                       {QColor(0x2E, 0x2E, 0x32), QColor(0xEE, 0xEE, 0xEE)},
                                       {QColor(Qt::black), QColor(Qt::white)},
                                       {QColor(0x40, 0x40, 0x40), QColor(0xC0, 0xC0, 0xC0)}}) {
        const QPalette palette = paletteOf(window, text);
        EXPECT_EQ(qtColorOf(TextColor::label, palette), text);
        const QColor faint = qtColorOf(TextColor::secondaryLabel, palette);
        EXPECT_GE(contrastBetween(faint, window), 4.5) << window.name().toStdString();
        EXPECT_LT(contrastBetween(faint, window), contrastBetween(text, window));
    }
    EXPECT_NEAR(contrastBetween(Qt::black, Qt::white), 21, 0.01);
}

TEST_F(FormWindowControls, FollowAPaletteThatTurnsDark) {
    owner_.control("label").textColor = TextColor::secondaryLabel;
    start();
    show();
    const auto brightest = [&] {
        const QImage image = control("label").grab().toImage();
        int value = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                value = std::max(value, qGray(image.pixel(x, y)));
            }
        }
        return value;
    };
    const QPalette before = QGuiApplication::palette();
    QGuiApplication::setPalette(paletteOf(QColor(0x2E, 0x2E, 0x32), QColor(0xEE, 0xEE, 0xEE)));
    EXPECT_TRUE(waitUntil([&] { return brightest() > 140; })) << "fainter text on a dark window";
    QGuiApplication::setPalette(before);
    EXPECT_TRUE(waitUntil([&] { return brightest() > 200; })) << "the light window around the text";
}

TEST_F(FormWindowControls, OutlinesFollowEachPalette) {
    start();
    show();
    const auto derivedFrom = [&](const std::string& id) {
        return control(id).palette().color(QPalette::Window);
    };
    const QPalette light = QGuiApplication::palette();
    const QColor text(0xEE, 0xEE, 0xEE);
    // From dark to dark: what stood out from the first window would be of the wrong colour on the second.
    for (const QColor& window : {QColor(0x2E, 0x2E, 0x32), QColor(0x50, 0x10, 0x10)}) {
        const QPalette dark = paletteOf(window, text);
        QGuiApplication::setPalette(dark);
        ASSERT_TRUE(waitUntil([&] { return derivedFrom("button") == window; }));
        for (const char* id : {"box", "slider"}) {
            SCOPED_TRACE(id);
            EXPECT_TRUE(waitUntil([&] {
                return derivedFrom(id) == outlinedPalette(dark).color(QPalette::Active, QPalette::Window);
            }));
            // Qt's styles draw the outline in that colour, darker.
            EXPECT_GT(contrastBetween(derivedFrom(id).darker(140), window), 1.5);
        }
    }
    QGuiApplication::setPalette(light);
    for (const char* id : {"box", "slider"}) {
        EXPECT_TRUE(waitUntil([&] { return derivedFrom(id) == light.color(QPalette::Window); })) << id;
    }
}

TEST(FormWindowSliderScale, StepsAreFineAndExact) {
    const SliderScale scale(0, 40);
    EXPECT_EQ(scale.valueOf(scale.stepOf(12.7)), 12.7);
    EXPECT_EQ(scale.valueOf(scale.stepOf(0.001)), 0.001);
    EXPECT_EQ(scale.valueOf(scale.keyStep()), 1);
    EXPECT_EQ(scale.valueOf(scale.pageStep()), 5);
    EXPECT_EQ(scale.valueOf(scale.last()), 40);
    EXPECT_EQ(scale.stepOf(100), scale.last());
    EXPECT_EQ(scale.stepOf(-1), 0);
}

TEST(FormWindowSliderScale, ShortSlidersHaveTenThousandSteps) {
    const SliderScale scale(-0.5, 0.5);
    EXPECT_EQ(scale.last(), 10000);
    EXPECT_EQ(scale.valueOf(0), -0.5);
    EXPECT_NEAR(scale.valueOf(scale.keyStep()), -0.4, 1e-9);
}

TEST(FormWindowSliderScale, WhatIsNoRangeStandsStill) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    for (const SliderScale& scale : {SliderScale(5, 5), SliderScale(5, 1), SliderScale(nan, nan)}) {
        EXPECT_EQ(scale.last(), 0);
        EXPECT_EQ(scale.valueOf(scale.stepOf(infinity)), scale.maximum());
    }
    EXPECT_EQ(SliderScale(0, 40).stepOf(nan), 0);
    EXPECT_EQ(SliderScale(0, 40).stepOf(infinity), 40000);
    EXPECT_GT(SliderScale(-infinity, infinity).last(), 0);
}

} // namespace

} // namespace tarvex::contract
