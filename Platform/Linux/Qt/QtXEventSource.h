#pragma once

#include "Platform/Linux/X11/XEventPump.h"

#include <QObject>
#include <QSocketNotifier>

namespace tarvex {

/// Has the events of a connection of our own handled by the main loop: when they arrive, and before the loop
/// goes to sleep, since whoever waited for a reply may have taken events off the descriptor, and since calls
/// made by timers and by Qt's own events end their turn there too.
class QtXEventSource {
public:
    /// An application object must exist. The pump must outlive the source.
    explicit QtXEventSource(XEventPump& pump);

private:
    QSocketNotifier notifier_;
    /// Ends the connection to the loop with this object.
    QObject receiver_;
};

} // namespace tarvex
