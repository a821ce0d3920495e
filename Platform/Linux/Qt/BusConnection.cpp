#include "Platform/Linux/Qt/BusConnection.h"

namespace tarvex {

namespace {

// Qt knows connections by name.
QString nextName() {
    static int count = 0;
    return QStringLiteral("tarvex-%1").arg(++count);
}

} // namespace

BusConnection::BusConnection(const std::string& address)
    : name_(nextName()), connection_(QDBusConnection::connectToBus(QString::fromStdString(address), name_)) {}

BusConnection::~BusConnection() {
    QDBusConnection::disconnectFromBus(name_);
}

} // namespace tarvex
