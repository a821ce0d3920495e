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
    /// Keeps the signals waiting from now on, until there is an object to hear of them. Call it before other
    /// threads are made, which must not take them either.
    static void holdBack();

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

    static void setBlocked(bool areBlocked);
    void readSignals();

    std::function<void()> terminate_;
    FileDescriptor readEnd_;
    FileDescriptor writeEnd_;
    std::unique_ptr<QSocketNotifier> notifier_;
    bool hasAsked_ = false;
    std::array<struct sigaction, handledSignals.size()> former_{};
};

} // namespace tarvex
