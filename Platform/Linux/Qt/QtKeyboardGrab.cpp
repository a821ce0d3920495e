#include "Platform/Linux/Qt/QtKeyboardGrab.h"

#include "Platform/Linux/Qt/ToolkitConnection.h"

#include <QGuiApplication>
#include <xcb/xcb.h>

#include <utility>

namespace tarvex {

namespace {

constexpr std::uint8_t sentEventBit = 0x80;

bool speaksToXServer() {
    return QGuiApplication::platformName() == QLatin1String("xcb");
}

/// Notices of the pointer's doing are about no window in particular.
bool isAboutTheWindow(std::uint8_t detail) {
    return detail <= XCB_NOTIFY_DETAIL_NONLINEAR_VIRTUAL;
}

bool isGain(const xcb_focus_in_event_t& event) {
    return event.mode != XCB_NOTIFY_MODE_GRAB && isAboutTheWindow(event.detail);
}

/// A grab by another client, and the end of one, leave the focus where it is.
bool isLoss(const xcb_focus_out_event_t& event) {
    return (event.mode == XCB_NOTIFY_MODE_NORMAL || event.mode == XCB_NOTIFY_MODE_WHILE_GRABBED) &&
           isAboutTheWindow(event.detail) && event.detail != XCB_NOTIFY_DETAIL_INFERIOR;
}

QWindow* findWindow(xcb_window_t id) {
    for (QWindow* window : QGuiApplication::allWindows()) {
        if (window->handle() != nullptr && window->winId() == id) {
            return window;
        }
    }
    return nullptr;
}

} // namespace

QtKeyboardGrab::QtKeyboardGrab(std::function<void()> focusLost) : focusLost_(std::move(focusLost)) {}

QtKeyboardGrab::~QtKeyboardGrab() {
    setEnabled(false);
}

void QtKeyboardGrab::setEnabled(bool isEnabled) {
    if (isEnabled == isEnabled_ || QCoreApplication::instance() == nullptr || !speaksToXServer()) {
        return;
    }
    isEnabled_ = isEnabled;
    if (isEnabled) {
        QCoreApplication::instance()->installNativeEventFilter(this);
        retry();
    } else {
        QCoreApplication::instance()->removeNativeEventFilter(this);
        letGo();
    }
}

void QtKeyboardGrab::retry() {
    QWindow* const focused = QGuiApplication::focusWindow();
    if (isEnabled_ && focused != nullptr && focused != holder_) {
        take(focused);
    }
}

bool QtKeyboardGrab::nativeEventFilter(const QByteArray& /*eventType*/, void* message, qintptr* /*result*/) {
    const auto& event = *static_cast<const xcb_focus_in_event_t*>(message);
    const int type = event.response_type & ~sentEventBit;
    if (type == XCB_FOCUS_IN && isGain(event)) {
        if (QWindow* const window = findWindow(event.event)) {
            take(window);
        }
    } else if (type == XCB_FOCUS_OUT && isLoss(event) && findWindow(event.event) != nullptr) {
        if (holder_ && holder_ == findWindow(event.event)) {
            letGo();
        }
        focusLost_();
    }
    return false;
}

void QtKeyboardGrab::take(QWindow* window) {
    // The server ends a grab by itself when its window is hidden, so a grab that was thought to hold is asked
    // for once more.
    holder_ = window->isVisible() && window->setKeyboardGrabEnabled(true) ? window : nullptr;
}

void QtKeyboardGrab::letGo() {
    if (holder_ && holder_->handle() != nullptr) {
        holder_->setKeyboardGrabEnabled(false);
        // The toolkit would send it with the next request, and the desktop wait for its keys until then.
        if (xcb_connection_t* const connection = toolkitConnection()) {
            xcb_flush(connection);
        }
    }
    holder_ = nullptr;
}

} // namespace tarvex
