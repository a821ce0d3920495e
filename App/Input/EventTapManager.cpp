#include "App/Input/EventTapManager.h"

#include <algorithm>
#include <array>
#include <string>

namespace tarvex {

namespace {

constexpr double firstRetryIntervalSeconds = 1.0;
constexpr double laterRetryIntervalSeconds = 5.0;

} // namespace

std::shared_ptr<EventTapManager> EventTapManager::make(EventTapPlatform& platform, MainLoop& mainLoop,
                                                       LogPlatform& log) {
    return std::shared_ptr<EventTapManager>(new EventTapManager(platform, mainLoop, log));
}

EventTapManager::EventTapManager(EventTapPlatform& platform, MainLoop& mainLoop, LogPlatform& log)
    : platform_(&platform),
      mainLoop_(&mainLoop),
      log_(&log),
      retryIntervalSeconds_(firstRetryIntervalSeconds) {}

void EventTapManager::attemptInstall() {
    if (handler_ == nullptr) {
        return;
    }
    if (!platform_->preflightListenEventAccess()) {
        requestListenEventAccessIfNeeded();
    }
    log_->systemLog("EventTapManager.start: creating event tap");
    EventTapRequest request;
    request.eventMask = makeEventMask();
    request.callback = handler_;
    request.refcon = refcon_;
    // A source must not outlive its tap.
    stopInstalledTap();
    eventTap_ = platform_->createTap(request);
    if (!eventTap_) {
        scheduleRetryIfNeeded();
        return;
    }
    stopRetry();
    installRunLoopSource();
}

void EventTapManager::stopInstalledTap() {
    if (runLoopSource_) {
        platform_->removeSource(*runLoopSource_);
    }
    runLoopSource_.reset();
    eventTap_.reset();
}

void EventTapManager::stopRetry() {
    retryTimer_.reset();
    retryIntervalSeconds_ = firstRetryIntervalSeconds;
}

void EventTapManager::requestListenEventAccessIfNeeded() {
    if (didRequestListenAccess_) {
        return;
    }
    didRequestListenAccess_ = true;
    const bool granted = platform_->requestListenEventAccess();
    log_->systemLog(std::string("EventTapManager.start: requested Input Monitoring access. granted=") +
                    (granted ? "true" : "false"));
}

void EventTapManager::scheduleRetryIfNeeded() {
    if (retryTimer_) {
        return;
    }
    log_->systemLog("EventTapManager.start: waiting for permissions / event tap availability");
    retryTimer_ = mainLoop_->scheduleRepeating(retryIntervalSeconds_, [weakSelf = weak_from_this()] {
        if (const auto self = weakSelf.lock()) {
            self->attemptInstall();
        }
    });
    // Only a timer made later would see this, and stopRetry() resets it before one is.
    retryIntervalSeconds_ = std::max(retryIntervalSeconds_, laterRetryIntervalSeconds);
}

void EventTapManager::installRunLoopSource() {
    if (!eventTap_) {
        return;
    }
    runLoopSource_ = platform_->createRunLoopSource(*eventTap_);
    if (!runLoopSource_) {
        log_->systemLog("EventTapManager.start: failed to create run loop source");
        return;
    }
    platform_->addSource(*runLoopSource_);
    log_->systemLog("EventTapManager.start: event tap installed on current run loop");
    platform_->enableTap(*eventTap_);
}

std::uint64_t EventTapManager::makeEventMask() {
    constexpr std::array types{EventType::leftMouseDown, EventType::leftMouseDragged, EventType::leftMouseUp,
                               EventType::flagsChanged};
    constexpr std::uint32_t maskBits = 64;
    std::uint64_t mask = 0;
    for (const EventType type : types) {
        const auto bit = static_cast<std::uint32_t>(type);
        if (bit < maskBits) {
            mask |= std::uint64_t{1} << bit;
        }
    }
    return mask;
}

} // namespace tarvex
