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

    /// Connects, which waits for the bus.
    /// @param patience how long each answer may take
    InstanceService(const std::string& busAddress, std::chrono::milliseconds patience);
    InstanceService(const InstanceService&) = delete;
    InstanceService& operator=(const InstanceService&) = delete;
    InstanceService(InstanceService&&) = delete;
    InstanceService& operator=(InstanceService&&) = delete;
    ~InstanceService();

    [[nodiscard]] bool isConnected() const { return bus_.get().isConnected(); }

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
    int patience_;
    std::unique_ptr<Object> object_;
};

} // namespace tarvex
