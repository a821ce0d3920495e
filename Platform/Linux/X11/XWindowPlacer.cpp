#include "Platform/Linux/X11/XWindowPlacer.h"

#include <utility>

namespace tarvex {

XWindowPlacer::XWindowPlacer(XConnection& connection, XEventPump& pump, DesktopLayoutProvider& layout,
                             SettlingTimes times, MainLoop* mainLoop)
    : connection_(&connection),
      layout_(&layout),
      steering_(connection),
      settling_(connection, pump, steering_, times, mainLoop),
      turnEnd_(pump.subscribeTurnEnd([this] { handleTurnEnd(); })) {}

std::int32_t XWindowPlacer::setPosition(xcb_window_t window, Point position,
                                        const std::optional<XWindowRecord>& atFirst) {
    const std::int32_t error = prepare(window, atFirst);
    if (error == 0) {
        pending_->position = position;
        sendIfComplete();
    }
    return error;
}

std::int32_t XWindowPlacer::setSize(xcb_window_t window, Size size,
                                    const std::optional<XWindowRecord>& atFirst) {
    const std::int32_t error = prepare(window, atFirst);
    if (error == 0) {
        pending_->size = size;
        sendIfComplete();
    }
    return error;
}

std::int32_t XWindowPlacer::prepare(xcb_window_t window, const std::optional<XWindowRecord>& atFirst) {
    if (pending_ && pending_->request.window == window) {
        return 0;
    }
    sendPending();
    stopSettling();
    XWindowRequest request;
    request.window = window;
    request.watch = std::make_unique<XWindowWatch>(*connection_, window);
    request.situation = steering_.read(window);
    request.watch->keepEarlierEvents();
    request.atFirst = atFirst;
    const std::int32_t error = request.situation.geometry.error;
    if (error == 0) {
        pending_ = std::make_unique<Pending>(Pending{std::move(request), {}, {}});
    }
    return error;
}

void XWindowPlacer::sendIfComplete() {
    if (pending_->position && pending_->size) {
        sendPending();
    }
}

void XWindowPlacer::sendPending() {
    if (!pending_) {
        return;
    }
    const std::unique_ptr<Pending> pending = std::move(pending_);
    pending->request.target = targetOf(*pending);
    settling_.start(std::move(pending->request));
}

XWindowTarget XWindowPlacer::targetOf(const Pending& pending) {
    const Point position = pending.position.value_or(Point{});
    const Size size = pending.size.value_or(Size{});
    const PixelRect pixels =
        layout_->layout().pixelsOfAccessibilityRect({position.x, position.y, size.width, size.height});
    XWindowTarget target;
    if (pending.position) {
        target.x = pixels.x;
        target.y = pixels.y;
    }
    if (pending.size) {
        target.width = pixels.width;
        target.height = pixels.height;
    }
    return target;
}

void XWindowPlacer::handleTurnEnd() {
    sendPending();
    settling_.handleTurnEnd();
}

} // namespace tarvex
