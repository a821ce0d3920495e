#include "Platform/Linux/Qt/QtXEventSource.h"

#include <QAbstractEventDispatcher>

namespace tarvex {

QtXEventSource::QtXEventSource(XEventPump& pump) : notifier_(pump.fileDescriptor(), QSocketNotifier::Read) {
    QObject::connect(&notifier_, &QSocketNotifier::activated, &receiver_, [&pump] { pump.processPending(); });
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock,
                     &receiver_, [&pump] { pump.processQueued(); });
}

} // namespace tarvex
