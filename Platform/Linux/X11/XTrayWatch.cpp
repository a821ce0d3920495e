#include "Platform/Linux/X11/XTrayWatch.h"

#include <utility>

namespace tarvex {

XTrayWatch::XTrayWatch(XConnection& connection, XEventPump& pump, std::function<void()> changed)
    : changed_(std::move(changed)),
      selection_(connection, pump, "_NET_SYSTEM_TRAY_S", [this](xcb_window_t owner) { handleOwner(owner); }),
      hasTray_(selection_.hasOwner()) {}

void XTrayWatch::handleOwner(xcb_window_t owner) {
    update(false);
    update(owner != XCB_WINDOW_NONE);
}

void XTrayWatch::update(bool hasTray) {
    if (std::exchange(hasTray_, hasTray) != hasTray) {
        changed_();
    }
}

} // namespace tarvex
