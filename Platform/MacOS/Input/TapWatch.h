#pragma once

#include "App/Toolkit/MainLoop.h"
#include "Platform/MacOS/CoreFoundation/NotificationObserver.h"
#include "Platform/MacOS/Input/TapPort.h"

#include <memory>

namespace tarvex {

/// Notices the ends of a tap that the system says nothing of, and hands the tap's callback a
/// tapDisabledByTimeout instead, upon which its owner makes a new one:
/// - the list of the programs that may steer others has changed. A tap whose program may no more holds up
///   everybody's input; whether it may, only making a tap tells reliably.
/// - the port was invalidated by somebody else, after which it delivers nothing.
class TapWatch {
public:
    /// The permission lags behind the notification.
    static constexpr double permissionLagSeconds = 1.0;

    TapWatch(MainLoop& mainLoop, std::shared_ptr<TapContext> context, std::shared_ptr<TapPort> port);
    TapWatch(const TapWatch&) = delete;
    TapWatch& operator=(const TapWatch&) = delete;
    TapWatch(TapWatch&&) = delete;
    TapWatch& operator=(TapWatch&&) = delete;
    ~TapWatch();

private:
    void lookLater();
    void look();
    void tellOfItsEnd();

    MainLoop* mainLoop_;
    std::shared_ptr<TapContext> context_;
    std::shared_ptr<TapPort> port_;
    bool hearsOfInvalidation_ = false;
    NotificationObserver permissionObserver_;
    NotificationObserver invalidationObserver_;
    std::unique_ptr<Timer> timer_;
};

} // namespace tarvex
