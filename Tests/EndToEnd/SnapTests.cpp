#include "Tests/EndToEnd/DesktopTest.h"

namespace tarvex::test {
namespace {

class Snap : public DesktopTest {};

INSTANTIATE_TEST_SUITE_P(Sessions, Snap, manySessions(), sessionName);

DesktopOptions withSettings(const Settings& settings) {
    DesktopOptions options;
    options.settings = settings;
    return options;
}

TEST_P(Snap, CoversTheZoneUnderThePointerWithoutAnySettings) {
    Desktop& desktop = start();
    TestWindow window(desktop.server.displayName());
    snapAndExpect(desktop, window.managed(), rightHalf);
    snapAndExpect(desktop, window.managed(), leftHalf);
    EXPECT_FALSE(std::filesystem::exists(desktop.tarvex.configPath()));
    EXPECT_EQ(desktop.tarvex.countInLog(
                  "snapAndHide success cells=1 modifiers=256 frame=(644.0, 8.0, 628.0, 1008.0)"),
              1);
}

TEST_P(Snap, CoversEveryZonePassedOverWithTheMultiZoneKeys) {
    Desktop& desktop = start(withSettings({.grids = {{"columns", {0.25, 0.5, 0.75}, {0.5}}}}));
    TestWindow window(desktop.server.displayName());
    const PixelRect area = desktop.screenArea();
    Drag drag(desktop, window.managed());
    drag.moveTo(area.at(0.3, 0.2));
    drag.pressToMatch(key::super);
    drag.pressToMatch(key::shift);
    drag.moveTo(area.at(0.6, 0.2));
    drag.dropAndExpect(zoneFrame(area, {0.25, 0.75, 0, 0.5}));
    EXPECT_EQ(desktop.tarvex.countInLog("snapAndHide success cells=2 modifiers=768"), 1);
}

TEST_P(Snap, FillsTheRectangleSpannedByZonesPassedOverDiagonally) {
    Desktop& desktop = start(withSettings({.grids = {{"quarters", {0.5}, {0.5}}}}));
    TestWindow window(desktop.server.displayName());
    const PixelRect area = desktop.screenArea();
    Drag drag(desktop, window.managed());
    drag.moveTo(area.at(0.25, 0.25));
    drag.pressToMatch(key::super);
    drag.pressToMatch(key::shift);
    drag.moveTo(area.at(0.75, 0.75));
    drag.dropAndExpect(zoneFrame(area, {}));
}

TEST_P(Snap, TakesOnlyTheLastZoneWithTheSingleZoneKey) {
    Desktop& desktop = start(withSettings({.grids = {{"quarters", {0.5}, {0.5}}}}));
    TestWindow window(desktop.server.displayName());
    const PixelRect area = desktop.screenArea();
    Drag drag(desktop, window.managed());
    drag.moveTo(area.at(0.25, 0.25));
    drag.pressToMatch(key::super);
    drag.moveTo(area.at(0.75, 0.25));
    drag.moveTo(area.at(0.75, 0.75));
    drag.dropAndExpect(zoneFrame(area, {0.5, 1, 0.5, 1}));
}

TEST_P(Snap, RoundsTheEdgesOfZonesToWholePixels) {
    // Thirds of 1280 pixels and an odd margin: no edge of the middle zone falls on a pixel.
    Desktop& desktop = start(withSettings({.grids = {{"thirds", {1.0 / 3, 2.0 / 3}, {0.43}}}, .margin = 7}));
    TestWindow window(desktop.server.displayName());
    const ZoneSpan left{0, 1.0 / 3, 0, 0.43};
    const ZoneSpan middle{1.0 / 3, 2.0 / 3, 0.43, 1};
    snapAndExpect(desktop, window.managed(), middle, 7);
    snapAndExpect(desktop, window.managed(), left, 7);
}

TEST_P(Snap, ThePixelsOnBothSidesOfALineBelongToDifferentZones) {
    Desktop& desktop = start();
    TestWindow window(desktop.server.displayName());
    const PixelRect area = desktop.screenArea();
    snapAndExpect(desktop, window.managed(), {639, 500}, zoneFrame(area, leftHalf));
    snapAndExpect(desktop, window.managed(), {640, 500}, zoneFrame(area, rightHalf));
}

TEST_P(Snap, ThePixelsInTheCornersOfTheScreenBelongToZones) {
    DesktopOptions options = withSettings({.grids = {{"quarters", {0.5}, {0.5}}}});
    Desktop& desktop = start(options);
    TestWindow window(desktop.server.displayName());
    const PixelRect area = desktop.screenArea();
    snapAndExpect(desktop, window.managed(), {0, 0}, zoneFrame(area, {0, 0.5, 0, 0.5}));
    snapAndExpect(desktop, window.managed(), {1279, 1023}, zoneFrame(area, {0.5, 1, 0.5, 1}));
}

TEST_P(Snap, AnExtraModifierIsNoMatch) {
    Desktop& desktop = start();
    TestWindow window(desktop.server.displayName());
    Drag drag(desktop, window.managed());
    drag.pressToNoMatch(key::control);
    drag.pressToNoMatch(key::super);
    drag.moveTo({900, 500});
    desktop.windowManager->barrier();
    const PixelRect dropped = window.managed().requireVisibleFrame();
    drag.drop();
    drag.releaseKeys();
    desktop.expectFrameUnchanged(window.managed(), dropped);
    EXPECT_EQ(desktop.tarvex.countInLog("updateOverlayState noMatch modifiers=4352"), 1);
    EXPECT_EQ(desktop.tarvex.countInLog("snapAndHide"), 0);
}

TEST_P(Snap, KeysHeldBeforeTheButtonDoNothingUntilOneChanges) {
    Desktop& desktop = start();
    TestWindow window(desktop.server.displayName());
    desktop.keyboard.press(key::super);
    Drag drag(desktop, window.managed());
    drag.moveTo({900, 500});
    desktop.windowManager->barrier();
    const PixelRect dropped = window.managed().requireVisibleFrame();
    drag.drop();
    desktop.windowManager->barrier();
    desktop.keyboard.release(key::super);
    desktop.expectFrameUnchanged(window.managed(), dropped);
    EXPECT_EQ(desktop.tarvex.countInLog("snapAndHide"), 0);
}

TEST_P(Snap, FollowsTheModifiersOfTheSettings) {
    // Control for one zone, Control with Option for several.
    Desktop& desktop = start(withSettings({.singleModifiers = 4096, .multiModifiers = 6144}));
    TestWindow window(desktop.server.displayName());
    const PixelRect area = desktop.screenArea();
    Drag drag(desktop, window.managed());
    drag.pressToMatch(key::control);
    drag.moveTo(pointIn(area, rightHalf));
    drag.drop();
    desktop.expectFrame(window.managed(), zoneFrame(area, rightHalf));
    drag.releaseKeys();
    Drag second(desktop, window.managed());
    second.pressToMatch(key::control);
    second.pressToMatch(key::alt);
    second.moveTo(pointIn(area, leftHalf));
    second.drop();
    desktop.expectFrame(window.managed(), zoneFrame(area, {}));
}

TEST_P(Snap, LockKeysDoNotDisturbTheMatch) {
    Desktop& desktop = start();
    TestWindow window(desktop.server.displayName());
    desktop.keyboard.tap(key::numLock);
    desktop.keyboard.tap(key::capsLock);
    snapAndExpect(desktop, window.managed(), rightHalf);
}

TEST_P(Snap, TheFirstButtonIsThatOfTheLeftHand) {
    Desktop& desktop = start();
    TestWindow window(desktop.server.displayName());
    desktop.pointer.setMapping({3, 2, 1});
    desktop.primaryButton = 3;
    snapAndExpect(desktop, window.managed(), rightHalf);
}

TEST_P(Snap, SettingsChangedDuringTheDragCount) {
    Desktop& desktop = start();
    TestWindow window(desktop.server.displayName());
    const PixelRect area = desktop.screenArea();
    Drag drag(desktop, window.managed());
    drag.pressToMatch(key::super);
    desktop.tarvex.writeConfig(Settings{.grids = {{"rows", {}, {0.25}}}, .margin = 20}.json());
    drag.moveTo(area.at(0.5, 0.7));
    drag.dropAndExpect(zoneFrame(area, {0, 1, 0.25, 1}, 20));
}

} // namespace
} // namespace tarvex::test
