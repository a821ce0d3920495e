#pragma once

#include "Tests/MacOS/Fakes/FakeHeap.h"

#include <CoreFoundation/CoreFoundation.h>
#include <deque>
#include <dispatch/dispatch.h>
#include <functional>
#include <memory>
#include <vector>

namespace tarvex::fake {

class Source;

/// Something that a source can be made of. Core Foundation holds it until it is invalidated, and so do it and
/// its one source each other.
class Port : public Object {
public:
    using Object::Object;

    /// Hands out the next thing that waits there; false when nothing does.
    virtual bool performNext() = 0;

    /// Ends the port and its source, whoever wants it.
    void invalidate();

    /// The source, made when it is first asked for; null after the port's end.
    Source* source();

    CFMachPortInvalidationCallBack invalidationCallback = nullptr;

protected:
    /// Nobody holds on to the port any more but those who took a reference.
    virtual void wasInvalidated() = 0;

private:
    Source* source_ = nullptr;
    bool isValid_ = true;
};

/// Connects a port, which it owns a reference to, to the run loop.
class Source final : public Object {
public:
    explicit Source(Port* port);

    void dispose() override;

    Port* port;
};

/// A timer, with the context that it was made with.
class LoopTimer final : public Object {
public:
    LoopTimer(double fireDate, double interval, CFRunLoopTimerCallBack callout,
              const CFRunLoopTimerContext& context);

    void dispose() override { invalidate(); }

    void invalidate();

    double fireDate;
    double interval;
    CFRunLoopTimerCallBack callout;
    CFRunLoopTimerContext context;
    bool isValid = true;
};

/// The main thread's run loop with the main dispatch queue, over a clock that moves when it is told to, or
/// while a call waits for another program.
class FakeRunLoop {
public:
    /// Seconds since some fixed moment, as CFAbsoluteTimeGetCurrent has it.
    [[nodiscard]] double now() const { return now_; }

    /// A call waits.
    void block(double seconds) { now_ += seconds; }

    /// One turn at the present time: the queue, one event of each source, the timers that are due. False when
    /// there was nothing to do.
    bool runTurn();

    /// Turns until there is nothing to do.
    void settle();

    /// Moves the clock on, with every timer at its own time.
    void advance(double seconds);

    /// Moves the clock on in small steps until the condition holds; false when it does not within ten
    /// seconds.
    bool waitUntil(const std::function<bool()>& condition);

    /// Has the system do something on a later turn.
    void enqueue(std::function<void()> work);

    void enqueue(dispatch_function_t work, void* context);
    void add(Source* source);
    void remove(Source* source);
    void add(LoopTimer* timer);
    void remove(LoopTimer* timer);

    /// The intervals of the timers that wait; 0 for one that fires once.
    [[nodiscard]] std::vector<double> timerIntervals() const;

    [[nodiscard]] std::size_t sourceCount() const { return sources_.size(); }

    [[nodiscard]] std::size_t queuedCalls() const { return queue_.size(); }

    /// Calls what still waits in the queue, as a program that ends does not; lets go of sources and timers.
    void drain();

    /// Timers cannot be made.
    bool refusesTimers = false;

private:
    struct QueuedCall {
        dispatch_function_t work = nullptr;
        void* context = nullptr;
        std::function<void()> ownWork;
    };

    bool runQueue();
    bool runSources();
    bool fireTimers();
    static void fire(LoopTimer& timer);
    LoopTimer* nextTimer(double until);

    double now_ = 1000;
    std::deque<QueuedCall> queue_;
    std::vector<Source*> sources_;
    std::vector<LoopTimer*> timers_;
};

} // namespace tarvex::fake
