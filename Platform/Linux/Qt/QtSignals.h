#pragma once

#include "Platform/Posix/FileDescriptor.h"

#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <functional>
#include <memory>

namespace tarvex {

/// Turns the signals that ask a program to end (SIGTERM, SIGINT, SIGHUP) into a call on the main loop. Asking
/// twice changes nothing; a program that has not ended ten seconds after the first signal, since it is stuck,
/// is ended by the system. At most one object at a time; the former handling comes back when it goes.
class QtSignals {
public:
    /// Has the signals end the program at once, with exit code 0, for as long as there is no object: while
    /// the program starts and while it ends. Nothing is lost: the X server and the bus free whatever a
    /// program had that has gone. Whichever thread takes the signal, and whatever the main one waits for.
    static void endAtOnce();

    /// An application object must exist.
    /// @param terminate called on the main loop, also for a signal that came before the loop ran
    explicit QtSignals(std::function<void()> terminate);

    QtSignals(const QtSignals&) = delete;
    QtSignals& operator=(const QtSignals&) = delete;
    QtSignals(QtSignals&&) = delete;
    QtSignals& operator=(QtSignals&&) = delete;
    ~QtSignals();

private:
    static constexpr std::array<int, 3> handledSignals{SIGTERM, SIGINT, SIGHUP};

    void readSignals();

    std::function<void()> terminate_;
    FileDescriptor readEnd_;
    FileDescriptor writeEnd_;
    std::unique_ptr<QSocketNotifier> notifier_;
    bool hasAsked_ = false;
    std::array<struct sigaction, handledSignals.size()> former_{};
};

} // namespace tarvex
