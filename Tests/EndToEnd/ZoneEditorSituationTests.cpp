#include "Tests/EndToEnd/ShellFixture.h"
#include "Tests/Support/X11/SessionBus.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace tarvex::test {
namespace {

constexpr int width = 1280;
constexpr int height = 1024;
constexpr const char* busVariable = "DBUS_SESSION_BUS_ADDRESS";

DesktopOptions withGrid(std::vector<double> verticals, std::vector<double> horizontals) {
    DesktopOptions options;
    options.settings = Settings{.grids = {{"mine", std::move(verticals), std::move(horizontals)}}};
    options.startsTarvex = false;
    return options;
}

/// What happens around an editor that is open.
class ZoneEditorSituation : public ShellTest {
protected:
    xcb_window_t editor(Desktop& desktop) {
        for (const xcb_window_t window : desktop.client.children(desktop.client.root())) {
            if (desktop.client.text(window, "_NET_WM_NAME") == "Tarvex Zones Editor") {
                return window;
            }
        }
        return XCB_NONE;
    }

    /// Starts the program once more in the same session and waits until that has ended.
    static void startAgain(Desktop& desktop, const std::vector<std::string>& arguments) {
        ChildProcess second(desktop.tarvex.command(arguments));
        EXPECT_EQ(second.waitForExit(), (ExitStatus{0, std::nullopt})) << second.standardError();
    }

    /// The number that the program gives to the display with that text in its title.
    static std::string displayNumber(Desktop& desktop, const std::string& text) {
        ChildProcess lister(desktop.tarvex.command({"--list-displays"}));
        static_cast<void>(lister.waitForExit());
        const std::string list = lister.standardOutput();
        const std::size_t place = list.find(text);
        if (place == std::string::npos) {
            ADD_FAILURE() << "no " << text << " in " << list;
            return {};
        }
        const std::size_t newline = list.rfind('\n', place);
        const std::size_t begin = newline == std::string::npos ? 0 : newline + 1;
        return list.substr(begin, list.find('\t', begin) - begin);
    }

    static bool isAbove(Desktop& desktop, xcb_window_t upper, xcb_window_t lower) {
        const auto children = desktop.client.children(desktop.client.root());
        return std::find(children.begin(), children.end(), upper) >
               std::find(children.begin(), children.end(), lower);
    }

    /// When everybody has dealt with what has happened.
    static void settleManager(Desktop& desktop) {
        desktop.windowManager->barrier();
        desktop.windowManager->barrier();
    }

