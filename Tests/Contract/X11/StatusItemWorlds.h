#pragma once

#include "Platform/Linux/Qt/QtStatusBar.h"
#include "Platform/Linux/Qt/QtXEventSource.h"
#include "Tests/Contract/StatusItemWorld.h"
#include "Tests/Contract/X11/MainLoopApplication.h"
#include "Tests/Contract/X11/NotifierHost.h"
#include "Tests/Contract/X11/ScopedVariable.h"
#include "Tests/Support/X11/Pointer.h"
#include "Tests/Support/X11/SessionBus.h"
#include "Tests/Support/X11/TrayHost.h"
#include "Tests/Support/X11/WindowManager.h"

#include <QMenu>

#include <optional>

namespace tarvex::contract {

/// A desktop under openbox with the program's bar of status items, and neither kind of tray.
class TrayDesktop {
public:
    explicit TrayDesktop(const std::string& busAddress = {});

    [[nodiscard]] QtStatusBar& bar() { return *bar_; }

    bool waitUntil(const std::function<bool()>& condition) { return application_->waitUntil(condition); }

    /// Lets everything on the screen and on the bus come to rest.
    void settle();

    /// The popup that opened last; null for none.
    [[nodiscard]] static QMenu* openPopup();

    void click(test::PixelPoint point, std::uint8_t button = 1);

    /// Closes every popup by a click elsewhere.
    void dismissPopups();

    /// Reads the open popup, its submenus included.
    [[nodiscard]] static std::vector<ShownItem> read(const QMenu& menu);

    /// Clicks the entry to which the titles lead, from the open popup on.
    void clickEntry(const std::vector<std::string>& titles);

    test::XServer server;
    test::WindowManager windowManager{server, test::WindowManagerKind::openbox};
    test::Pointer pointer{server.displayName()};

private:
    ScopedVariable display_{"DISPLAY", server.displayName()};
    // Qt connects to the bus that the environment names; what is tested has its address handed in.
    ScopedVariable bus_{"DBUS_SESSION_BUS_ADDRESS", "disabled:"};
    std::unique_ptr<MainLoopApplication> application_ = std::make_unique<MainLoopApplication>("xcb");
    std::unique_ptr<XConnection> connection_ = XConnection::open(server.displayName());
    XEventPump pump_{*connection_};
    QtXEventSource source_{pump_};
    std::unique_ptr<QtStatusBar> bar_;
};

/// Items in a tray that embeds windows.
class EmbeddedItemWorld final : public StatusItemWorld {
public:
    bool waitUntil(const std::function<bool()>& condition) override { return desktop_.waitUntil(condition); }

    void settle() override { desktop_.settle(); }

    StatusBarPlatform& platform() override { return desktop_.bar(); }

    void endTray() override { tray_.end(); }

    void startTray() override { tray_.start(); }

    int shownItems() override { return static_cast<int>(tray_.icons().size()); }

    std::string toolTip() override;
    std::vector<ShownItem> openMenu() override;
    void choose(const std::vector<std::string>& titles) override;

private:
    void open();

    TrayDesktop desktop_;
    test::TrayHost tray_{desktop_.server};
    /// Either button opens the menu; they take turns.
    std::uint8_t button_ = 3;
};

/// Items on a session bus.
class NotifierItemWorld final : public StatusItemWorld {
public:
    NotifierItemWorld() { host_.start(); }

    bool waitUntil(const std::function<bool()>& condition) override { return desktop_.waitUntil(condition); }

    void settle() override { desktop_.settle(); }

    StatusBarPlatform& platform() override { return desktop_.bar(); }

    void endTray() override { host_.end(); }

    void startTray() override { host_.start(); }

    int shownItems() override { return static_cast<int>(host_.items().size()); }

    std::string toolTip() override;
    std::vector<ShownItem> openMenu() override;
    void choose(const std::vector<std::string>& titles) override;

private:
    test::SessionBus sessionBus_;
    TrayDesktop desktop_{sessionBus_.address()};
    NotifierHost host_{sessionBus_.address(),
                       [this](const std::function<bool()>& condition) { return waitUntil(condition); }};
};

} // namespace tarvex::contract
