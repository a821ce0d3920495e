#pragma once

#include "App/Toolkit/MainLoop.h"

#include <functional>
#include <memory>

namespace tarvex {

/// The main thread's run loop: timers run in all its common modes, so that they go on while a menu is open or
/// a window is being resized; posted actions go through the main dispatch queue. Destroying it drops what was
/// posted and has not run; timers go on until they are destroyed themselves.
class RunLoopMainLoop final : public MainLoop {
public:
    void post(std::function<void()> action) override;
    [[nodiscard]] std::unique_ptr<Timer> scheduleRepeating(double intervalSeconds,
                                                           std::function<void()> action) override;
    [[nodiscard]] std::unique_ptr<Timer> scheduleOnce(double intervalSeconds,
                                                      std::function<void()> action) override;

private:
    /// Ends with the loop, which tells a posted action that nobody wants it any more.
    std::shared_ptr<const bool> life_ = std::make_shared<const bool>(true);
};

} // namespace tarvex
