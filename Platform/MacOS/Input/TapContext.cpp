#include "Platform/MacOS/Input/TapContext.h"

#include <utility>

namespace tarvex {

namespace {

/// Counts a call in while it lasts, however it ends.
class CallCount {
public:
    explicit CallCount(int& depth) : depth_(&depth) { ++*depth_; }

    CallCount(const CallCount&) = delete;
    CallCount& operator=(const CallCount&) = delete;
    CallCount(CallCount&&) = delete;
    CallCount& operator=(CallCount&&) = delete;

    ~CallCount() { --*depth_; }

private:
    int* depth_;
};

} // namespace

void TapContext::setTap(EventTap* tap) {
    tap_ = tap;
    if (tap_ == nullptr) {
        forgetMotion();
    }
}

void TapContext::forgetMotion() {
    pendingMotionFlags_.reset();
    motionTimer_.reset();
}

void TapContext::handle(EventType type, std::uint64_t flags) {
    const CallCount count(callDepth_);
    if (type == EventType::leftMouseDragged) {
        handleMotion(flags);
        return;
    }
    deliverPendingMotion();
    deliver(type, flags);
}

void TapContext::handleMotion(std::uint64_t flags) {
    pendingMotionFlags_ = flags;
    if (!motionTimer_) {
        motionIntervalEnded();
    }
}

void TapContext::motionIntervalEnded() {
    motionTimer_.reset();
    if (!pendingMotionFlags_ || tap_ == nullptr) {
        return;
    }
    motionTimer_ = mainLoop_->scheduleOnce(motionIntervalSeconds_, [weakSelf = weak_from_this()] {
        if (const auto self = weakSelf.lock()) {
            self->motionIntervalEnded();
        }
    });
    deliverPendingMotion();
}

void TapContext::deliverPendingMotion() {
    if (const auto flags = std::exchange(pendingMotionFlags_, std::nullopt)) {
        deliver(EventType::leftMouseDragged, *flags);
    }
}

void TapContext::deliver(EventType type, std::uint64_t flags) {
    if (tap_ == nullptr || request_.callback == nullptr) {
        return;
    }
    const TapEvent event{type, flags};
    request_.callback(tap_, type, &event, request_.refcon);
}

} // namespace tarvex
