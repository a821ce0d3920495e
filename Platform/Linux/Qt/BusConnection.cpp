#include "Platform/Linux/Qt/BusConnection.h"

#include "Platform/Linux/SessionBusAddress.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

#include <atomic>
#include <utility>

namespace tarvex {

namespace {

constexpr const char* busName = "org.freedesktop.DBus";
constexpr const char* busPath = "/org/freedesktop/DBus";

// Qt knows connections by name.
QString nextName() {
    static std::atomic<int> count = 0;
    return QStringLiteral("tarvex-%1").arg(++count);
}

// Connecting to a socket at which too many stand in line already is the one thing that Qt would wait for.
QDBusConnection connect(const std::string& address, const QString& name) {
    return SessionBusAddress::takesConnections(address)
               ? QDBusConnection::connectToPeer(QString::fromStdString(address), name)
               : QDBusConnection(name);
}

} // namespace

BusConnection::BusConnection(const std::string& address, std::chrono::milliseconds patience)
    : name_(nextName()),
      connection_(connect(address, name_)),
      greeting_(
          connection_.asyncCall(callToBus(QStringLiteral("Hello")), static_cast<int>(patience.count()))) {}

BusConnection::~BusConnection() {
    QDBusConnection::disconnectFromPeer(name_);
}

bool BusConnection::awaitAnswer() {
    greeting_.waitForFinished();
    return connection_.isConnected() && !greeting_.isError();
}

void BusConnection::whenNamed(std::function<void(const QString&)> named) {
    greetingWatcher_ = std::make_unique<QDBusPendingCallWatcher>(greeting_);
    QObject::connect(greetingWatcher_.get(), &QDBusPendingCallWatcher::finished, greetingWatcher_.get(),
                     [named = std::move(named)](const QDBusPendingCallWatcher* greeting) {
                         if (!greeting->isError()) {
                             named(greeting->reply().arguments().value(0).toString());
                         }
                     });
}

void BusConnection::requestSignals(const QString& rule) {
    connection_.send(callToBus(QStringLiteral("AddMatch"), {rule}));
}

QDBusMessage BusConnection::callToBus(const QString& method, const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(QLatin1String(busName), QLatin1String(busPath),
                                                          QLatin1String(busName), method);
    message.setArguments(arguments);
    return message;
}

} // namespace tarvex
