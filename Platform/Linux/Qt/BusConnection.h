#pragma once

#include <QDBusConnection>
#include <QDBusPendingCall>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <string>

class QDBusPendingCallWatcher;

namespace tarvex {

/// A connection to a message bus that is ours alone; it is closed with the object. Nothing here waits for the
/// bus unless it says so: one that takes connections and never answers holds nobody up. To Qt the bus is a
/// peer like any other, since for a bus it would wait without a limit; hence Qt knows neither our name nor
/// asks for signals on the bus. The loss of the bus leaves a connection over which every call fails.
class BusConnection {
public:
    /// Asks the bus to take us on, without waiting for its answer.
    /// @param address of the bus; one that cannot be reached gives a connection over which every call fails
    /// @param patience how long the bus has for its answer
    explicit BusConnection(const std::string& address,
                           std::chrono::milliseconds patience = std::chrono::seconds(25));
    BusConnection(const BusConnection&) = delete;
    BusConnection& operator=(const BusConnection&) = delete;
    BusConnection(BusConnection&&) = delete;
    BusConnection& operator=(BusConnection&&) = delete;
    ~BusConnection();

    [[nodiscard]] const QDBusConnection& get() const { return connection_; }

    [[nodiscard]] QDBusConnection& get() { return connection_; }

    /// Whether the bus has taken us on. Waits for its answer for as long as the patience says.
    [[nodiscard]] bool awaitAnswer();

    /// Has the call made on the main loop once the bus has taken us on; never when it does not. One call at a
    /// time can wait. An application object must exist.
    /// @param named is given our unique name on the bus
    void whenNamed(std::function<void(const QString&)> named);

    /// Asks the bus for the signals that fit the rule (D-Bus Specification, "Match Rules"), for Qt to hand on
    /// to whom QDBusConnection::connect() says; its service must be empty.
    void requestSignals(const QString& rule);

    /// A call to the bus itself.
    [[nodiscard]] static QDBusMessage callToBus(const QString& method, const QVariantList& arguments = {});

private:
    QString name_;
    QDBusConnection connection_;
    QDBusPendingCall greeting_;
    std::unique_ptr<QDBusPendingCallWatcher> greetingWatcher_;
};

} // namespace tarvex
