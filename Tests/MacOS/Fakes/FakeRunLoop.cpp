#include "Tests/MacOS/Fakes/FakeRunLoop.h"

#include "Tests/MacOS/Fakes/FakeCoreFoundation.h"
#include "Tests/MacOS/Fakes/FakeMac.h"

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <utility>

namespace tarvex::fake {

void Port::invalidate() {
    if (!std::exchange(isValid_, false)) {
        return;
    }
    if (invalidationCallback != nullptr) {
        invalidationCallback(referenceTo<CFMachPortRef>(this), nullptr);
    }
    if (Source* source = std::exchange(source_, nullptr)) {
        mac().runLoop.remove(source);
        mac().heap.release(source);
    }
    wasInvalidated();
}

Source* Port::source() {
    if (isValid_ && source_ == nullptr) {
        source_ = mac().heap.make<Source>(this);
    }
    return source_;
}

Source::Source(Port* port) : Object(runLoopSourceType, "run-loop source"), port(port) {
    mac().heap.retain(port);
}

void Source::dispose() {
    mac().heap.release(port);
}

LoopTimer::LoopTimer(double fireDate, double interval, CFRunLoopTimerCallBack callout,
                     const CFRunLoopTimerContext& context)
    : Object(runLoopTimerType, "timer"),
      fireDate(fireDate),
      interval(interval),
      callout(callout),
      context(context) {
    if (context.retain != nullptr) {
        this->context.info = const_cast<void*>(context.retain(context.info));
    }
}

// The context goes with the registration, also in the middle of the timer's own call.
void LoopTimer::invalidate() {
    if (!std::exchange(isValid, false)) {
        return;
    }
    void* info = std::exchange(context.info, nullptr);
    if (context.release != nullptr) {
        context.release(info);
    }
    mac().runLoop.remove(this);
}

bool FakeRunLoop::runTurn() {
    const bool hasQueued = runQueue();
    const bool hasEvents = runSources();
    const bool hasTimers = fireTimers();
    return hasQueued || hasEvents || hasTimers;
}

bool FakeRunLoop::runQueue() {
    std::deque<QueuedCall> calls = std::exchange(queue_, {});
    const bool hadCalls = !calls.empty();
    for (const QueuedCall& call : calls) {
        if (call.work != nullptr) {
            call.work(call.context);
        } else {
            call.ownWork();
        }
    }
    return hadCalls;
}

bool FakeRunLoop::runSources() {
    bool hadEvents = false;
    const std::vector<Source*> present = sources_;
    for (Source* source : present) {
        // An earlier one may have taken it off.
        if (std::find(sources_.begin(), sources_.end(), source) == sources_.end()) {
            continue;
        }
        Port* port = source->port;
        mac().heap.retain(port);
        hadEvents = port->performNext() || hadEvents;
        mac().heap.release(port);
    }
    return hadEvents;
}

bool FakeRunLoop::fireTimers() {
    bool hadTimers = false;
    while (LoopTimer* timer = nextTimer(now_)) {
        mac().heap.retain(timer);
        fire(*timer);
        mac().heap.release(timer);
        hadTimers = true;
    }
    return hadTimers;
}

void FakeRunLoop::fire(LoopTimer& timer) {
    const bool repeats = timer.interval > 0;
    if (repeats) {
        const double now = mac().runLoop.now();
        while (timer.fireDate <= now) {
            timer.fireDate += timer.interval;
        }
    } else {
        // Due no more, but valid until its call has returned.
        timer.fireDate = std::numeric_limits<double>::infinity();
    }
    timer.callout(referenceTo<CFRunLoopTimerRef>(&timer), timer.context.info);
    if (!repeats) {
        timer.invalidate();
    }
}

LoopTimer* FakeRunLoop::nextTimer(double until) {
    LoopTimer* next = nullptr;
    for (LoopTimer* timer : timers_) {
        if (timer->fireDate <= until && (next == nullptr || timer->fireDate < next->fireDate)) {
            next = timer;
        }
    }
    return next;
}

void FakeRunLoop::settle() {
    constexpr int endless = 100000;
    for (int turns = 0; runTurn(); ++turns) {
        if (turns == endless) {
            throw std::logic_error("the run loop never rests");
        }
    }
}

void FakeRunLoop::advance(double seconds) {
    const double end = now_ + seconds;
    settle();
    while (const LoopTimer* timer = nextTimer(end)) {
        now_ = std::max(now_, timer->fireDate);
        settle();
    }
    now_ = std::max(now_, end);
}

bool FakeRunLoop::waitUntil(const std::function<bool()>& condition) {
    constexpr double deadline = 10;
    constexpr double step = 0.005;
    for (const double end = now_ + deadline; now_ < end; advance(step)) {
        settle();
        if (condition()) {
            return true;
        }
    }
    return condition();
}

void FakeRunLoop::enqueue(std::function<void()> work) {
    queue_.push_back({nullptr, nullptr, std::move(work)});
}

void FakeRunLoop::enqueue(dispatch_function_t work, void* context) {
    queue_.push_back({work, context, {}});
}

void FakeRunLoop::add(Source* source) {
    mac().heap.retain(source);
    sources_.push_back(source);
}

void FakeRunLoop::remove(Source* source) {
    const auto found = std::find(sources_.begin(), sources_.end(), source);
    if (found != sources_.end()) {
        sources_.erase(found);
        mac().heap.release(source);
    }
}

void FakeRunLoop::add(LoopTimer* timer) {
    mac().heap.retain(timer);
    timers_.push_back(timer);
}

void FakeRunLoop::remove(LoopTimer* timer) {
    const auto found = std::find(timers_.begin(), timers_.end(), timer);
    if (found != timers_.end()) {
        timers_.erase(found);
        mac().heap.release(timer);
    }
}

std::vector<double> FakeRunLoop::timerIntervals() const {
    std::vector<double> intervals;
    for (const LoopTimer* timer : timers_) {
        intervals.push_back(timer->interval);
    }
    return intervals;
}

void FakeRunLoop::drain() {
    runQueue();
    while (!sources_.empty()) {
        mac().heap.noteMisuse("a source was left on the run loop");
        remove(sources_.back());
    }
    while (!timers_.empty()) {
        mac().heap.noteMisuse("a timer was left on the run loop");
        timers_.back()->invalidate();
    }
}

namespace {

const String commonModes{u"kCFRunLoopCommonModes"};
String mainLoop{u"the main run loop"};

// Anything else would keep the source or the timer waiting while a menu is open.
void checkPlace(CFRunLoopRef loop, CFRunLoopMode mode, const char* user) {
    if (loop != CFRunLoopGetMain() || mode != kCFRunLoopCommonModes) {
        mac().heap.noteMisuse(std::string(user) + " elsewhere than in the common modes of the main run loop");
    }
}

} // namespace

} // namespace tarvex::fake

