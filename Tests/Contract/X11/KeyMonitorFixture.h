#pragma once

#include "Platform/Linux/Qt/QtKeyMonitor.h"
#include "Platform/Linux/Qt/QtXEventSource.h"
#include "Tests/Contract/X11/HotkeyFixture.h"
#include "Tests/Contract/X11/MainLoopApplication.h"
#include "Tests/Contract/X11/ScopedVariable.h"

#include <QAbstractNativeEventFilter>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QWidget>
#include <QWindow>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <vector>

namespace tarvex::contract {

/// A window of this program, which notes the keys that reach it.
class KeyWidget final : public QWidget {
public:
    KeyWidget() {
        setGeometry(300, 300, 300, 200);
        setFocusPolicy(Qt::StrongFocus);
    }

    [[nodiscard]] xcb_window_t id() { return static_cast<xcb_window_t>(winId()); }

    /// The key codes of the server, of keys that are no modifiers.
    std::vector<std::uint32_t> presses;
    std::vector<std::uint32_t> releases;

protected:
    void keyPressEvent(QKeyEvent* event) override { note(presses, *event); }

    void keyReleaseEvent(QKeyEvent* event) override { note(releases, *event); }

private:
    static void note(std::vector<std::uint32_t>& keys, const QKeyEvent& event) {
        const auto key = virtualKeyCodeOf(static_cast<std::uint8_t>(event.nativeScanCode()));
        if (!key || !isModifierKey(*key)) {
            keys.push_back(event.nativeScanCode());
        }
    }
};

/// Messages to the toolkit's connection, which arrive after everything that the server has sent it before:
/// the toolkit reads its events on a thread of its own, and nothing else tells when it has them all.
class ToolkitMarks final : public QAbstractNativeEventFilter {
public:
    ToolkitMarks() {
        const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
        xcb_connection_t* const toolkit = x11->connection();
        window_ = xcb_generate_id(toolkit);
        xcb_create_window(toolkit, XCB_COPY_FROM_PARENT, window_,
                          xcb_setup_roots_iterator(xcb_get_setup(toolkit)).data->root, 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
        const XcbOwned<xcb_get_input_focus_reply_t> reply(
            xcb_get_input_focus_reply(toolkit, xcb_get_input_focus(toolkit), nullptr));
        qGuiApp->installNativeEventFilter(this);
    }

    void send(test::XClient& client) {
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = window_;
        xcb_send_event(client.connection(), 0, window_, XCB_EVENT_MASK_NO_EVENT,
                       reinterpret_cast<const char*>(&message));
        client.sync();
        ++sent_;
    }

    [[nodiscard]] bool haveArrived() const { return arrived_ == sent_; }

    bool nativeEventFilter(const QByteArray& /*eventType*/, void* message, qintptr* /*result*/) override {
        const auto& event = *static_cast<const xcb_client_message_event_t*>(message);
        const bool isMark = (event.response_type & 0x7F) == XCB_CLIENT_MESSAGE && event.window == window_;
        arrived_ += isMark ? 1 : 0;
        return isMark;
    }

private:
    xcb_window_t window_ = XCB_WINDOW_NONE;
    int sent_ = 0;
    int arrived_ = 0;
};

/// A private X server, the toolkit on it, and what a person does at the keyboard.
class KeyMonitorDesktop {
public:
    bool waitUntil(const std::function<bool()>& condition) { return application_.waitUntil(condition); }

    /// Shows the window without a window manager's help and waits until it has the keyboard.
    bool showAndFocus(QWidget& window) {
        window.show();
        window.activateWindow();
        return waitUntil([&] { return hasFocus(window); });
    }

    bool hasFocus(QWidget& window) {
        return QGuiApplication::focusWindow() == window.windowHandle() &&
               focusedWindow() == static_cast<xcb_window_t>(window.winId());
    }

    [[nodiscard]] xcb_window_t focusedWindow() {
        const test::Owned<xcb_get_input_focus_reply_t> focus(xcb_get_input_focus_reply(
            client.connection(), xcb_get_input_focus(client.connection()), nullptr));
        return focus ? focus->focus : xcb_window_t{XCB_WINDOW_NONE};
    }

    void focus(xcb_window_t window) {
        xcb_set_input_focus(client.connection(), XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
        client.sync();
    }

    /// Handles all that the server has sent until now, and what it sends to the requests made in that.
    void settle() {
        for (int turn = 0; turn < 2; ++turn) {
            adapters.catchUp();
            marks_.send(client);
            if (!waitUntil([this] { return marks_.haveArrived(); })) {
                throw std::runtime_error("the toolkit does not handle its events");
            }
            application_.settle();
        }
    }

    /// Whether nobody holds the keyboard now. Takes it for a moment to find out.
    bool isKeyboardFree() { return holdKeyboard() && letKeyboardGo(); }

    /// Another client holds the keyboard, as a menu does; false when somebody else has it.
    bool holdKeyboard() {
        const test::Owned<xcb_grab_keyboard_reply_t> reply(
            xcb_grab_keyboard_reply(client.connection(),
                                    xcb_grab_keyboard(client.connection(), 0, client.root(), XCB_CURRENT_TIME,
                                                      XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC),
                                    nullptr));
        return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
    }

    bool letKeyboardGo() {
        xcb_ungrab_keyboard(client.connection(), XCB_CURRENT_TIME);
        client.sync();
        return true;
    }

    test::XServer server;
    test::XClient client{server.displayName()};

private:
    ScopedVariable display_{"DISPLAY", server.displayName()};
    ScopedVariable runtimeFolder_{"XDG_RUNTIME_DIR", server.scratch().folder("runtime").string()};
    MainLoopApplication application_{"xcb"};
    ToolkitMarks marks_;

public:
    XInputAdapters adapters{server.displayName()};
    QtXEventSource events{adapters.pump};
    Typist typist{server.displayName()};
    QtKeyMonitor monitors{*adapters.connection, adapters.pump};
};

/// A window of this program that has the keyboard.
class KeyMonitorTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(desktop_.showAndFocus(window_));
        desktop_.settle();
    }

    void TearDown() override { monitor_.reset(); }

    /// Installs a monitor that swallows every key.
    void install() {
        monitor_ = desktop_.monitors.addLocalKeyDownMonitor([this](const KeyEvent& event) {
            keys_.push_back(event.keyCode);
            if (onKey_) {
                onKey_();
            }
            return false;
        });
    }

    void type(std::uint32_t keyCode, std::uint32_t modifiers = 0) {
        desktop_.typist.type(keyCode, modifiers);
        desktop_.settle();
    }

    test::Keyboard& keyboard() { return desktop_.typist.keyboard(); }

    using Keys = std::vector<std::uint16_t>;
    using Codes = std::vector<std::uint32_t>;

    KeyMonitorDesktop desktop_;
    KeyWidget window_;
    std::unique_ptr<KeyMonitor> monitor_;
    Keys keys_;
    std::function<void()> onKey_;
};

} // namespace tarvex::contract
