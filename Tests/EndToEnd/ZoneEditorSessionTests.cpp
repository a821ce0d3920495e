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
                         ::testing::ValuesIn(withFurther({{WindowManagerKind::i3, false},
                                                          {WindowManagerKind::i3, true},
                                                          {WindowManagerKind::xfwm4Strict, false},
                                                          {WindowManagerKind::xfwm4Strict, true},
                                                          {WindowManagerKind::metacity, false},
                                                          {WindowManagerKind::kwin, false}})),
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

/// Sessions whose window manager says nothing of the panels that it shows.
class ZoneEditorBesideBars : public ZoneEditorTest {
protected:
    static constexpr int panelHeight = 40;

    static TestWindowOptions panelOptions() {
        TestWindowOptions options;
        options.type = "_NET_WM_WINDOW_TYPE_DOCK";
        options.geometry = {0, 0, width, panelHeight};
        options.strut = Strut{.top = panelHeight, .topStart = 0, .topEnd = width - 1};
        options.backgroundPixel = 0x905030;
        return options;
    }

    /// Waits for both and gives what they leave.
    static PixelRect awaitBars(Desktop& desktop) {
        const auto color = [&](int y) { return Screenshot(desktop.client).pixel({width - 1, y}); };
        desktop.client.waitUntil(
            [&] { return color(height - 1) == 0x205080 && color(panelHeight - 1) == 0x905030; },
            "the bars are shown");
        // How high its bar is, the window manager takes from a font.
        int barTop = height - 1;
        while (color(barTop - 1) == 0x205080) {
            --barTop;
        }
        return {0, panelHeight, width, barTop - panelHeight};
    }
};

INSTANTIATE_TEST_SUITE_P(Sessions, ZoneEditorBesideBars,
                         ::testing::Values(SessionKind{WindowManagerKind::i3WithBar, false}), sessionName);

TEST_P(ZoneEditorBesideBars, CoversWhatTheBarsLeaveAndNoWindowComesOverIt) {
    Desktop& desktop = start(withoutTarvex());
    TestWindow panel(desktop.server.displayName(), panelOptions());
    const PixelRect area = awaitBars(desktop);
    open(desktop);
    const auto differences = [&](const PixelRect& rect) {
        return Screenshot(desktop.client).countDifferences(*bare_, rect);
    };
    const auto isCovered = [&] { return differences(area) == area.width * area.height; };
    EXPECT_TRUE(desktop.client.waitFor(isCovered)) << differences(area);
    EXPECT_EQ(differences({0, 0, width, panelHeight}), 0);
    const int barTop = area.y + area.height;
    EXPECT_EQ(differences({0, barTop, width, height - barTop}), 0);
    // It gets the whole area, and its frame is as unmanaged as the window of a screen locker.
    TestWindowOptions options;
    options.backgroundPixel = bare_->pixel(probe_);
    TestWindow later(desktop.server.displayName(), options);
    EXPECT_TRUE(desktop.client.waitFor(isCovered)) << differences(area);
    click(desktop, {700, 532});
    desktop.keyboard.tap(key::enter);
    desktop.client.waitUntil([&] { return !isDarkened(desktop); }, "the editor is closed");
    const auto config = nlohmann::json::parse(configText(desktop));
    ASSERT_EQ(config["grids"].size(), 2U);
    EXPECT_EQ(config["grids"][1]["horizontalSplits"],
              nlohmann::json({fraction(532 - panelHeight, area.height)}));
}

TEST_P(ZoneEditorBesideBars, WindowsSnapToWhatTheBarsLeave) {
    DesktopOptions options;
    options.settings = Settings{.grids = {{"mine", {}, {}}}};
    Desktop& desktop = start(options);
    TestWindow panel(desktop.server.displayName(), panelOptions());
    const PixelRect area = awaitBars(desktop);
    // A kind of window that is not tiled.
    TestWindowOptions dialog;
    dialog.type = "_NET_WM_WINDOW_TYPE_DIALOG";
    TestWindow window(desktop.server.displayName(), dialog);
    Drag drag(desktop, window.managed(), Drag::Begin::unfollowed);
    drag.pressToMatch(key::super);
    drag.moveTo({700, 600});
    drag.drop();
    const std::string frame = "(8.0, " + std::to_string(height - area.y - area.height + 8) + ".0, 1264.0, " +
                              std::to_string(area.height - 16) + ".0)";
    desktop.awaitLog("snapAndHide success cells=1 modifiers=256 frame=" + frame, 1);
    const PixelRect zone{8, area.y + 8, 1264, area.height - 16};
    // Such a window manager says nothing of the borders that it draws.
    const auto isInZone = [&] { return window.managed().frameWindowGeometry() == zone; };
    EXPECT_TRUE(desktop.client.waitFor(isInZone))
        << describe(window.managed().frameWindowGeometry().value_or(PixelRect{}));
    drag.releaseKeys();
    desktop.windowManager->barrier();
    EXPECT_TRUE(isInZone());
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
