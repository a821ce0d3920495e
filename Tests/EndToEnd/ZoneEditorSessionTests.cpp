#include "Tests/EndToEnd/ZoneEditorFixture.h"

#include <string>

namespace tarvex::test {
namespace {

constexpr int width = 1280;
constexpr int height = 1024;

DesktopOptions withoutTarvex() {
    DesktopOptions options;
    options.settings = Settings{.grids = {{"mine", {}, {}}}};
    options.startsTarvex = false;
    return options;
}

/// Sessions whose window managers give windows a place, or no keyboard, against their will.
class ZoneEditorUnderStrictManagers : public ZoneEditorTest {};

INSTANTIATE_TEST_SUITE_P(Sessions, ZoneEditorUnderStrictManagers,
                         ::testing::Values(SessionKind{WindowManagerKind::i3, false},
                                           SessionKind{WindowManagerKind::i3, true},
                                           SessionKind{WindowManagerKind::xfwm4Strict, false},
                                           SessionKind{WindowManagerKind::xfwm4Strict, true}),
                         sessionName);

TEST_P(ZoneEditorUnderStrictManagers, CoversTheDisplayAndHasTheKeyboardUntilItCloses) {
    Desktop& desktop = start(withoutTarvex());
    TestWindow window(desktop.server.displayName());
    const PixelRect tiled = window.managed().requireVisibleFrame();
    click(desktop, {tiled.x + tiled.width / 2, tiled.y + tiled.height / 2});
    desktop.client.waitUntil([&] { return focus(desktop) == window.id(); }, "the window has the keyboard");
    open(desktop);
    for (const PixelPoint corner : {PixelPoint{0, 0}, PixelPoint{width - 1, 0}, PixelPoint{0, height - 1},
                                    PixelPoint{width - 1, height - 1}}) {
        const auto isDark = [&] { return Screenshot(desktop.client).pixel(corner) != bare_->pixel(corner); };
        EXPECT_TRUE(desktop.client.waitFor(isDark)) << corner.x << ", " << corner.y;
    }
    EXPECT_EQ(window.managed().visibleFrame(), tiled) << "other windows keep their places";
    click(desktop, {700, 512});
    desktop.keyboard.tap(key::enter);
    awaitClosed(desktop);
    EXPECT_EQ(focus(desktop), window.id());
    const auto config = nlohmann::json::parse(configText(desktop));
    ASSERT_EQ(config["grids"].size(), 2U);
    EXPECT_EQ(config["grids"][1]["horizontalSplits"], nlohmann::json({fraction(512, height)}));
}

/// Sessions whose toolkit enlarges everything.
class ZoneEditorAtScale : public ZoneEditorTest {
protected:
    void expectPixelForPixel(const std::string& scale) {
        Desktop& desktop = start(withoutTarvex());
        desktop.tarvex.setVariable("QT_SCALE_FACTOR", scale);
        open(desktop);
        const Screenshot opened = desktop.steadyScreen();
        EXPECT_EQ(opened.pixel({0, height - 1}), opened.pixel(probe_));
        EXPECT_NE(opened.pixel({width - 1, 0}), bare_->pixel({width - 1, 0}));
        click(desktop, {700, 513});
        click(desktop, {width - 16 - 48, height - 16 - 16});
        awaitClosed(desktop);
        const auto config = nlohmann::json::parse(configText(desktop));
        ASSERT_EQ(config["grids"].size(), 2U);
        EXPECT_EQ(config["grids"][1]["horizontalSplits"], nlohmann::json({fraction(513, height)}));
    }
};

INSTANTIATE_TEST_SUITE_P(Sessions, ZoneEditorAtScale,
                         ::testing::Values(SessionKind{WindowManagerKind::openbox, false}), sessionName);

TEST_P(ZoneEditorAtScale, OneAndAQuarterChangesNoPixel) {
    expectPixelForPixel("1.25");
}

TEST_P(ZoneEditorAtScale, TwoChangesNoPixel) {
    expectPixelForPixel("2");
}

} // namespace
} // namespace tarvex::test
