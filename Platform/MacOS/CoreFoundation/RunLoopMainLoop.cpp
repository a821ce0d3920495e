#include "Platform/MacOS/CoreFoundation/RunLoopMainLoop.h"

#include "Platform/MacOS/CoreFoundation/CFHandle.h"
#include "Platform/MacOS/Logging/SwallowedException.h"

#include <CoreFoundation/CoreFoundation.h>
#include <algorithm>
#include <dispatch/dispatch.h>
#include <utility>

namespace tarvex {

namespace {

/// An interval of 0 would make a repeating timer fire once and never again (Apple, CFRunLoopTimerCreate).
constexpr double shortestIntervalSeconds = 0.0001;

// An exception must not pass through a frame of the system; the ports' actions throw none.
void callSafely(const std::function<void()>& action) noexcept {
    try {
        action();
    } catch (...) {
        logSwallowedException("RunLoopMainLoop");
    }
}

struct PostedAction {
    std::weak_ptr<const bool> life;
    std::function<void()> action;
};

// The queue gives the action back exactly once.
void runPostedAction(void* context) {
    const std::unique_ptr<PostedAction> posted(static_cast<PostedAction*>(context));
    if (!posted->life.expired()) {
        callSafely(posted->action);
    }
}

struct TimerState {
    std::function<void()> action;
    bool isCancelled = false;
};

using TimerStateRef = std::shared_ptr<TimerState>;

// The timer may be destroyed by its own action, and its context with it: the state is held for the call.
void fire(CFRunLoopTimerRef /*timer*/, void* info) {
    const TimerStateRef state = *static_cast<const TimerStateRef*>(info);
    if (!state->isCancelled) {
        callSafely(state->action);
    }
}

const void* retainContext(const void* info) {
    return std::make_unique<TimerStateRef>(*static_cast<const TimerStateRef*>(info)).release();
}

void releaseContext(const void* info) {
    const std::unique_ptr<const TimerStateRef> owned(static_cast<const TimerStateRef*>(info));
}

class RunLoopTimer final : public Timer {
public:
    /// @param repeatSeconds 0 for a timer that fires once
    RunLoopTimer(double firstSeconds, double repeatSeconds, std::function<void()> action)
        : state_(std::make_shared<TimerState>()) {
        state_->action = std::move(action);
        CFRunLoopTimerContext context{0, &state_, &retainContext, &releaseContext, nullptr};
        timer_ = CFHandle<CFRunLoopTimerRef>::adopt(
            CFRunLoopTimerCreate(kCFAllocatorDefault, CFAbsoluteTimeGetCurrent() + firstSeconds,
                                 repeatSeconds, 0, 0, &fire, &context));
        if (timer_) {
            CFRunLoopAddTimer(CFRunLoopGetMain(), timer_.get(), kCFRunLoopCommonModes);
        }
    }

    RunLoopTimer(const RunLoopTimer&) = delete;
    RunLoopTimer& operator=(const RunLoopTimer&) = delete;
    RunLoopTimer(RunLoopTimer&&) = delete;
    RunLoopTimer& operator=(RunLoopTimer&&) = delete;

    ~RunLoopTimer() override {
        state_->isCancelled = true;
        if (timer_) {
            CFRunLoopTimerInvalidate(timer_.get());
        }
    }

private:
    TimerStateRef state_;
    CFHandle<CFRunLoopTimerRef> timer_;
};

} // namespace

void RunLoopMainLoop::post(std::function<void()> action) {
    auto posted = std::make_unique<PostedAction>(PostedAction{life_, std::move(action)});
    dispatch_async_f(dispatch_get_main_queue(), posted.release(), &runPostedAction);
}

std::unique_ptr<Timer> RunLoopMainLoop::scheduleRepeating(double intervalSeconds,
                                                          std::function<void()> action) {
    const double interval = std::max(intervalSeconds, shortestIntervalSeconds);
    return std::make_unique<RunLoopTimer>(interval, interval, std::move(action));
}

std::unique_ptr<Timer> RunLoopMainLoop::scheduleOnce(double intervalSeconds, std::function<void()> action) {
    return std::make_unique<RunLoopTimer>(intervalSeconds, 0, std::move(action));
}

} // namespace tarvex
