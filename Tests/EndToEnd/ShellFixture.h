#pragma once

#include "Tests/EndToEnd/ZoneEditorFixture.h"

#include <nlohmann/json.hpp>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tarvex::test {

/// Keys by what they print on an American keyboard: virtual key code, symbol and the server's code.
namespace letter {
inline constexpr unsigned eKeyCode = 14;
inline constexpr std::uint32_t e = 0x65;
inline constexpr std::uint8_t eServerCode = 26;
inline constexpr unsigned pKeyCode = 35;
inline constexpr std::uint32_t p = 0x70;
inline constexpr std::uint8_t pServerCode = 33;
} // namespace letter

/// Modifier masks of the settings.
namespace mask {
inline constexpr unsigned super = 0x100;
inline constexpr unsigned shift = 0x200;
inline constexpr unsigned alt = 0x800;
inline constexpr unsigned control = 0x1000;
} // namespace mask

/// Sessions in which the program's own windows are used.
class ShellTest : public ZoneEditorTest {
protected:
    static constexpr int preferencesWidth = 640;
    static constexpr int preferencesHeight = 500;

    /// The window of the program with that title, once it is shown.
    static std::optional<xcb_window_t> findWindow(Desktop& desktop, const std::string& title) {
        for (const xcb_window_t window : desktop.client.managedWindows()) {
            if (desktop.client.text(window, "_NET_WM_NAME") == title && desktop.client.isViewable(window)) {
                return window;
            }
        }
        return std::nullopt;
    }

    static xcb_window_t awaitWindow(Desktop& desktop, const std::string& title) {
        desktop.client.waitUntil([&] { return findWindow(desktop, title).has_value(); },
                                 "\"" + title + "\" is shown");
        return findWindow(desktop, title).value_or(XCB_NONE);
    }

    static void awaitNoWindow(Desktop& desktop, const std::string& title) {
        desktop.client.waitUntil([&] { return !findWindow(desktop, title).has_value(); },
                                 "\"" + title + "\" is hidden");
    }

    /// Waits until the window is shown, has the keyboard and stays at one place.
    static xcb_window_t awaitPreferences(Desktop& desktop) {
        const xcb_window_t window = awaitWindow(desktop, "Preferences");
        desktop.client.waitUntil([&] { return focus(desktop) == window; },
                                 "the preferences have the keyboard");
        desktop.awaitCentered(window);
        return window;
    }

    /// Clicks at a place of the window's content, origin at its top-left.
    static void clickIn(Desktop& desktop, xcb_window_t window, PixelPoint point) {
        const auto content = desktop.client.geometryInRoot(window);
        ASSERT_TRUE(content.has_value());
        click(desktop, {content->x + point.x, content->y + point.y});
    }

    static void click(Desktop& desktop, PixelPoint point) {
        press(desktop, point);
        desktop.pointer.release();
    }

    /// The window manager looks at every press before the window gets it, and meanwhile the server holds the
    /// pointer. Were it to move on by then, as no hand could, the release would be told at the later place;
    /// and a key that is pressed by then would be told before the release.
    static void press(Desktop& desktop, PixelPoint point) {
        desktop.pointer.moveTo(point);
        desktop.pointer.press();
        desktop.windowManager->barrier();
    }

    /// Whether somebody has all keys for himself, as a recording or an open menu.
    static bool isKeyboardTaken(Desktop& desktop) {
        xcb_connection_t* const connection = desktop.client.connection();
        // Nobody else is to find the keyboard taken by the question.
        xcb_grab_server(connection);
        const auto cookie = xcb_grab_keyboard(connection, 0, desktop.client.root(), XCB_CURRENT_TIME,
                                              XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        xcb_ungrab_keyboard(connection, XCB_CURRENT_TIME);
        xcb_ungrab_server(connection);
        const Owned<xcb_grab_keyboard_reply_t> reply(xcb_grab_keyboard_reply(connection, cookie, nullptr));
        return reply && reply->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
    }

    /// Waits until nobody has the pointer for himself, as a window manager that moves a window: it lets go
    /// only after the button.
    static void awaitPointerFree(Desktop& desktop) {
        xcb_connection_t* const connection = desktop.client.connection();
        const auto isFree = [&] {
            xcb_grab_server(connection);
            const auto cookie = xcb_grab_pointer(connection, 0, desktop.client.root(), 0, XCB_GRAB_MODE_ASYNC,
                                                 XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE, XCB_CURRENT_TIME);
            xcb_ungrab_pointer(connection, XCB_CURRENT_TIME);
            xcb_ungrab_server(connection);
            const Owned<xcb_grab_pointer_reply_t> reply(xcb_grab_pointer_reply(connection, cookie, nullptr));
            return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
        };
        desktop.client.waitUntil(isFree, "the pointer is free");
    }

    static nlohmann::json config(Desktop& desktop) {
        return nlohmann::json::parse(configText(desktop), nullptr, false);
    }

    /// Waits until the file holds the value.
    static void expectSetting(Desktop& desktop, const char* name, const nlohmann::json& value) {
        const auto isSaved = [&] {
            const nlohmann::json document = config(desktop);
            return document.is_object() && document.contains(name) && document[name] == value;
        };
        EXPECT_TRUE(desktop.client.waitFor(isSaved))
            << name << " is not " << value << " in " << configText(desktop);
    }

    static void expectNoSetting(Desktop& desktop, const char* name) {
        const auto isGone = [&] {
            const nlohmann::json document = config(desktop);
            return document.is_object() && !document.contains(name);
        };
        EXPECT_TRUE(desktop.client.waitFor(isGone)) << name << " stands in " << configText(desktop);
    }

    /// Waits until somebody has the key with those modifiers of the X server for himself.
    static void awaitGrabbed(Desktop& desktop, std::uint8_t keycode, std::uint16_t modifiers) {
        xcb_connection_t* const connection = desktop.client.connection();
        const auto isTaken = [&] {
            // Nobody else is to find the combination taken by the question.
            xcb_grab_server(connection);
            const auto cookie = xcb_grab_key_checked(connection, 0, desktop.client.root(), modifiers, keycode,
                                                     XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
            xcb_ungrab_key(connection, keycode, desktop.client.root(), modifiers);
            xcb_ungrab_server(connection);
            const Owned<xcb_generic_error_t> error(xcb_request_check(connection, cookie));
            return error != nullptr;
        };
        desktop.client.waitUntil(isTaken, "the combination is taken");
    }

    /// Presses keys together, in that order, and lets go of them.
    static void chord(Desktop& desktop, const std::vector<std::uint32_t>& keys) {
        for (const std::uint32_t keysym : keys) {
            desktop.keyboard.press(keysym);
        }
        for (auto keysym = keys.rbegin(); keysym != keys.rend(); ++keysym) {
            desktop.keyboard.release(*keysym);
        }
    }
};

/// Window managers suffice: what composites makes no difference to a window with controls.
[[nodiscard]] inline auto plainSessions() {
    return ::testing::ValuesIn(
        withFurtherPlain({{WindowManagerKind::openbox, false}, {WindowManagerKind::xfwm4, false}}));
}

} // namespace tarvex::test
