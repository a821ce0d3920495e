#pragma once

#include "Platform/Linux/Qt/QtFormWindow.h"
#include "Platform/Linux/Qt/QtFormWindowPlatform.h"
#include "Platform/Linux/Qt/QtXEventSource.h"
#include "Platform/Linux/X11/MonitorTracker.h"
#include "Platform/Linux/X11/StrutTracker.h"
#include "Platform/Linux/X11/XPointer.h"
#include "Platform/Linux/X11/XScreenPlatform.h"
#include "Tests/Contract/X11/MainLoopApplication.h"
#include "Tests/Contract/X11/ScopedVariable.h"
#include "Tests/Support/X11/Keyboard.h"
#include "Tests/Support/X11/Pointer.h"
#include "Tests/Support/X11/TestWindow.h"
#include "Tests/Support/X11/WindowManager.h"

#include <QAbstractNativeEventFilter>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tarvex::contract {

/// The adapter for titled windows in a Qt application on a private X server of 1280 by 1024 pixels, with a
/// window manager. One application can exist at a time.
class XFormWindowDesktop {
public:
    static constexpr int width = 1280;
    static constexpr int height = 1024;

    /// @param scaleFactor of the toolkit
    /// @param prepare called before the application starts, for monitors
    explicit XFormWindowDesktop(
        std::optional<test::WindowManagerKind> kind = test::WindowManagerKind::openbox,
        const std::string& scaleFactor = "1",
        const std::function<void(const std::string& displayName)>& prepare = [](const std::string&) {});

    /// Runs the main loop until the condition holds; false when the patience ended first.
    bool waitUntil(const std::function<bool()>& condition) { return application_.waitUntil(condition); }

    /// Returns when the window manager, the toolkit and the adapter have handled all that happened before,
    /// and what came of it.
    void settle();

    /// Null when there is no such window.
    [[nodiscard]] QWidget* find(const std::string& title) const;

    /// The window of that title; throws std::runtime_error when there is none.
    [[nodiscard]] QWidget& widget(const std::string& title) const;

    /// Null when the window has no control of that id.
    [[nodiscard]] QWidget* control(const std::string& title, const std::string& id) const;

    [[nodiscard]] xcb_window_t native(const std::string& title) const;

    [[nodiscard]] test::ManagedWindow managed(const std::string& title) { return {client, native(title)}; }

    /// Whether both the X server and the toolkit say so.
    [[nodiscard]] bool hasKeyboard(const std::string& title);

    /// The root pixel of a place in a control; fractions of its size.
    [[nodiscard]] test::PixelPoint pixelIn(const std::string& title, const std::string& id,
                                           double fractionX = 0.5, double fractionY = 0.5);

    /// The root pixel of a point of the control, as the toolkit counts.
    [[nodiscard]] test::PixelPoint pixelOf(const std::string& title, const QWidget& control,
                                           const QPoint& point);

    /// Presses and releases the left button there.
    void click(test::PixelPoint point);

    /// Another program's window, in a corner, opened when it is first asked for.
    [[nodiscard]] test::TestWindow& other();

    /// A person clicks on the other program's window, which gets the keyboard.
    void useOther();

    test::XServer server{width, height};
    std::unique_ptr<test::WindowManager> windowManager;
    test::XClient client{server.displayName()};
    test::Pointer pointer{server.displayName()};
    test::Keyboard keyboard{server.displayName()};

private:
    /// Sees the messages by which settle() knows that the toolkit has come so far.
    class Marks final : public QAbstractNativeEventFilter {
    public:
        Marks(test::XClient& client) : atom_(client.atom("_TARVEX_TEST_MARK")) {}

        bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

        [[nodiscard]] xcb_atom_t atom() const { return atom_; }

        int seen = 0;

    private:
        xcb_atom_t atom_;
    };

    void awaitToolkit();
    void awaitAdapter();

    ScopedVariable display_{"DISPLAY", server.displayName()};
    ScopedVariable bus_{"DBUS_SESSION_BUS_ADDRESS", "disabled:"};
    ScopedVariable accessibilityBus_{"NO_AT_BRIDGE", "1"};
    ScopedVariable scale_;
    MainLoopApplication application_{"xcb"};
    Marks marks_{client};
    QWidget markTarget_;
    std::unique_ptr<XConnection> connection_;
    XEventPump pump_;
    QtXEventSource source_{pump_};
    MonitorTracker monitors_;
    StrutTracker struts_;
    XScreenPlatform screens_;
    XPointer xPointer_;
    std::unique_ptr<test::TestWindow> other_;

public:
    QtFonts fonts;
    QtFormWindowPlatform windows;
};

} // namespace tarvex::contract
