#pragma once

#include "Platform/Linux/Qt/BusConnection.h"

#include <QTimer>

#include <cstdint>
#include <functional>
#include <string>

namespace tarvex {

/// Knows whether anybody on the session bus shows status notifier items: org.kde.StatusNotifierWatcher is
/// there and has a host registered. It asks without waiting. A bus that has not answered after a while has no
/// host until it does.
class NotifierHostWatch {
public:
    /// @param busAddress empty for no bus, and so no host
    /// @param changed called on the main loop when an answer below has changed; a watcher that another one
    ///        replaces takes its hosts away in between
    NotifierHostWatch(const std::string& busAddress, std::function<void()> changed);

    /// Whether it has been found out.
    [[nodiscard]] bool isKnown() const { return state_ != State::unknown; }

    [[nodiscard]] bool hasHost() const { return state_ == State::present; }

private:
    enum class State : std::uint8_t { unknown, absent, present };

    void watch();
    void ask();
    void update(State state);

    std::function<void()> changed_;
    State state_ = State::unknown;
    BusConnection bus_;
    /// The watcher's name has another owner; the target of the bus's signal.
    QTimer ownerChange_;
    /// Asks again; the target of the watcher's signals, which come in bursts.
    QTimer question_;
    /// Answers to older questions than the latest do not count.
    int questions_ = 0;
};

} // namespace tarvex
