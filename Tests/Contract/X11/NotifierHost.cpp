#include "Tests/Contract/X11/NotifierHost.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QTimer>
#include <gtest/gtest.h>

#include <utility>

namespace tarvex::contract {

namespace {

constexpr const char* watcherName = "org.kde.StatusNotifierWatcher";
constexpr const char* watcherPath = "/StatusNotifierWatcher";
constexpr const char* itemPath = "/StatusNotifierItem";
constexpr const char* itemInterface = "org.kde.StatusNotifierItem";
constexpr const char* menuInterface = "com.canonical.dbusmenu";
constexpr const char* propertiesInterface = "org.freedesktop.DBus.Properties";

} // namespace

class NotifierHost::Watcher final : public QDBusVirtualObject {
public:
    explicit Watcher(const QDBusConnection& bus) : bus_(bus) {
        services_.setConnection(bus_);
        services_.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
        connect(&services_, &QDBusServiceWatcher::serviceUnregistered, this,
                [this](const QString& service) { items.removeAll(service); });
        counter_.setSingleShot(true);
        connect(&counter_, &QTimer::timeout, this, [this] { ++layoutUpdates; });
        bus_.connect({}, {}, QLatin1String(menuInterface), QStringLiteral("LayoutUpdated"), &counter_,
                     SLOT(start()));
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.member() == QLatin1String("RegisterStatusNotifierItem")) {
            const QString service = message.arguments().at(0).toString();
            services_.addWatchedService(service);
            items.push_back(service);
            return connection.send(message.createReply());
        }
        if (message.member() == QLatin1String("Get") &&
            message.arguments().at(1).toString() == QLatin1String("IsStatusNotifierHostRegistered")) {
            return connection.send(message.createReply(QVariant::fromValue(QDBusVariant(hasHost))));
        }
        return false;
    }

    QStringList items;
    bool hasHost = false;
    int layoutUpdates = 0;

private:
    QDBusConnection bus_;
    QDBusServiceWatcher services_;
    QTimer counter_;
};

NotifierHost::NotifierHost(std::string busAddress, Waiter waitUntil)
    : busAddress_(std::move(busAddress)), waitUntil_(std::move(waitUntil)) {}

NotifierHost::~NotifierHost() {
    end();
}

void NotifierHost::start(bool hasHost) {
    bus_ = std::make_unique<HostBus>(busAddress_);
    watcher_ = std::make_unique<Watcher>(bus_->get());
    bus_->get().registerVirtualObject(QLatin1String(watcherPath), watcher_.get());
    // The name of the one before may still be on its way out.
    EXPECT_TRUE(waitUntil_([this] { return bus_->get().registerService(QLatin1String(watcherName)); }));
    if (hasHost) {
        registerHost();
    }
}

void NotifierHost::registerHost() {
    watcher_->hasHost = true;
    bus_->get().send(QDBusMessage::createSignal(QLatin1String(watcherPath), QLatin1String(watcherName),
                                                QStringLiteral("StatusNotifierHostRegistered")));
}

void NotifierHost::end() {
    watcher_.reset();
    bus_.reset();
}

QStringList NotifierHost::items() const {
    return watcher_ ? watcher_->items : QStringList();
}

int NotifierHost::layoutUpdates() const {
    return watcher_->layoutUpdates;
}

QDBusMessage NotifierHost::call(const char* path, const char* interface, const char* method,
                                const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(items().value(0), QLatin1String(path),
                                                          QLatin1String(interface), QLatin1String(method));
    message.setArguments(arguments);
    const QDBusPendingCallWatcher pending(bus_->get().asyncCall(message));
    EXPECT_TRUE(waitUntil_([&] { return pending.isFinished(); })) << method;
    return pending.reply();
}

QVariant NotifierHost::property(const char* name) {
    const QDBusMessage reply =
        call(itemPath, propertiesInterface, "Get", {QLatin1String(itemInterface), QLatin1String(name)});
    EXPECT_EQ(reply.signature(), "v") << name;
    return reply.arguments().value(0).value<QDBusVariant>().variant();
}

notifier::MenuLayout NotifierHost::layout(int parent, int depth, const QStringList& names) {
    const QByteArray path = property("Menu").value<QDBusObjectPath>().path().toLatin1();
    const QDBusMessage reply = call(path.constData(), menuInterface, "GetLayout", {parent, depth, names});
    EXPECT_EQ(reply.signature(), "u(ia{sv}av)") << reply.errorMessage().toStdString();
    return qdbus_cast<notifier::MenuLayout>(reply.arguments().value(1));
}

bool NotifierHost::aboutToShow(int id) {
    const QByteArray path = property("Menu").value<QDBusObjectPath>().path().toLatin1();
    const QDBusMessage reply = call(path.constData(), menuInterface, "AboutToShow", {id});
    EXPECT_EQ(reply.signature(), "b");
    return reply.arguments().value(0).toBool();
}

void NotifierHost::click(int id) {
    const QByteArray path = property("Menu").value<QDBusObjectPath>().path().toLatin1();
    const QDBusMessage reply = call(path.constData(), menuInterface, "Event",
                                    {id, "clicked", QVariant::fromValue(QDBusVariant(0)), 0U});
    EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
}

} // namespace tarvex::contract
