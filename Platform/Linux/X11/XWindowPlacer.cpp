#include "Platform/Linux/X11/XWindowPlacer.h"

#include <utility>

namespace tarvex {

XWindowPlacer::XWindowPlacer(XConnection& connection, XEventPump& pump, DesktopLayoutProvider& layout,
                             SettlingTimes times)
    : connection_(&connection),
      layout_(&layout),
      times_(times),
      steering_(connection),
      propertyChanges_(pump.subscribe(
          XCB_PROPERTY_NOTIFY, [this](const xcb_generic_event_t& event) { handlePropertyChange(event); })),
      turnEnd_(pump.subscribeTurnEnd([this] { handleTurnEnd(); })) {}

std::int32_t XWindowPlacer::setPosition(xcb_window_t window, Point position) {
    const std::int32_t error = prepare(window);
    if (error == 0) {
        pending_->position = position;
        sendIfComplete();
    }
    return error;
}

std::int32_t XWindowPlacer::setSize(xcb_window_t window, Size size) {
    const std::int32_t error = prepare(window);
    if (error == 0) {
        pending_->size = size;
        sendIfComplete();
    }
    return error;
}

std::int32_t XWindowPlacer::prepare(xcb_window_t window) {
    if (pending_ && pending_->window == window) {
        return 0;
    }
    sendPending();
    stopSettling();
    auto watch = std::make_unique<XPropertyWatch>(*connection_, window);
    XWindowSituation situation = steering_.read(window);
    watch->keepEarlierEvents();
    const std::int32_t error = situation.geometry.error;
    if (error == 0) {
        pending_ = std::make_unique<Pending>(Pending{window, std::move(watch), std::move(situation), {}, {}});
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
    const XWindowTarget target = targetOf(*pending);
    steering_.cancelInteractiveMove(pending->window, pending->situation);
    steering_.restore(pending->window, pending->situation);
    steering_.place(pending->window, pending->situation, target);
    connection_->flush();
    if (pending->situation.hasManager) {
        settling_ = std::make_unique<Settling>(Settling{pending->window, std::move(pending->watch),
                                                        std::move(pending->situation), target,
                                                        std::chrono::steady_clock::now()});
    }
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

void XWindowPlacer::handlePropertyChange(const xcb_generic_event_t& event) {
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    if (!settling_ || change.window != settling_->window) {
        return;
    }
    const auto age = std::chrono::steady_clock::now() - settling_->start;
    if (age > times_.borders) {
        settling_.reset();
        return;
    }
    settling_->isChanged |= steering_.isBorderProperty(change.atom) ||
                            (steering_.isStateProperty(change.atom) && age <= times_.state);
}

void XWindowPlacer::handleTurnEnd() {
    sendPending();
    if (settling_ && std::exchange(settling_->isChanged, false)) {
        settle();
    }
}

void XWindowPlacer::settle() {
    XWindowSituation now = steering_.read(settling_->window);
    if (now.geometry.error != 0) {
        settling_.reset();
        return;
    }
    // One that was maximised before has been restored, though the window manager may not have come to it yet.
    const XWindowSituation& before = settling_->situation;
    const bool isMaximizedSince = steering_.isMaximized(now) && !steering_.isMaximized(before) &&
                                  std::chrono::steady_clock::now() - settling_->start <= times_.state;
    if (!isMaximizedSince && steering_.isSizedByManager(now) && !steering_.isSizedByManager(before)) {
        // Somebody wants it so; that its borders changed with it is no reason to place it.
        settling_.reset();
        return;
    }
    const XWindowGeometry& assumed = before.geometry;
    if (!isMaximizedSince && now.geometry.decoration == assumed.decoration &&
        now.geometry.invisible == assumed.invisible) {
        return;
    }
    if (isMaximizedSince) {
        steering_.restore(settling_->window, now);
    }
    steering_.place(settling_->window, now, settling_->target);
    settling_->situation = std::move(now);
}

} // namespace tarvex
