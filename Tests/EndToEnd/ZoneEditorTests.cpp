#include "Tests/EndToEnd/ZoneEditorFixture.h"

#include <cmath>
#include <cstdlib>

namespace tarvex::test {
namespace {

class ZoneEditor : public ZoneEditorTest {};

INSTANTIATE_TEST_SUITE_P(Sessions, ZoneEditor, allSessions(), sessionName);

DesktopOptions withGrid(std::vector<double> verticals, std::vector<double> horizontals) {
    DesktopOptions options;
    options.settings = Settings{.grids = {{"mine", std::move(verticals), std::move(horizontals)}}};
    return options;
}

constexpr int width = 1280;
constexpr int height = 1024;

TEST_P(ZoneEditor, WhatIsDrawnIsWhatWindowsSnapTo) {
    Desktop& desktop = startEditor(withGrid({}, {}));
    click(desktop, {700, 512});
    shiftClick(desktop, {320, 200});
    // Takes the line to the other side.
    desktop.pointer.moveTo({320, 300});
    desktop.pointer.press();
    desktop.pointer.glideTo({960, 300});
    desktop.pointer.release();
    // Draws another and deletes it.
    click(desktop, {500, 800});
    desktop.pointer.press(3);
    desktop.pointer.release(3);
    desktop.keyboard.tap(key::enter);
    awaitClosed(desktop);
    const auto config = nlohmann::json::parse(configText(desktop));
    ASSERT_EQ(config["grids"].size(), 2U);
    const auto& grid = config["grids"][1];
    EXPECT_EQ(grid["verticalSplits"], nlohmann::json({fraction(960, width)}));
    EXPECT_EQ(grid["horizontalSplits"], nlohmann::json({fraction(512, height)}));
    EXPECT_EQ(config["defaultGridByDisplayId"].begin().value(), grid["id"]);
    EXPECT_EQ(config["grids"][0]["id"], "mine");

    TestWindow window(desktop.server.displayName());
    const ZoneSpan lowerRight{fraction(960, width), 1, fraction(512, height), 1};
    const PixelRect zone = zoneFrame(desktop.screenArea(), lowerRight);
    snapAndExpect(desktop, window.managed(), pointIn(desktop.screenArea(), lowerRight), zone);
}

TEST_P(ZoneEditor, CancelLeavesTheFileAsItIs) {
    Desktop& desktop = startEditor(withGrid({0.25}, {}));
    const std::string before = configText(desktop);
    click(desktop, {700, 512});
    desktop.keyboard.tap(key::escape);
    awaitClosed(desktop);
    EXPECT_EQ(configText(desktop), before);
}

TEST_P(ZoneEditor, CancelButtonCancels) {
    Desktop& desktop = startEditor(withGrid({0.25}, {}));
    const std::string before = configText(desktop);
    click(desktop, {700, 512});
    click(desktop, {width - 16 - 96 - 10 - 48, height - 16 - 16});
    awaitClosed(desktop);
    EXPECT_EQ(configText(desktop), before);
}

TEST_P(ZoneEditor, OkButtonAccepts) {
    Desktop& desktop = startEditor(withGrid({0.25}, {}));
    click(desktop, {700, 512});
    click(desktop, {width - 16 - 48, height - 16 - 16});
    awaitClosed(desktop);
    const auto config = nlohmann::json::parse(configText(desktop));
    ASSERT_EQ(config["grids"].size(), 2U);
    EXPECT_EQ(config["grids"][1]["horizontalSplits"], nlohmann::json({fraction(512, height)}));
    EXPECT_EQ(config["grids"][1]["verticalSplits"], nlohmann::json({0.25}));
}

TEST_P(ZoneEditor, KeypadEnterAccepts) {
    Desktop& desktop = startEditor(withGrid({0.25}, {}));
    click(desktop, {700, 512});
    desktop.keyboard.tap(key::keypadEnter);
    awaitClosed(desktop);
    EXPECT_EQ(nlohmann::json::parse(configText(desktop))["grids"].size(), 2U);
}

TEST_P(ZoneEditor, KeyboardGoesBackToTheWindowThatHadIt) {
    DesktopOptions options = withGrid({}, {});
    options.startsTarvex = false;
    Desktop& desktop = start(options);
    TestWindow window(desktop.server.displayName());
    click(desktop, window.managed().titleBarPoint());
    desktop.client.waitUntil([&] { return focus(desktop) == window.id(); }, "the window has the keyboard");
    probe_ = {900, 900};
    open(desktop);
    desktop.keyboard.tap(key::escape);
    awaitClosed(desktop);
    EXPECT_EQ(focus(desktop), window.id());
}

// What a colour of that alpha makes of the pixel below.
std::uint32_t over(std::uint32_t below, std::uint32_t above, double alpha) {
    std::uint32_t result = 0;
    for (const unsigned shift : {0U, 8U, 16U}) {
        const double mixed = (below >> shift & 0xFFU) * (1 - alpha) + (above >> shift & 0xFFU) * alpha;
        result |= static_cast<std::uint32_t>(std::lround(mixed)) << shift;
    }
    return result;
}

int distance(std::uint32_t first, std::uint32_t second) {
    int farthest = 0;
    for (const unsigned shift : {0U, 8U, 16U}) {
        farthest = std::max(farthest, std::abs(static_cast<int>(first >> shift & 0xFFU) -
                                               static_cast<int>(second >> shift & 0xFFU)));
    }
    return farthest;
}

TEST_P(ZoneEditor, ColorsAreThoseOfThePicture) {
    constexpr std::uint32_t blue = 0x0A84FF;
    TestWindowOptions below;
    below.backgroundPixel = 0x80C040;
    below.geometry = {100, 100, 500, 300};
    DesktopOptions options = withGrid({0.75}, {0.5});
    options.startsTarvex = false;
    Desktop& desktop = start(options);
    TestWindow window(desktop.server.displayName(), below);
    open(desktop);
    desktop.pointer.moveTo({960, 200});
    const auto isNear = [&](PixelPoint point, std::uint32_t color) {
        return distance(Screenshot(desktop.client).pixel(point), color) <= 3;
    };
    const auto expectColor = [&](PixelPoint point, std::uint32_t color, const char* what) {
        EXPECT_TRUE(desktop.client.waitFor([&] { return isNear(point, color); }))
            << what << ": " << std::hex << Screenshot(desktop.client).pixel(point) << " for " << color;
    };
    const std::uint32_t darkWindow = over(0x80C040, 0x000000, 0.45);
    const std::uint32_t dark = over(bare_->pixel(probe_), 0x000000, 0.45);
    expectColor({300, 250}, darkWindow, "the window shines through the backdrop");
    expectColor(probe_, dark, "the desktop shines through the backdrop");
    expectColor({400, 512}, over(dark, 0xFFFFFF, 0.4), "other lines are dim");
    expectColor({960, 700}, over(over(dark, blue, 0.35), blue, 0.95), "the hovered line is blue");
    expectColor({966, 700}, over(dark, blue, 0.35), "the band is a lighter blue");
    expectColor({960, height - 10}, over(over(over(dark, blue, 0.35), blue, 0.95), blue, 0.55),
                "the marker lies over the end of the line");
    // The label of the large zone on the left, above its text.
    const PixelRect zone = zoneFrame(desktop.screenArea(), {0, 0.75, 0.5, 1});
    expectColor({zone.x + zone.width / 2, zone.y + zone.height / 2 - 8}, over(dark, 0xFFFFFF, 0.72),
                "the label stands on white");
    expectColor({width - 16 - 90, height - 16 - 16}, blue, "the button that accepts is blue");
    expectColor({width - 16 - 96 - 10 - 90, height - 16 - 16}, 0x333333, "the other one is dark");
    desktop.keyboard.tap(key::escape);
    awaitClosed(desktop);
}

TEST_P(ZoneEditor, UnreadableSettingsAreKeptBesideTheNewOnes) {
    DesktopOptions options;
    options.startsTarvex = false;
    Desktop& desktop = start(options);
    desktop.tarvex.writeConfig("{\"grids\": [");
    desktop.tarvex.allowOnStandardError("Failed to decode config: ");
    open(desktop);
    desktop.keyboard.tap(key::enter);
    awaitClosed(desktop);
    const auto config = nlohmann::json::parse(configText(desktop));
    EXPECT_EQ(config["grids"].size(), 2U);
    std::ifstream kept(desktop.tarvex.configPath().string() + ".bak", std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(kept), {}), "{\"grids\": [");
}

TEST_P(ZoneEditor, MonitorsThatChangeCloseIt) {
    DesktopOptions options = withGrid({0.25}, {});
    options.monitors = {{"left", {0, 0, 640, 1024}, true, true},
                        {"right", {640, 0, 640, 1024}, false, false}};
    Desktop& desktop = startEditor(options);
    const std::string before = configText(desktop);
    click(desktop, {500, 512});
    desktop.monitors.set(
        {{"left", {0, 0, 700, 1024}, true, true}, {"right", {700, 0, 580, 1024}, false, false}});
    awaitClosed(desktop);
    EXPECT_EQ(configText(desktop), before);
}

TEST_P(ZoneEditor, PanelStaysFree) {
    DesktopOptions options = withGrid({}, {});
    options.startsTarvex = false;
    Desktop& desktop = start(options);
    TestWindowOptions dock;
    dock.type = "_NET_WM_WINDOW_TYPE_DOCK";
    dock.geometry = {0, 0, width, 40};
    dock.strut = Strut{.top = 40, .topStart = 0, .topEnd = width - 1};
    dock.backgroundPixel = 0x905030;
    TestWindow panel(desktop.server.displayName(), dock);
    open(desktop);
    EXPECT_EQ(Screenshot(desktop.client).countDifferences(*bare_, {0, 0, width, 40}), 0);
    EXPECT_NE(Screenshot(desktop.client).pixel({0, 40}), bare_->pixel({0, 40}));
    click(desktop, {700, 532});
    desktop.keyboard.tap(key::enter);
    awaitClosed(desktop);
    const auto config = nlohmann::json::parse(configText(desktop));
    ASSERT_EQ(config["grids"].size(), 2U);
    EXPECT_EQ(config["grids"][1]["horizontalSplits"], nlohmann::json({fraction(532 - 40, height - 40)}));
}

TEST_P(ZoneEditor, LineDraggedOutOfTheDisplayIsThrownAway) {
    DesktopOptions options = withGrid({0.25}, {0.5});
    options.monitors = {{"left", {0, 0, 640, 1024}, true, true},
                        {"right", {640, 0, 640, 1024}, false, false}};
    Desktop& desktop = startEditor(options);
    desktop.pointer.moveTo({160, 300});
    desktop.pointer.press();
    desktop.pointer.glideTo({900, 300});
    desktop.pointer.release();
    desktop.keyboard.tap(key::enter);
    awaitClosed(desktop);
    const auto config = nlohmann::json::parse(configText(desktop));
    ASSERT_EQ(config["grids"].size(), 2U);
    EXPECT_EQ(config["grids"][1]["verticalSplits"], nlohmann::json::array());
    EXPECT_EQ(config["grids"][1]["horizontalSplits"], nlohmann::json({0.5}));
}

TEST_P(ZoneEditor, ChangesOfOtherMonitorsLeaveItOpen) {
    DesktopOptions options = withGrid({0.25}, {});
    options.monitors = {{"left", {0, 0, 640, 1024}, true, true},
                        {"right", {640, 0, 640, 1024}, false, false}};
    Desktop& desktop = startEditor(options);
    click(desktop, {500, 512});
    desktop.monitors.remove("right");
    click(desktop, {500, 256});
    desktop.keyboard.tap(key::enter);
    awaitClosed(desktop);
    const auto config = nlohmann::json::parse(configText(desktop));
    ASSERT_EQ(config["grids"].size(), 2U);
    EXPECT_EQ(config["grids"][1]["horizontalSplits"],
              nlohmann::json({fraction(256, height), fraction(512, height)}));
}

TEST_P(ZoneEditor, EndOfTheProgramGivesTheKeyboardBackAndSavesNothing) {
    Desktop& desktop = startEditor(withGrid({0.25}, {}));
    const std::string before = configText(desktop);
    click(desktop, {700, 512});
    expectCleanExitNow();
    awaitClosed(desktop);
    EXPECT_EQ(configText(desktop), before);
}

TEST_P(ZoneEditor, OpensOnTheDisplayOfThatNumber) {
    DesktopOptions options = withGrid({0.25}, {});
    options.monitors = {{"left", {0, 0, 640, 1024}, true, true}, {"right", {640, 0, 640, 900}, false, false}};
    options.startsTarvex = false;
    Desktop& desktop = start(options);
    desktop.tarvex.launch({"--list-displays"});
    const auto status = desktop.tarvex.process().waitForExit();
    ASSERT_TRUE(status.has_value());
    EXPECT_EQ(status->code, 0);
    const std::string list = desktop.tarvex.process().standardOutput();
    std::vector<std::string> lines;
    for (std::size_t start = 0; start < list.size();) {
        const std::size_t end = list.find('\n', start);
        lines.push_back(list.substr(start, end - start));
        start = end + 1;
    }
    ASSERT_EQ(lines.size(), 2U) << list;
    EXPECT_NE(lines[0].find("640x1024"), std::string::npos) << list;
    EXPECT_NE(lines[1].find("640x900"), std::string::npos) << list;
    const std::string number = lines[1].substr(0, lines[1].find('\t'));
    probe_ = {1000, 300};
    open(desktop, {"--open-editor", number});
    // The left monitor, and what lies below the right one, stay as they are.
    EXPECT_EQ(Screenshot(desktop.client).countDifferences(*bare_, {0, 0, 640, 1024}), 0);
    EXPECT_EQ(Screenshot(desktop.client).countDifferences(*bare_, {640, 900, 640, 124}), 0);
    EXPECT_NE(Screenshot(desktop.client).pixel({640, 0}), bare_->pixel({640, 0}));
    EXPECT_NE(Screenshot(desktop.client).pixel({1279, 899}), bare_->pixel({1279, 899}));
    desktop.keyboard.tap(key::escape);
    awaitClosed(desktop);
}

} // namespace
} // namespace tarvex::test
