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
    XWindowSituation situation = steering_.read(window);
    const std::int32_t error = situation.geometry.error;
    if (error == 0) {
        pending_ = std::make_unique<Pending>(Pending{window, std::move(situation), {}, {}});
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
    stopSettling();
    if (pending->situation.hasManager) {
        // Before the window manager can know of it, so that no change goes by unseen.
        startSettling(*pending, target);
    }
    steering_.cancelInteractiveMove(pending->window, pending->situation);
    steering_.restore(pending->window, pending->situation);
    steering_.place(pending->window, pending->situation, target);
    connection_->flush();
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

void XWindowPlacer::startSettling(const Pending& pending, const XWindowTarget& target) {
    selectEvents(pending.window, pending.situation.eventMask | XCB_EVENT_MASK_PROPERTY_CHANGE);
    // Looked at once more in any case: the situation was read before its changes were listened to.
    constexpr bool isChanged = true;
    settling_ = std::make_unique<Settling>(
        Settling{pending.window, pending.situation, target, std::chrono::steady_clock::now(), isChanged});
}

void XWindowPlacer::stopSettling() {
    if (settling_) {
        selectEvents(settling_->window, settling_->situation.eventMask);
        settling_.reset();
    }
}

void XWindowPlacer::handlePropertyChange(const xcb_generic_event_t& event) {
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    if (!settling_ || change.window != settling_->window) {
        return;
    }
    const auto age = std::chrono::steady_clock::now() - settling_->start;
    if (age > times_.borders) {
        stopSettling();
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
    const bool isMaximizedSince = steering_.isMaximized(now) &&
                                  !steering_.isMaximized(settling_->situation) &&
                                  std::chrono::steady_clock::now() - settling_->start <= times_.state;
    const XWindowGeometry& assumed = settling_->situation.geometry;
    if (!isMaximizedSince && now.geometry.decoration == assumed.decoration &&
        now.geometry.invisible == assumed.invisible) {
        return;
    }
    if (isMaximizedSince) {
        steering_.restore(settling_->window, now);
    }
    steering_.place(settling_->window, now, settling_->target);
    // What was listened to before is what is gone back to at the end.
    now.eventMask = settling_->situation.eventMask;
    settling_->situation = std::move(now);
}

void XWindowPlacer::selectEvents(xcb_window_t window, std::uint32_t eventMask) {
    connection_->discard(
        xcb_change_window_attributes_checked(connection_->get(), window, XCB_CW_EVENT_MASK, &eventMask));
}

} // namespace tarvex
