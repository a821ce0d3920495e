#pragma once

#include <QDBusConnection>

#include <string>

namespace tarvex::contract {

/// A connection to a private bus as other programs have one, with all that Qt does for a bus.
class HostBus {
public:
    explicit HostBus(const std::string& address)
        : connection_(QDBusConnection::connectToBus(QString::fromStdString(address), nextName())) {}

    HostBus(const HostBus&) = delete;
    HostBus& operator=(const HostBus&) = delete;
    HostBus(HostBus&&) = delete;
    HostBus& operator=(HostBus&&) = delete;

    ~HostBus() { QDBusConnection::disconnectFromBus(connection_.name()); }

    [[nodiscard]] QDBusConnection& get() { return connection_; }

private:
    static QString nextName() {
        static int count = 0;
        return QStringLiteral("host-%1").arg(++count);
    }

    QDBusConnection connection_;
};

} // namespace tarvex::contract
