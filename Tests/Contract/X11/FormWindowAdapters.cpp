#include "Tests/Contract/X11/FormWindowAdapters.h"

#include "Tests/Contract/X11/PumpedConnection.h"

#include <QGuiApplication>

#include <stdexcept>

namespace tarvex::contract {

namespace {

std::unique_ptr<test::WindowManager> startManager(const test::XServer& server,
                                                  std::optional<test::WindowManagerKind> kind) {
    return kind ? std::make_unique<test::WindowManager>(server, *kind) : nullptr;
}

} // namespace

XFormWindowDesktop::XFormWindowDesktop(std::optional<test::WindowManagerKind> kind,
                                       const std::string& scaleFactor,
                                       const std::function<void(const std::string&)>& prepare)
    : windowManager([&] {
          prepare(server.displayName());
          return startManager(server, kind);
      }()),
      scale_("QT_SCALE_FACTOR", scaleFactor),
      connection_(openOrThrow(server.displayName())),
      pump_(*connection_),
      monitors_(*connection_, pump_),
      struts_(*connection_, pump_),
      screens_(*connection_, monitors_, struts_),
      xPointer_(*connection_, monitors_),
      windows({*connection_, pump_, monitors_, screens_, xPointer_, fonts}) {
    qGuiApp->installNativeEventFilter(&marks_);
    static_cast<void>(markTarget_.winId());
    settle();
}

bool XFormWindowDesktop::Marks::nativeEventFilter(const QByteArray& /*type*/, void* message,
                                                  qintptr* /*result*/) {
    const auto& event = *static_cast<const xcb_generic_event_t*>(message);
    if ((event.response_type & 0x7F) != XCB_CLIENT_MESSAGE ||
        reinterpret_cast<const xcb_client_message_event_t&>(event).type != atom_) {
        return false;
    }
    ++seen;
    return true;
}

void XFormWindowDesktop::settle() {
    // What one of them does may be news to another, which may answer that, and so on; no exchange here has
    // more turns than these.
    for (int turn = 0; turn < 3; ++turn) {
        awaitToolkit();
        awaitAdapter();
        if (windowManager) {
            windowManager->barrier();
        }
    }
    awaitToolkit();
}

void XFormWindowDesktop::awaitToolkit() {
    application_.settle();
    const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_flush(x11->connection());
    xcb_client_message_event_t mark{};
    mark.response_type = XCB_CLIENT_MESSAGE;
    mark.format = 32;
    mark.window = static_cast<xcb_window_t>(markTarget_.winId());
    mark.type = marks_.atom();
    // Sent to the toolkit itself, which made the window.
    xcb_send_event(client.connection(), 0, mark.window, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&mark));
    client.sync();
    const int before = marks_.seen;
    if (!application_.waitUntil([&] { return marks_.seen > before; })) {
        throw std::runtime_error("the toolkit does not see its events");
    }
    application_.settle();
}

void XFormWindowDesktop::awaitAdapter() {
    const auto reply = connection_->take(xcb_get_input_focus_reply, xcb_get_input_focus(connection_->get()));
    pump_.processPending();
    pump_.processQueued();
    static_cast<void>(connection_->take(xcb_get_input_focus_reply, xcb_get_input_focus(connection_->get())));
}

QWidget* XFormWindowDesktop::find(const std::string& title) const {
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        if (widget->windowTitle().toStdString() == title) {
            return widget;
        }
    }
    return nullptr;
}

QWidget& XFormWindowDesktop::widget(const std::string& title) const {
    QWidget* const found = find(title);
    if (found == nullptr) {
        throw std::runtime_error("no window " + title);
    }
    return *found;
}

QWidget* XFormWindowDesktop::control(const std::string& title, const std::string& id) const {
    return widget(title).findChild<QWidget*>(QString::fromStdString(id));
}

xcb_window_t XFormWindowDesktop::native(const std::string& title) const {
    return static_cast<xcb_window_t>(widget(title).winId());
}

bool XFormWindowDesktop::hasKeyboard(const std::string& title) {
    const test::Owned<xcb_get_input_focus_reply_t> focus(
        xcb_get_input_focus_reply(client.connection(), xcb_get_input_focus(client.connection()), nullptr));
    const QWidget* const window = find(title);
    return window != nullptr && focus && focus->focus == native(title) &&
           QApplication::activeWindow() == window;
}

test::PixelPoint XFormWindowDesktop::pixelOf(const std::string& title, const QWidget& control,
                                             const QPoint& point) {
    const QWidget& window = widget(title);
    const auto origin = client.geometryInRoot(native(title));
    if (!origin) {
        throw std::runtime_error("the window has no place");
    }
    const QPointF inside = QPointF(control.mapTo(&window, point)) * window.devicePixelRatioF();
    return {origin->x + static_cast<int>(inside.x()), origin->y + static_cast<int>(inside.y())};
}

test::PixelPoint XFormWindowDesktop::pixelIn(const std::string& title, const std::string& id,
                                             double fractionX, double fractionY) {
    const QWidget* const inside = control(title, id);
    if (inside == nullptr) {
        throw std::runtime_error("no control " + id);
    }
    return pixelOf(
        title, *inside,
        {static_cast<int>(inside->width() * fractionX), static_cast<int>(inside->height() * fractionY)});
}

void XFormWindowDesktop::click(test::PixelPoint point) {
    pointer.moveTo(point);
    settle();
    pointer.press();
    pointer.release();
    settle();
}

test::TestWindow& XFormWindowDesktop::other() {
    if (!other_) {
        test::TestWindowOptions options;
        options.title = "Another program";
        options.geometry = {20, 40, 200, 150};
        other_ = std::make_unique<test::TestWindow>(server.displayName(), options);
        settle();
    }
    return *other_;
}

void XFormWindowDesktop::useOther() {
    const auto place = other().managed().clientGeometry();
    click(place.value_or(test::PixelRect{}).center());
    client.waitUntil(
        [&] {
            settle();
            const test::Owned<xcb_get_input_focus_reply_t> focus(xcb_get_input_focus_reply(
                client.connection(), xcb_get_input_focus(client.connection()), nullptr));
            return focus && focus->focus == other_->id();
        },
        "the other program has the keyboard");
}

} // namespace tarvex::contract
