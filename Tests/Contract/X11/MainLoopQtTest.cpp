#include "Platform/Linux/Qt/QtKeyWindow.h"
#include "Platform/Linux/Qt/QtMainLoop.h"
#include "Platform/Linux/Qt/SystemColors.h"
#include "Tests/Contract/X11/MainLoopApplication.h"
#include "Tests/Contract/X11/ScopedVariable.h"
#include "Tests/Support/X11/TestWindow.h"
#include "Tests/Support/X11/WindowManager.h"

#include <QPalette>
#include <QWidget>
#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace tarvex::contract {

namespace {

constexpr std::uint32_t standardBlue = 0x0A84FF;

TEST(MainLoopKeyWindow, IsTheWindowOfTheProgramThatHasTheKeyboard) {
    const test::XServer server;
    const test::WindowManager windowManager(server, test::WindowManagerKind::openbox);
    const ScopedVariable display("DISPLAY", server.displayName());
    MainLoopApplication application("xcb");
    const QtKeyWindow keyWindow;
    EXPECT_EQ(keyWindow.keyWindowTitle(), std::nullopt);
    QWidget preferences;
    preferences.setWindowTitle("Preferences");
    preferences.show();
    EXPECT_TRUE(application.waitUntil([&] { return keyWindow.keyWindowTitle() == "Preferences"; }));
    preferences.setWindowTitle("Einstellungen f\u00FCr");
    EXPECT_EQ(keyWindow.keyWindowTitle(), "Einstellungen f\u00FCr");
    {
        test::TestWindow other(server.displayName());
        xcb_connection_t* connection = other.client().connection();
        xcb_set_input_focus(connection, XCB_INPUT_FOCUS_PARENT, other.id(), XCB_CURRENT_TIME);
        xcb_flush(connection);
        EXPECT_TRUE(application.waitUntil([&] { return !keyWindow.keyWindowTitle(); }));
    }
    preferences.activateWindow();
    EXPECT_TRUE(application.waitUntil([&] { return keyWindow.keyWindowTitle().has_value(); }));
    preferences.hide();
    EXPECT_TRUE(application.waitUntil([&] { return !keyWindow.keyWindowTitle(); }));
}

TEST(MainLoopColors, HighlightOfTheThemeIsTheAccent) {
    EXPECT_EQ(SystemColors::accentColorForHighlight(QColor(0xE9, 0x54, 0x20)), 0xE95420U);
    EXPECT_EQ(SystemColors::accentColorForHighlight(QColor(0x35, 0x84, 0xE4)), 0x3584E4U);
}

TEST(MainLoopColors, HighlightThatIsNoAccentGivesBlue) {
    // Greys, black, and what Qt's own styles take without a theme.
    for (const QColor& highlight : {QColor(0x80, 0x80, 0x80), QColor(0, 0, 0), QColor(0xFF, 0xFF, 0xFF),
                                    QColor(0x30, 0x8C, 0xC6), QColor(0, 0, 0x80), QColor(0x10, 0x02, 0x02)}) {
        EXPECT_EQ(SystemColors::accentColorForHighlight(highlight), standardBlue) << highlight.rgb();
    }
}

TEST(MainLoopColors, AccentFollowsThePalette) {
    const MainLoopApplication application;
    QPalette palette;
    palette.setColor(QPalette::Highlight, QColor(0xE9, 0x54, 0x20));
    QGuiApplication::setPalette(palette);
    EXPECT_EQ(SystemColors::accentColor(), 0xE95420U);
}

TEST(MainLoopLifetime, ActionsPostedToALoopThatIsGoneAreDropped) {
    MainLoopApplication application;
    auto loop = std::make_unique<QtMainLoop>();
    int calls = 0;
    loop->post([&calls] { ++calls; });
    loop.reset();
    application.settle();
    EXPECT_EQ(calls, 0);
}

} // namespace

} // namespace tarvex::contract