    SessionBus bus_;
};

INSTANTIATE_TEST_SUITE_P(Sessions, ZoneEditorSituation, plainSessions(), sessionName);

TEST_P(ZoneEditorSituation, KeyboardStaysWhenAWindowIsShownLater) {
    Desktop& desktop = startEditor(withGrid({0.25}, {}));
    const xcb_window_t window = editor(desktop);
    TestWindow later(desktop.server.displayName());
    desktop.client.sendToWindowManager(later.id(), "_NET_ACTIVE_WINDOW", {2, XCB_CURRENT_TIME, 0, 0, 0});
    settleManager(desktop);
    desktop.client.waitUntil([&] { return focus(desktop) == window; }, "the editor has the keyboard");
    desktop.keyboard.tap(key::enter);
    desktop.client.waitUntil([&] { return editor(desktop) == XCB_NONE; }, "the editor is closed");
    desktop.client.waitUntil([&] { return focus(desktop) == later.id(); },
                             "the later window has the keyboard");
    EXPECT_EQ(config(desktop)["grids"].size(), 2U);
}

TEST_P(ZoneEditorSituation, PreferencesComeBeforeTheEditorAndGiveTheKeyboardBack) {
    DesktopOptions options = withGrid({0.25}, {});
    Desktop& desktop = start(options);
    desktop.tarvex.setVariable(busVariable, bus_.address());
    open(desktop);
    const xcb_window_t window = editor(desktop);
    startAgain(desktop, {"--open-preferences"});
    const xcb_window_t preferences = awaitPreferences(desktop);
    settleManager(desktop);
    EXPECT_EQ(focus(desktop), preferences);
    const auto frame = desktop.client.topLevelOf(preferences);
    ASSERT_TRUE(frame.has_value());
    desktop.client.waitUntil([&] { return isAbove(desktop, *frame, window); }, "the preferences are seen");
    // A press on the editor brings it forward and adds no line.
    click(desktop, {100, 900});
    desktop.client.waitUntil([&] { return focus(desktop) == window && isAbove(desktop, window, *frame); },
                             "the editor is in front");
    desktop.keyboard.tap(key::enter);
    desktop.client.waitUntil([&] { return editor(desktop) == XCB_NONE; }, "the editor is closed");
    EXPECT_EQ(config(desktop)["grids"][1]["horizontalSplits"], nlohmann::json::array());
}

TEST_P(ZoneEditorSituation, SecondOneTakesThePlaceOfTheFirst) {
    DesktopOptions options = withGrid({0.25}, {});
    options.monitors = {{"left", {0, 0, 640, 1024}, true, true}, {"right", {640, 0, 640, 900}, false, false}};
    Desktop& desktop = start(options);
    TestWindow application(desktop.server.displayName());
    click(desktop, application.managed().titleBarPoint());
    desktop.client.waitUntil([&] { return focus(desktop) == application.id(); },
                             "the application has the keyboard");
    desktop.tarvex.setVariable(busVariable, bus_.address());
    probe_ = {20, 1000};
    open(desktop, {"--open-editor", displayNumber(desktop, "640x1024")});
    const std::string before = configText(desktop);
    const xcb_window_t first = editor(desktop);
    click(desktop, {300, 700});
    startAgain(desktop, {"--open-editor", displayNumber(desktop, "640x900")});
    desktop.client.waitUntil([&] { return editor(desktop) != first && editor(desktop) != XCB_NONE; },
                             "the other editor is open");
    EXPECT_EQ(desktop.client.geometryInRoot(editor(desktop)), (PixelRect{640, 0, 640, 900}));
    desktop.client.waitUntil([&] { return focus(desktop) == editor(desktop); }, "it has the keyboard");
    EXPECT_EQ(configText(desktop), before);
    desktop.keyboard.tap(key::escape);
    awaitClosed(desktop);
    EXPECT_EQ(focus(desktop), application.id());
    EXPECT_EQ(configText(desktop), before);
}

TEST_P(ZoneEditorSituation, PrimaryMonitorThatGoesLeavesTheOtherOnesEditor) {
    DesktopOptions options = withGrid({0.25}, {});
    // The server itself makes a monitor of an output that no other shows.
    options.monitors = {{"left", {0, 0, 640, 700}, true, false},
                        {"right", {640, 100, 640, 900}, false, true}};
    Desktop& desktop = start(options);
    probe_ = {1000, 300};
    const std::string number = displayNumber(desktop, "640x900");
    open(desktop, {"--open-editor", number});
    click(desktop, {900, 400});
    desktop.monitors.remove("left");
    settleManager(desktop);
    click(desktop, {900, 700});
    desktop.keyboard.tap(key::enter);
    awaitClosed(desktop);
    const auto document = config(desktop);
    ASSERT_EQ(document["grids"].size(), 2U);
    EXPECT_EQ(document["grids"][1]["horizontalSplits"],
              nlohmann::json({fraction(300, 900), fraction(600, 900)}));
    EXPECT_EQ(document["defaultGridByDisplayId"].begin().value(), document["grids"][1]["id"]);
}

TEST_P(ZoneEditorSituation, PanelThatAppearsClosesIt) {
    Desktop& desktop = startEditor(withGrid({0.25}, {}));
    const std::string before = configText(desktop);
    click(desktop, {500, 512});
    TestWindowOptions dock;
    dock.type = "_NET_WM_WINDOW_TYPE_DOCK";
    dock.geometry = {0, 0, width, 40};
    dock.strut = Strut{.top = 40, .topStart = 0, .topEnd = width - 1};
    const TestWindow panel(desktop.server.displayName(), dock);
    awaitClosed(desktop);
    EXPECT_EQ(configText(desktop), before);
}

TEST_P(ZoneEditorSituation, KeyThatIsStillDownDoesNotReachTheWindowBelow) {
    Desktop& desktop = start(withGrid({0.25}, {}));
    TestWindow application(desktop.server.displayName());
    click(desktop, application.managed().titleBarPoint());
    desktop.client.waitUntil([&] { return focus(desktop) == application.id(); },
                             "the application has the keyboard");
    const std::uint32_t events = XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    application.client().selectEvents(application.id(), events);
    int typed = 0;
    application.client().setEventHandler([&](const xcb_generic_event_t& event) {
        typed += (event.response_type & 0x7F) == XCB_KEY_PRESS ? 1 : 0;
    });
    const auto typedUntilNow = [&] {
        application.client().sync();
        application.client().handleEvents();
        return typed;
    };
    probe_ = {900, 900};
    open(desktop);
    desktop.keyboard.press(key::enter);
    awaitClosed(desktop);
    desktop.keyboard.tap(letter::e);
    EXPECT_EQ(typedUntilNow(), 0);
    desktop.keyboard.release(key::enter);
    desktop.client.waitUntil(
        [&] {
            desktop.keyboard.tap(letter::e);
            return typedUntilNow() > 0;
        },
        "keys reach the application again");
}

TEST_P(ZoneEditorSituation, LinesAreWhiteWhileNoneIsUnderThePointer) {
    Desktop& desktop = startEditor(withGrid({0.75}, {0.5}));
    desktop.pointer.moveTo({300, 200});
    const std::uint32_t ground = bare_->pixel(probe_);
    // Of the ground the backdrop leaves 0.55, and a line 0.15 of that.
    const auto mixed = [](std::uint32_t below, std::uint32_t above, double alpha) {
        std::uint32_t result = 0;
        for (const unsigned shift : {0U, 8U, 16U}) {
            const double channel = (below >> shift & 0xFFU) * (1 - alpha) + (above >> shift & 0xFFU) * alpha;
            result |= static_cast<std::uint32_t>(channel + 0.5) << shift;
        }
        return result;
    };
    const std::uint32_t dark = mixed(ground, 0x000000, 0.45);
    const std::uint32_t line = mixed(dark, 0xFFFFFF, 0.85);
    const auto isNear = [&](PixelPoint point, std::uint32_t color) {
        const std::uint32_t pixel = Screenshot(desktop.client).pixel(point);
        return std::ranges::all_of(std::vector<unsigned>{0, 8, 16}, [&](unsigned shift) {
            return std::abs(static_cast<int>(pixel >> shift & 0xFFU) -
                            static_cast<int>(color >> shift & 0xFFU)) <= 3;
        });
    };
    const int x = width * 3 / 4;
    const int y = height / 2;
    // Two pixels wide, one on either side.
    for (const PixelPoint point :
         {PixelPoint{x - 1, 300}, PixelPoint{x, 300}, PixelPoint{200, y - 1}, PixelPoint{200, y}}) {
        EXPECT_TRUE(desktop.client.waitFor([&] { return isNear(point, line); }))
            << point.x << ", " << point.y;
    }
    for (const PixelPoint point :
         {PixelPoint{x - 2, 300}, PixelPoint{x + 1, 300}, PixelPoint{200, y - 2}, PixelPoint{200, y + 1}}) {
        EXPECT_TRUE(isNear(point, dark)) << point.x << ", " << point.y;
    }
    desktop.keyboard.tap(key::escape);
    awaitClosed(desktop);
}

TEST_P(ZoneEditorSituation, GridOfAThousandLinesCanBeSeenAndSaved) {
    std::vector<double> verticals;
    for (int index = 1000; index >= 1; --index) {
        verticals.push_back(index / 1001.0);
    }
    probe_ = {20, 20};
    Desktop& desktop = startEditor(withGrid(verticals, {}));
    desktop.pointer.moveTo({1000, 300});
    desktop.pointer.press(3);
    desktop.pointer.release(3);
    desktop.keyboard.tap(key::enter);
    desktop.client.waitUntil([&] { return editor(desktop) == XCB_NONE; }, "the editor is closed");
    const auto document = config(desktop);
    ASSERT_EQ(document["grids"].size(), 2U);
    // Sorted, and without the one that the right button took.
    const auto saved = document["grids"][1]["verticalSplits"].get<std::vector<double>>();
    EXPECT_EQ(saved.size(), 999U);
    EXPECT_TRUE(std::ranges::is_sorted(saved));
}

/// Sessions whose compositor ends while the editor is open.
class ZoneEditorWithoutItsCompositor : public ZoneEditorSituation {};

INSTANTIATE_TEST_SUITE_P(Sessions, ZoneEditorWithoutItsCompositor,
                         ::testing::Values(SessionKind{WindowManagerKind::openbox, true}), sessionName);

TEST_P(ZoneEditorWithoutItsCompositor, StillShowsTheDesktop) {
    TestWindowOptions below;
    below.backgroundPixel = 0x80C040;
    below.geometry = {100, 100, 500, 300};
    Desktop& desktop = start(withGrid({0.75}, {}));
    const TestWindow window(desktop.server.displayName(), below);
    open(desktop);
    const auto isDarkGreen = [&] {
        const std::uint32_t pixel = Screenshot(desktop.client).pixel({300, 250});
        return std::abs(static_cast<int>(pixel >> 16U) - 0x46) <= 3 &&
               std::abs(static_cast<int>(pixel >> 8U & 0xFFU) - 0x6A) <= 3 &&
               std::abs(static_cast<int>(pixel & 0xFFU) - 0x23) <= 3;
    };
    desktop.client.waitUntil(isDarkGreen, "the window shines through");
    desktop.compositor.reset();
    desktop.client.waitUntil([&] { return isDarkGreen() && focus(desktop) == editor(desktop); },
                             "the window is still there, and the keyboard too");
    desktop.keyboard.tap(key::escape);
    desktop.client.waitUntil([&] { return editor(desktop) == XCB_NONE; }, "the editor is closed");
}

} // namespace
} // namespace tarvex::test
