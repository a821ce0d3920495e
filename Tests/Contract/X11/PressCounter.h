#pragma once

#include <QEvent>
#include <QGuiApplication>
#include <QObject>

namespace tarvex::contract {

/// Counts the presses that the toolkit delivers, repetitions among them. The last filter to come is asked
/// first: a monitor must be there before.
class PressCounter final : public QObject {
public:
    PressCounter() { qGuiApp->installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override {
        count_ += event->type() == QEvent::KeyPress && watched->isWindowType() ? 1 : 0;
        return false;
    }

    [[nodiscard]] int count() const { return count_; }

private:
    int count_ = 0;
};

} // namespace tarvex::contract
