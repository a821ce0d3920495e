#pragma once

#include "App/Input/EventTapPlatform.h"
#include "App/Toolkit/MainLoop.h"

#include <cstdint>
#include <memory>
#include <optional>

namespace tarvex {

/// What a tap's native callback works on. It lives for as long as the system can call, and through a call in
/// which the tap is destroyed.
class TapContext : public std::enable_shared_from_this<TapContext> {
public:
    TapContext(MainLoop& mainLoop, double motionIntervalSeconds, const EventTapRequest& request)
        : mainLoop_(&mainLoop), motionIntervalSeconds_(motionIntervalSeconds), request_(request) {}

    /// Whom the callback hears as the sender; null when the tap has gone, which ends all calls.
    void setTap(EventTap* tap);

    /// The source is off the run loop: motion that has not been handed on is forgotten.
    void forgetMotion();

    /// An event of the system.
    void handle(EventType type, std::uint64_t flags);

    /// True while an event is being handled.
    [[nodiscard]] bool isInCall() const { return callDepth_ > 0; }

    /// What the tap was asked to be.
    [[nodiscard]] const EventTapRequest& request() const { return request_; }

private:
    void handleMotion(std::uint64_t flags);
    void motionIntervalEnded();
    void deliverPendingMotion();
    void deliver(EventType type, std::uint64_t flags);

    MainLoop* mainLoop_;
    double motionIntervalSeconds_;
    EventTapRequest request_;
    EventTap* tap_ = nullptr;
    int callDepth_ = 0;
    std::optional<std::uint64_t> pendingMotionFlags_;
    /// Runs while motion is held back.
    std::unique_ptr<Timer> motionTimer_;
};

} // namespace tarvex
