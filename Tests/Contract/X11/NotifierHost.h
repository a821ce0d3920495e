#pragma once

#include "Platform/Linux/Qt/NotifierTypes.h"
#include "Tests/Contract/X11/HostBus.h"

#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <memory>
#include <string>

namespace tarvex::contract {

/// The part of a desktop that shows status notifier items: the watcher of all items and a host, on a private
/// bus. Its calls wait on the main loop, which the items share.
class NotifierHost {
public:
    using Waiter = std::function<bool(const std::function<bool()>&)>;

    /// It is not there until it is started.
    NotifierHost(std::string busAddress, Waiter waitUntil);
    ~NotifierHost();

    /// Takes the watcher's name; a host registers when `hasHost`.
    void start(bool hasHost = true);
    void registerHost();

    /// Leaves the bus, as a crash does.
    void end();

    /// The bus names of the items that registered and are still on the bus.
    [[nodiscard]] QStringList items() const;

    /// Of the only item. Fails the test without one.
    [[nodiscard]] QVariant property(const char* name);
    [[nodiscard]] notifier::MenuLayout layout(int parent = 0, int depth = -1, const QStringList& names = {});
    bool aboutToShow(int id);
    void click(int id);

    /// Any call to the item or, by the path of its menu, to its menu; the reply.
    [[nodiscard]] QDBusMessage call(const char* path, const char* interface, const char* method,
                                    const QVariantList& arguments);

    /// How often the item has said that its menu has changed.
    [[nodiscard]] int layoutUpdates() const;

private:
    class Watcher;

    std::string busAddress_;
    Waiter waitUntil_;
    std::unique_ptr<HostBus> bus_;
    std::unique_ptr<Watcher> watcher_;
};

} // namespace tarvex::contract
