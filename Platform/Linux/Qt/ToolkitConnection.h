#pragma once

#include <QGuiApplication>
#include <xcb/xcb.h>

namespace tarvex {

/// The toolkit's own connection to the X server; null when the toolkit works without one. An application
/// object must exist.
[[nodiscard]] inline xcb_connection_t* toolkitConnection() {
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 == nullptr ? nullptr : x11->connection();
}

} // namespace tarvex
