#include "Platform/Linux/Qt/QtMainLoop.h"

#include <QCoreApplication>
#include <QEvent>
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

/// Carries a posted action.
class ActionEvent final : public QEvent {
public:
    static constexpr QEvent::Type type = QEvent::User;

    explicit ActionEvent(std::function<void()> action) : QEvent(type), action_(std::move(action)) {}

    void run() const { action_(); }

private:
    std::function<void()> action_;
};

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

bool QtMainLoop::Receiver::event(QEvent* event) {
    if (event->type() != ActionEvent::type) {
        return QObject::event(event);
    }
    static_cast<const ActionEvent*>(event)->run();
    return true;
}

void QtMainLoop::post(std::function<void()> action) {
    // Qt owns a posted event.
    QCoreApplication::postEvent(&receiver_, std::make_unique<ActionEvent>(std::move(action)).release());
}

std::unique_ptr<Timer> QtMainLoop::scheduleRepeating(double intervalSeconds, std::function<void()> action) {
    return std::make_unique<QtTimer>(intervalSeconds, false, std::move(action));
}

std::unique_ptr<Timer> QtMainLoop::scheduleOnce(double intervalSeconds, std::function<void()> action) {
    return std::make_unique<QtTimer>(intervalSeconds, true, std::move(action));
}

} // namespace tarvex
