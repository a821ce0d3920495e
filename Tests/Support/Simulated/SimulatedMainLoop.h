#pragma once

#include "App/Toolkit/MainLoop.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

namespace tarvex {

/// A main loop that runs when it is told to, over a clock that moves when it is told to.
class SimulatedMainLoop final : public MainLoop {
public:
    void post(std::function<void()> action) override;
    [[nodiscard]] std::unique_ptr<Timer> scheduleRepeating(double intervalSeconds,
                                                           std::function<void()> action) override;
    [[nodiscard]] std::unique_ptr<Timer> scheduleOnce(double intervalSeconds,
                                                      std::function<void()> action) override;

    /// Runs what was posted, and what that posts, until nothing is left.
    void runPosted();

    /// Moves the clock on, firing the timers that come due on the way in the order of their times.
    void advance(double seconds);

    [[nodiscard]] double now() const { return now_; }

    /// The intervals of the timers that still wait, in the order in which they were made.
    [[nodiscard]] std::vector<double> timerIntervals() const;

private:
    struct Entry {
        double due = 0;
        double interval = 0;
        bool repeats = false;
        bool isAlive = true;
        std::function<void()> action;
    };

    class Handle;

    std::unique_ptr<Timer> schedule(double interval, bool repeats, std::function<void()> action);
    std::shared_ptr<Entry> nextDue(double until);
    void forgetDead();

    std::deque<std::function<void()>> posted_;
    std::vector<std::shared_ptr<Entry>> timers_;
    double now_ = 0;
};

} // namespace tarvex