using namespace tarvex::fake;

extern "C" {

const CFRunLoopMode kCFRunLoopCommonModes = referenceTo<CFStringRef>(&commonModes);

CFAbsoluteTime CFAbsoluteTimeGetCurrent(void) {
    return mac().runLoop.now();
}

CFRunLoopRef CFRunLoopGetMain(void) {
    return referenceTo<CFRunLoopRef>(&mainLoop);
}

void CFRunLoopAddSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFRunLoopMode mode) {
    checkPlace(loop, mode, "CFRunLoopAddSource");
    if (auto* object = mac().heap.as<Source>(source, "CFRunLoopAddSource")) {
        mac().runLoop.add(object);
    }
}

void CFRunLoopRemoveSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFRunLoopMode mode) {
    checkPlace(loop, mode, "CFRunLoopRemoveSource");
    if (auto* object = mac().heap.as<Source>(source, "CFRunLoopRemoveSource")) {
        mac().runLoop.remove(object);
    }
}

CFRunLoopTimerRef CFRunLoopTimerCreate(CFAllocatorRef /*allocator*/, CFAbsoluteTime fireDate,
                                       CFTimeInterval interval, CFOptionFlags /*flags*/, CFIndex /*order*/,
                                       CFRunLoopTimerCallBack callout, CFRunLoopTimerContext* context) {
    if (mac().runLoop.refusesTimers) {
        return nullptr;
    }
    return referenceTo<CFRunLoopTimerRef>(mac().heap.make<LoopTimer>(fireDate, interval, callout, *context));
}

void CFRunLoopAddTimer(CFRunLoopRef loop, CFRunLoopTimerRef timer, CFRunLoopMode mode) {
    checkPlace(loop, mode, "CFRunLoopAddTimer");
    if (auto* object = mac().heap.as<LoopTimer>(timer, "CFRunLoopAddTimer")) {
        mac().runLoop.add(object);
    }
}

void CFRunLoopTimerInvalidate(CFRunLoopTimerRef timer) {
    if (auto* object = mac().heap.as<LoopTimer>(timer, "CFRunLoopTimerInvalidate")) {
        object->invalidate();
    }
}

CFRunLoopSourceRef CFMachPortCreateRunLoopSource(CFAllocatorRef /*allocator*/, CFMachPortRef port,
                                                 CFIndex /*order*/) {
    auto* object = mac().heap.as<Port>(port, "CFMachPortCreateRunLoopSource");
    if (object == nullptr || mac().eventTaps.refusesSources) {
        return nullptr;
    }
    Source* source = object->source();
    if (source != nullptr) {
        mac().heap.retain(source);
    }
    return referenceTo<CFRunLoopSourceRef>(source);
}

void CFMachPortInvalidate(CFMachPortRef port) {
    if (auto* object = mac().heap.as<Port>(port, "CFMachPortInvalidate")) {
        object->invalidate();
    }
}

CFMachPortInvalidationCallBack CFMachPortGetInvalidationCallBack(CFMachPortRef port) {
    const auto* object = mac().heap.as<const Port>(port, "CFMachPortGetInvalidationCallBack");
    return object == nullptr ? nullptr : object->invalidationCallback;
}

void CFMachPortSetInvalidationCallBack(CFMachPortRef port, CFMachPortInvalidationCallBack callout) {
    if (auto* object = mac().heap.as<Port>(port, "CFMachPortSetInvalidationCallBack")) {
        object->invalidationCallback = callout;
    }
}

dispatch_queue_main_t dispatch_get_main_queue(void) {
    static char queue = 0;
    return reinterpret_cast<dispatch_queue_main_t>(&queue);
}

void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work) {
    if (queue != dispatch_get_main_queue()) {
        mac().heap.noteMisuse("dispatch_async_f to another queue than the main one");
    }
    mac().runLoop.enqueue(work, context);
}
}
