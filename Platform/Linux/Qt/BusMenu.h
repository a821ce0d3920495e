#pragma once

#include "Platform/Linux/Qt/NotifierTypes.h"
#include "Platform/Linux/Qt/StatusMenu.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QStringList>

#include <cstdint>
#include <map>
#include <vector>

namespace tarvex {

/// Serves a status item's menu on a bus, for the desktop to show: the interface com.canonical.dbusmenu. The
/// menu is asked for afresh whenever a host is about to show it or fetches all of it. No two states of the
/// menu share an entry's number, so that a late click cannot hit another entry.
class BusMenu final : public QDBusVirtualObject {
public:
    /// The menu must outlive the object.
    BusMenu(StatusMenu& menu, const QDBusConnection& bus);

    /// Tells the hosts that the menu has another value.
    void menuChanged();

    [[nodiscard]] QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    static constexpr int rootId = 0;

    /// An entry as it is on the bus.
    struct Entry {
        MenuItem item;
        std::vector<int> children;
    };

    /// The answer to a call; none for one that is not of this interface.
    [[nodiscard]] QDBusMessage answer(const QDBusMessage& call);
    [[nodiscard]] QDBusMessage answerProperties(const QDBusMessage& call) const;
    [[nodiscard]] QDBusMessage getLayout(const QDBusMessage& call);
    [[nodiscard]] QDBusMessage getGroupProperties(const QDBusMessage& call) const;
    [[nodiscard]] QDBusMessage getProperty(const QDBusMessage& call) const;
    [[nodiscard]] QDBusMessage takeEvent(const QDBusMessage& call);
    [[nodiscard]] QDBusMessage takeEvents(const QDBusMessage& call);
    [[nodiscard]] QDBusMessage aboutToShow(const QDBusMessage& call);
    [[nodiscard]] QDBusMessage aboutToShowGroup(const QDBusMessage& call);

    /// Numbers the entries of the menu's value anew.
    void rebuild();
    [[nodiscard]] std::vector<int> add(const std::vector<MenuItem>& items);
    /// True when the delegate gave another menu than the one shown.
    bool refresh();
    /// False for an entry that is not there.
    bool handleEvent(int id, const QString& kind);
    [[nodiscard]] notifier::MenuLayout layout(int id, int depth, const QStringList& names) const;
    [[nodiscard]] QVariantMap properties(int id, const QStringList& names) const;

    StatusMenu* menu_;
    QDBusConnection bus_;
    /// What the entries were made from.
    Menu shown_;
    std::map<int, Entry> entries_;
    int lastId_ = rootId;
    std::uint32_t revision_ = 0;
};

} // namespace tarvex
