#include "Platform/MacOS/Input/TapContext.h"

#include <utility>

namespace tarvex {

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
