#include "Platform/Linux/Qt/QtMainLoop.h"

#include <QMetaObject>
#include <QTimer>

#include <algorithm>
#include <limits>
#include <utility>

namespace tarvex {

namespace {

/// Longer intervals than Qt can count (24 days) are cut; shorter ones than it can count become one tick.
int millisecondsOf(double seconds) {
    constexpr double longest = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(seconds * 1000.0 + 0.5, 1.0, longest));
}

class QtTimer final : public Timer {
public:
    QtTimer(double intervalSeconds, bool isSingleShot, std::function<void()> action) {
        timer_.setSingleShot(isSingleShot);
        // Qt holds the action while it runs, so that it may destroy this timer.
        QObject::connect(&timer_, &QTimer::timeout, std::move(action));
        timer_.start(millisecondsOf(intervalSeconds));
    }

private:
    QTimer timer_;
};

} // namespace

void QtMainLoop::post(std::function<void()> action) {
    QMetaObject::invokeMethod(&receiver_, std::move(action), Qt::QueuedConnection);
}

std::unique_ptr<Timer> QtMainLoop::scheduleRepeating(double intervalSeconds, std::function<void()> action) {
    return std::make_unique<QtTimer>(intervalSeconds, false, std::move(action));
}

std::unique_ptr<Timer> QtMainLoop::scheduleOnce(double intervalSeconds, std::function<void()> action) {
    return std::make_unique<QtTimer>(intervalSeconds, true, std::move(action));
}

} // namespace tarvex
