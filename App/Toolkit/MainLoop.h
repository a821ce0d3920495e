#pragma once

#include <functional>
#include <memory>

namespace tarvex {

/// A scheduled call. Destroying it cancels the call, also from within the call itself.
class Timer {
public:
    Timer() = default;
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;
    Timer(Timer&&) = delete;
    Timer& operator=(Timer&&) = delete;
    virtual ~Timer() = default;
};

/// Port: the loop of the main thread. All calls are made on the main thread and never from within a call to
/// this port.
class MainLoop {
public:
    MainLoop() = default;
    MainLoop(const MainLoop&) = delete;
    MainLoop& operator=(const MainLoop&) = delete;
    MainLoop(MainLoop&&) = delete;
    MainLoop& operator=(MainLoop&&) = delete;
    virtual ~MainLoop() = default;

    /// Calls the action once, on a later turn of the loop.
    virtual void post(std::function<void()> action) = 0;

    /// Calls the action every interval (seconds, greater than 0) until the timer is destroyed; first after
    /// one interval.
    [[nodiscard]] virtual std::unique_ptr<Timer> scheduleRepeating(double intervalSeconds,
                                                                   std::function<void()> action) = 0;

    /// Calls the action once, after the interval (seconds).
    [[nodiscard]] virtual std::unique_ptr<Timer> scheduleOnce(double intervalSeconds,
                                                              std::function<void()> action) = 0;
};

} // namespace tarvex
