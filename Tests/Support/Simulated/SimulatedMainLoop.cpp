#include "Tests/Support/Simulated/SimulatedMainLoop.h"

#include <stdexcept>
#include <utility>

namespace tarvex {

class SimulatedMainLoop::Handle final : public Timer {
public:
    explicit Handle(std::shared_ptr<Entry> entry) : entry_(std::move(entry)) {}

    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    Handle(Handle&&) = delete;
    Handle& operator=(Handle&&) = delete;

    ~Handle() override { entry_->isAlive = false; }

private:
    std::shared_ptr<Entry> entry_;
};

void SimulatedMainLoop::post(std::function<void()> action) {
    posted_.push_back(std::move(action));
}

std::unique_ptr<Timer> SimulatedMainLoop::scheduleRepeating(double intervalSeconds,
                                                            std::function<void()> action) {
    return schedule(intervalSeconds, true, std::move(action));
}

std::unique_ptr<Timer> SimulatedMainLoop::scheduleOnce(double intervalSeconds, std::function<void()> action) {
    return schedule(intervalSeconds, false, std::move(action));
}

void SimulatedMainLoop::runPosted() {
    constexpr int endless = 100000;
    for (int turns = 0; !posted_.empty(); ++turns) {
        if (turns == endless) {
            throw std::logic_error("actions keep posting themselves");
        }
        const std::function<void()> action = std::move(posted_.front());
        posted_.pop_front();
        action();
    }
}

void SimulatedMainLoop::advance(double seconds) {
    const double end = now_ + seconds;
    runPosted();
    while (const std::shared_ptr<Entry> entry = nextDue(end)) {
        now_ = entry->due;
        if (entry->repeats) {
            entry->due += entry->interval;
        } else {
            entry->isAlive = false;
        }
        entry->action();
        runPosted();
    }
    now_ = end;
    forgetDead();
}

std::vector<double> SimulatedMainLoop::timerIntervals() const {
    std::vector<double> intervals;
    for (const auto& entry : timers_) {
        if (entry->isAlive) {
            intervals.push_back(entry->interval);
        }
    }
    return intervals;
}

std::unique_ptr<Timer> SimulatedMainLoop::schedule(double interval, bool repeats,
                                                   std::function<void()> action) {
    if (!(interval > 0)) {
        throw std::logic_error("a timer needs an interval");
    }
    auto entry = std::make_shared<Entry>();
    entry->due = now_ + interval;
    entry->interval = interval;
    entry->repeats = repeats;
    entry->action = std::move(action);
    timers_.push_back(entry);
    return std::make_unique<Handle>(entry);
}

std::shared_ptr<SimulatedMainLoop::Entry> SimulatedMainLoop::nextDue(double until) {
    std::shared_ptr<Entry> next;
    for (const auto& entry : timers_) {
        if (entry->isAlive && entry->due <= until && (!next || entry->due < next->due)) {
            next = entry;
        }
    }
    return next;
}

void SimulatedMainLoop::forgetDead() {
    std::erase_if(timers_, [](const auto& entry) { return !entry->isAlive; });
}

} // namespace tarvex
