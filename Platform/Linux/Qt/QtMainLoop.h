#pragma once

#include "App/Toolkit/MainLoop.h"

#include <QEvent>
#include <QObject>

#include <functional>
#include <memory>

namespace tarvex {

/// The main loop of the thread's Qt event dispatcher. An application object must exist. Destroying it drops
/// what was posted; timers must be gone by then or their calls go on.
class QtMainLoop final : public MainLoop {
public:
    void post(std::function<void()> action) override;
    [[nodiscard]] std::unique_ptr<Timer> scheduleRepeating(double intervalSeconds,
                                                           std::function<void()> action) override;
    [[nodiscard]] std::unique_ptr<Timer> scheduleOnce(double intervalSeconds,
                                                      std::function<void()> action) override;

private:
    /// Receives the posted actions, so that they end with it.
    class Receiver final : public QObject {
    public:
        bool event(QEvent* event) override;
    };

    Receiver receiver_;
};

} // namespace tarvex
