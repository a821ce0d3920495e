#pragma once

#include "App/Input/EventTapPlatform.h"
#include "App/Toolkit/MainLoop.h"
#include "Core/Logging/LogPlatform.h"

#include <cstdint>
#include <memory>

namespace tarvex {

/// Installs the event tap and keeps trying, once a second, until the platform grants it. The owner sets
/// refcon and handler, then calls stopInstalledTap, stopRetry and attemptInstall. Main thread only; nothing
/// throws.
class EventTapManager : public std::enable_shared_from_this<EventTapManager> {
public:
    /// The manager is always shared, so that a retry never keeps it alive. The ports must outlive it.
    [[nodiscard]] static std::shared_ptr<EventTapManager> make(EventTapPlatform& platform, MainLoop& mainLoop,
                                                               LogPlatform& log);

    /// Opaque data for the callback, not owned.
    void setRefcon(void* refcon) { refcon_ = refcon; }

    void setHandler(EventTapCallback handler) { handler_ = handler; }

    /// Creates and installs the tap now; when the platform refuses, retries until it does. Without a handler
    /// nothing happens at all.
    void attemptInstall();

    /// Takes the tap off the run loop and drops it.
    void stopInstalledTap();

    /// Cancels the retries and sets their interval back to its start.
    void stopRetry();

    [[nodiscard]] bool isInstalled() const { return eventTap_ != nullptr && runLoopSource_ != nullptr; }

    [[nodiscard]] bool isWaiting() const { return retryTimer_ != nullptr; }

    /// The interval of the next retry timer, in seconds.
    [[nodiscard]] double retryIntervalSeconds() const { return retryIntervalSeconds_; }

private:
    EventTapManager(EventTapPlatform& platform, MainLoop& mainLoop, LogPlatform& log);

    void requestListenEventAccessIfNeeded();
    void scheduleRetryIfNeeded();
    void installRunLoopSource();
    [[nodiscard]] static std::uint64_t makeEventMask();

    EventTapPlatform* platform_;
    MainLoop* mainLoop_;
    LogPlatform* log_;
    std::unique_ptr<EventTap> eventTap_;
    std::unique_ptr<RunLoopSource> runLoopSource_;
    std::unique_ptr<Timer> retryTimer_;
    void* refcon_ = nullptr;
    EventTapCallback handler_ = nullptr;
    bool didRequestListenAccess_ = false;
    double retryIntervalSeconds_;
};

} // namespace tarvex
