#include "Platform/Linux/Qt/NotifierHostWatch.h"

#include "Platform/Linux/Qt/StatusNotifierNames.h"

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>

#include <chrono>
#include <utility>

namespace tarvex {

namespace {

constexpr std::chrono::seconds patience{2};

} // namespace

NotifierHostWatch::NotifierHostWatch(const std::string& busAddress, std::function<void()> changed)
    : changed_(std::move(changed)), bus_(busAddress) {
    if (bus_.get().isConnected()) {
        watch();
    } else {
        state_ = State::absent;
    }
}

void NotifierHostWatch::watch() {
    question_.setSingleShot(true);
    QObject::connect(&question_, &QTimer::timeout, &question_, [this] { ask(); });
    ownerChange_.setSingleShot(true);
    QObject::connect(&ownerChange_, &QTimer::timeout, &question_, [this] {
        update(State::absent);
        question_.start();
    });
    const QString watcher = QLatin1String(notifier::watcherName);
    bus_.get().connect({}, QStringLiteral("/org/freedesktop/DBus"), QStringLiteral("org.freedesktop.DBus"),
                       QStringLiteral("NameOwnerChanged"), {watcher}, QString(), &ownerChange_,
                       SLOT(start()));
    bus_.requestSignals(
        QStringLiteral("type='signal',sender='org.freedesktop.DBus',interface='org.freedesktop.DBus',"
                       "member='NameOwnerChanged',arg0='%1'")
            .arg(watcher));
    for (const char* signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"}) {
        bus_.get().connect({}, QLatin1String(notifier::watcherPath), watcher, QLatin1String(signal),
                           &question_, SLOT(start()));
        bus_.requestSignals(QStringLiteral("type='signal',path='%1',interface='%2',member='%3'")
                                .arg(QLatin1String(notifier::watcherPath), watcher, QLatin1String(signal)));
    }
    // What libdbus tells when the bus goes; the question then fails.
    bus_.get().connect({}, QStringLiteral("/org/freedesktop/DBus/Local"),
                       QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"),
                       &question_, SLOT(start()));
    ask();
    QTimer::singleShot(patience, &question_, [this] {
        if (!isKnown()) {
            update(State::absent);
        }
    });
}

void NotifierHostWatch::ask() {
    QDBusMessage message = QDBusMessage::createMethodCall(
        QLatin1String(notifier::watcherName), QLatin1String(notifier::watcherPath),
        QLatin1String(notifier::propertiesInterface), QStringLiteral("Get"));
    message << QString::fromLatin1(notifier::watcherName) << QStringLiteral("IsStatusNotifierHostRegistered");
    message.setAutoStartService(false);
    auto* answer = new QDBusPendingCallWatcher(bus_.get().asyncCall(message), &question_);
    const int number = ++questions_;
    QObject::connect(answer, &QDBusPendingCallWatcher::finished, &question_, [this, answer, number] {
        answer->deleteLater();
        if (number == questions_) {
            const QVariant value = answer->reply().arguments().value(0);
            const bool isRegistered = !answer->isError() && value.value<QDBusVariant>().variant().toBool();
            update(isRegistered ? State::present : State::absent);
        }
    });
}

void NotifierHostWatch::update(State state) {
    if (std::exchange(state_, state) != state) {
        changed_();
    }
}

} // namespace tarvex
