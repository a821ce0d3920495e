#pragma once

#include "App/Input/EventTapPlatform.h"
#include "App/Toolkit/MainLoop.h"

#include <memory>

namespace tarvex {

/// The event tap of Core Graphics. Every event goes on to its receiver as it came, whatever the callback
/// answers. A mouse may report several times as often as a display shows pictures: motion is handed on at
/// once, and then at most once per motionIntervalSeconds, always before the event that follows it.
class MacEventTapPlatform final : public EventTapPlatform {
public:
    /// The main loop must outlive the platform and its taps.
    explicit MacEventTapPlatform(MainLoop& mainLoop, double motionIntervalSeconds = 0.003)
        : mainLoop_(&mainLoop), motionIntervalSeconds_(motionIntervalSeconds) {}

    [[nodiscard]] bool preflightListenEventAccess() override;
    [[nodiscard]] bool requestListenEventAccess() override;
    [[nodiscard]] std::unique_ptr<EventTap> createTap(const EventTapRequest& request) override;
    [[nodiscard]] std::unique_ptr<RunLoopSource> createRunLoopSource(EventTap& tap) override;
    void addSource(RunLoopSource& source) override;
    void removeSource(RunLoopSource& source) override;
    void enableTap(EventTap& tap) override;

private:
    MainLoop* mainLoop_;
    double motionIntervalSeconds_;
};

} // namespace tarvex
