#pragma once

#include "App/Toolkit/StatusItem.h"
#include "Platform/Linux/Qt/NotifierHostWatch.h"
#include "Platform/Linux/X11/XTrayWatch.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tarvex {

/// The desktop's tray: the one that shows status notifier items where there is one, else the one of the X
/// server that embeds windows. Items move as trays come and go, without a question asked in between; with no
/// tray they wait.
class QtStatusBar final : public StatusBarPlatform {
public:
    /// An application object must exist. The connection and the pump must outlive the bar, and the bar its
    /// items.
    /// @param busAddress as SessionBusAddress::find() gives it; empty for no bus
    /// @param menuClosing called when an entry of an item's menu was chosen, before the delegate is told
    QtStatusBar(
        XConnection& connection, XEventPump& pump, const std::string& busAddress,
        std::function<void()> menuClosing = [] {});
    QtStatusBar(const QtStatusBar&) = delete;
    QtStatusBar& operator=(const QtStatusBar&) = delete;
    QtStatusBar(QtStatusBar&&) = delete;
    QtStatusBar& operator=(QtStatusBar&&) = delete;
    ~QtStatusBar() override;

    [[nodiscard]] std::unique_ptr<StatusItem> makeStatusItem(StatusItemDelegate& delegate) override;

private:
    class Item;

    enum class Tray : std::uint8_t { none, notifier, embedding };

    [[nodiscard]] Tray tray() const;
    void trayChanged();

    XConnection* connection_;
    std::string busAddress_;
    std::function<void()> menuClosing_;
    NotifierHostWatch notifierHost_;
    XTrayWatch embeddingTray_;
    std::vector<Item*> items_;
};

} // namespace tarvex
