#pragma once

#include <QDBusConnection>
#include <QString>

#include <string>

namespace tarvex {

/// A connection to a message bus that is ours alone; it is closed with the object. The loss of the bus leaves
/// a connection over which every call fails.
class BusConnection {
public:
    /// @param address of the bus; one that cannot be reached gives a connection that is not connected
    explicit BusConnection(const std::string& address);
    BusConnection(const BusConnection&) = delete;
    BusConnection& operator=(const BusConnection&) = delete;
    BusConnection(BusConnection&&) = delete;
    BusConnection& operator=(BusConnection&&) = delete;
    ~BusConnection();

    [[nodiscard]] const QDBusConnection& get() const { return connection_; }

    [[nodiscard]] QDBusConnection& get() { return connection_; }

private:
    QString name_;
    QDBusConnection connection_;
};

} // namespace tarvex
