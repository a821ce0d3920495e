#pragma once

#include "Platform/Linux/InstanceRequest.h"
#include "Platform/Linux/Qt/BusConnection.h"

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QVariant>

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tarvex {

/// The program on the session bus, either end of it: the one who serves requests and the one who hands one
/// over.
class InstanceService final {
public:
    enum class Answer : std::uint8_t {
        accepted,
        /// Somebody has the name and gave no good answer in time.
        none,
        /// Nobody has the name.
        nobody
    };

    struct Patience {
        /// With the bus,
        std::chrono::milliseconds bus;
        /// and with the instance that runs.
        std::chrono::milliseconds instance;
    };

    /// @param session part of the program's name, so that each session on a bus has an instance of its own;
    /// an
    ///        X display such as ":0", or empty
    /// @param patience how long each answer may take
    InstanceService(const std::string& busAddress, const std::string& session, const Patience& patience);
    InstanceService(const InstanceService&) = delete;
    InstanceService& operator=(const InstanceService&) = delete;
    InstanceService(InstanceService&&) = delete;
    InstanceService& operator=(InstanceService&&) = delete;
    ~InstanceService();

    /// Whether there is a bus that answers. Waits.
    [[nodiscard]] bool isConnected() { return bus_.awaitAnswer(); }

    /// The program's name on the bus in that session: "org.tarvex.Tarvex", to which the session is added as
    /// one element. In it, every character that a name cannot hold is an underscore and two hexadecimal
    /// digits, as "org.tarvex.Tarvex.Display_3a0" for ":0".
    [[nodiscard]] static std::string nameIn(const std::string& session);

    /// Takes the program's name and serves requests from then on. False when another has it. Waits.
    [[nodiscard]] bool takeName();

    /// Gives the request to whoever has the name. Waits.
    [[nodiscard]] Answer handOver(const InstanceRequest& request);

    /// As SingleInstance::setRequestHandler().
    void setRequestHandler(std::function<void(const InstanceRequest&)> handler);

private:
    /// The object on the bus.
    class Object;

    [[nodiscard]] QDBusMessage callBus(const QString& method, const QVariantList& arguments) const;

    BusConnection bus_;
    QString name_;
    Patience patience_;
    std::unique_ptr<Object> object_;
};

} // namespace tarvex
