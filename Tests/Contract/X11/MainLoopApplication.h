#pragma once

#include "Tests/Support/X11/Deadline.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QEventLoop>
#include <QTimer>

#include <array>
#include <functional>

namespace tarvex::contract {

/// A Qt application without a screen, and its event loop.
class MainLoopApplication {
public:
    /// @param platform the Qt platform plugin; the display of "xcb" comes from the environment
    explicit MainLoopApplication(const char* platform = "offscreen")
        : arguments_{name_.data(), option_.data(), const_cast<char*>(platform), nullptr},
          application_(count_, arguments_.data()) {}

    /// Runs the loop until the condition holds, asking after each wake-up; false when the patience ended
    /// first.
    bool waitUntil(const std::function<bool()>& condition) {
        const test::Deadline deadline;
        QTimer tick;
        tick.start(10);
        while (!condition()) {
            if (deadline.hasPassed()) {
                return false;
            }
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        return true;
    }

    /// Handles all that is due.
    void settle() {
        while (QCoreApplication::eventDispatcher()->processEvents(QEventLoop::AllEvents)) {
        }
    }

private:
    std::array<char, 5> name_{"test"};
    std::array<char, 10> option_{"-platform"};
    int count_ = 3;
    std::array<char*, 4> arguments_;
    QApplication application_;
};

} // namespace tarvex::contract
