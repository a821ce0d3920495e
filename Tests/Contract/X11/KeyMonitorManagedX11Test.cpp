#include "App/Hotkeys/HotkeyRecorder.h"
#include "Tests/Contract/X11/KeyMonitorFixture.h"
#include "Tests/Support/X11/Pointer.h"
#include "Tests/Support/X11/TestWindow.h"
#include "Tests/Support/X11/WindowManager.h"

#include <QPushButton>
#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace tarvex::contract {

namespace {

constexpr std::uint16_t keyE = 14;
constexpr std::uint16_t keyTab = 48;

/// A window manager gives and takes the focus by itself.
class KeyMonitorManaged : public ::testing::TestWithParam<test::WindowManagerKind> {
protected:
    KeyMonitorDesktop desktop_;
    test::WindowManager windowManager_{desktop_.server, GetParam()};
};

TEST_P(KeyMonitorManaged, ButtonBeginsARecordingThatAClickElsewhereInterrupts) {
    KeyWidget window;
    QPushButton button(&window);
    button.setGeometry(10, 10, 100, 50);
    HotkeyRecorder recorder(desktop_.monitors);
    std::vector<HotkeyDefinition> recorded;
    QObject::connect(&button, &QPushButton::clicked, [&] {
        recorder.start([&](const std::optional<HotkeyDefinition>& hotkey) {
            recorded.push_back(hotkey.value_or(HotkeyDefinition{}));
        });
    });
    test::TestWindowOptions elsewhere;
    elsewhere.geometry = {800, 600, 200, 100};
    test::TestWindow other(desktop_.server.displayName(), elsewhere);
    window.show();
    window.activateWindow();
    ASSERT_TRUE(desktop_.waitUntil([&] { return desktop_.hasFocus(window); }));

    const auto click = [&](const test::PixelPoint& point) {
        test::Pointer pointer(desktop_.server.displayName());
        pointer.moveTo(point);
        pointer.press();
        pointer.release();
    };
    const auto place = desktop_.client.geometryInRoot(window.id());
    ASSERT_TRUE(place.has_value());
    click({place->x + 40, place->y + 30});
    ASSERT_TRUE(desktop_.waitUntil([&] { return recorder.isRecording(); }));
    desktop_.settle();
    EXPECT_FALSE(desktop_.isKeyboardFree());

    click(other.managed().requireVisibleFrame().center());
    ASSERT_TRUE(desktop_.waitUntil([&] { return desktop_.focusedWindow() == other.id(); }));
    desktop_.settle();
    EXPECT_TRUE(desktop_.isKeyboardFree());
    desktop_.typist.type(keyE, modifier_mask::command);
    desktop_.settle();
    EXPECT_TRUE(recorded.empty());

    click({place->x + 200, place->y + 150});
    ASSERT_TRUE(desktop_.waitUntil([&] { return desktop_.hasFocus(window); }));
    desktop_.settle();
    EXPECT_FALSE(desktop_.isKeyboardFree());
    // A combination that the window manager keeps for itself.
    desktop_.typist.type(keyTab, modifier_mask::option);
    desktop_.settle();
    EXPECT_EQ(recorded, (std::vector<HotkeyDefinition>{{keyTab, modifier_mask::option}}));
    EXPECT_TRUE(desktop_.isKeyboardFree());
}

INSTANTIATE_TEST_SUITE_P(WindowManagers, KeyMonitorManaged,
                         ::testing::Values(test::WindowManagerKind::openbox, test::WindowManagerKind::xfwm4),
                         [](const auto& info) { return nameOf(info.param); });

} // namespace

} // namespace tarvex::contract
