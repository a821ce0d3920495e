#include "Platform/Linux/X11/XWindowPlacer.h"

#include "Platform/Linux/X11/XSizeLimits.h"

#include <algorithm>
#include <utility>

namespace tarvex {

namespace {

using Clock = std::chrono::steady_clock;

bool isExactly(const XWindowTarget& target, const PixelRect& frame) {
    return target.x == frame.x && target.y == frame.y && target.width == frame.width &&
           target.height == frame.height;
}

/// A window manager that tiles a window says so in none of its states. It makes it larger in one direction at
/// least, whereas one that is dragged out of a tile shrinks.
bool isTiledSince(const XWindowRecord& first, const XWindowGeometry& now) {
    const PixelRect frame = now.visibleFrame();
    return !first.states.any() && !now.states.any() &&
           (frame.width > first.frame.width || frame.height > first.frame.height);
}

/// The place within a range that is nearest to the present one.
int nearest(int present, int length, int rangeStart, int rangeLength) {
    return std::clamp(present, rangeStart, std::max(rangeStart, rangeStart + rangeLength - length));
}

} // namespace

XWindowPlacer::XWindowPlacer(XConnection& connection, XEventPump& pump, DesktopLayoutProvider& layout,
                             SettlingTimes times, MainLoop* mainLoop)
    : connection_(&connection),
      layout_(&layout),
      times_(times),
      mainLoop_(mainLoop),
      steering_(connection),
      propertyChanges_(pump.subscribe(
          XCB_PROPERTY_NOTIFY, [this](const xcb_generic_event_t& event) { handlePropertyChange(event); })),
      configurations_(pump.subscribe(
          XCB_CONFIGURE_NOTIFY, [this](const xcb_generic_event_t& event) { handleConfiguration(event); })),
      ends_(
          pump.subscribe(XCB_DESTROY_NOTIFY, [this](const xcb_generic_event_t& event) { handleEnd(event); })),
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
    if (pending_ && pending_->window == window) {
        return 0;
    }
    sendPending();
    stopSettling();
    auto watch = std::make_unique<XWindowWatch>(*connection_, window);
    XWindowSituation situation = steering_.read(window);
    watch->keepEarlierEvents();
    const std::int32_t error = situation.geometry.error;
    if (error == 0) {
        pending_ = std::make_unique<Pending>(Pending{window, std::move(watch), situation, atFirst, {}, {}});
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
    std::unique_ptr<Settling> settling = send(*pending);
    connection_->flush();
    if (!settling->situation.hasManager) {
        return;
    }
    settling_ = std::move(settling);
    if (mainLoop_ != nullptr) {
        settling_->look =
            mainLoop_->scheduleOnce(std::chrono::duration<double>(times_.silence).count(), [this] {
                settling_->isSuspect = true;
                settle();
                connection_->flush();
            });
    }
}

std::unique_ptr<XWindowPlacer::Settling> XWindowPlacer::send(Pending& pending) {
    auto settling = std::make_unique<Settling>();
    settling->window = pending.window;
    settling->watch = std::move(pending.watch);
    settling->situation = pending.situation;
    settling->target = targetOf(pending);
    settling->start = Clock::now();

    const XWindowSituation& now = settling->situation;
    const std::optional<XWindowRecord>& first = pending.atFirst;
    steering_.cancelInteractiveMove(pending.window, now);
    if (first && first->states.any() && isExactly(settling->target, first->frame)) {
        settling->earlier = first;
        putBack(pending.window, now, *first);
        return settling;
    }
    settling->isRestored = now.geometry.states.isMaximized();
    steering_.restore(pending.window, now);
    if (first && isTiledSince(*first, now.geometry)) {
        settling->isUntiled = true;
        steering_.untile(pending.window, now);
    }
    steering_.place(pending.window, now, settling->target);
    return settling;
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

void XWindowPlacer::putBack(xcb_window_t window, const XWindowSituation& now, const XWindowRecord& earlier) {
    const XSizeStates& states = now.geometry.states;
    const PixelRect frame = now.geometry.visibleFrame();
    steering_.removeStates(window, now, states.without(earlier.states));
    if (frame != earlier.frame) {
        // A size that a state gave is left to the state: the window manager remembers the one that the window
        // had before. The window need only be on the right screen.
        XWindowTarget target{earlier.frame.x, earlier.frame.y, earlier.frame.width, earlier.frame.height};
        if (earlier.states.maximizedHorizontally || earlier.states.fullScreen) {
            target.x = nearest(frame.x, frame.width, earlier.frame.x, earlier.frame.width);
            target.width = std::nullopt;
        }
        if (earlier.states.maximizedVertically || earlier.states.fullScreen) {
            target.y = nearest(frame.y, frame.height, earlier.frame.y, earlier.frame.height);
            target.height = std::nullopt;
        }
        if (earlier.states.shaded) {
            target.height = std::nullopt;
        }
        steering_.place(window, now, target);
    }
    steering_.addStates(window, now, earlier.states.without(states));
}

bool XWindowPlacer::isSettling(xcb_window_t window, std::chrono::milliseconds forAtMost) {
    if (!settling_ || settling_->window != window) {
        return false;
    }
    const auto age = Clock::now() - settling_->start;
    if (age > times_.borders) {
        settling_.reset();
    }
    return settling_ && age <= forAtMost;
}

void XWindowPlacer::handlePropertyChange(const xcb_generic_event_t& event) {
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    const bool isState = steering_.isStateProperty(change.atom);
    if (isSettling(change.window, isState ? times_.state : times_.borders)) {
        settling_->isChanged |= isState || steering_.isBorderProperty(change.atom);
    }
}

void XWindowPlacer::handleConfiguration(const xcb_generic_event_t& event) {
    const auto& change = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
    if (!isSettling(change.window, times_.state)) {
        return;
    }
    // A window manager that lags behind still moves the window as it was. A third size is that of a tile, or
    // the one that a restored window had before.
    const XWindowGeometry& before = settling_->situation.geometry;
    if (before.states.any()) {
        return;
    }
    const XWindowTarget& target = settling_->target;
    const bool isAsBefore = change.width == before.client.width && change.height == before.client.height;
    const bool isAsAsked = target.width && change.width == before.clientWidthFor(*target.width) &&
                           target.height && change.height == before.clientHeightFor(*target.height);
    if (!isAsBefore && !isAsAsked) {
        settling_->isChanged = true;
        settling_->isSuspect = true;
    }
}

void XWindowPlacer::handleEnd(const xcb_generic_event_t& event) {
    // The server may give its number to the next window soon.
    const auto& end = reinterpret_cast<const xcb_destroy_notify_event_t&>(event);
    if (settling_ && end.window == settling_->window) {
        settling_.reset();
    }
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
    const bool isRecent = Clock::now() - settling_->start <= times_.state;
    if (settling_->earlier) {
        if (isRecent) {
            putBack(settling_->window, now, *settling_->earlier);
        }
        return;
    }
    const XWindowGeometry& assumed = settling_->situation.geometry;
    const bool isFreedAgain = isRecent && prepareAgain(now);
    if (!isFreedAgain && now.geometry.states.any() && !assumed.states.any()) {
        // Somebody wants it so; that its borders changed with it is no reason to place it.
        settling_.reset();
        return;
    }
    if (isFreedAgain || now.geometry.decoration != assumed.decoration ||
        now.geometry.invisible != assumed.invisible) {
        steering_.place(settling_->window, now, settling_->target);
        settling_->situation = now;
    }
}

bool XWindowPlacer::prepareAgain(const XWindowSituation& now) {
    const XSizeStates& states = now.geometry.states;
    if (settling_->isRestored && states.maximizedVertically && !states.maximizedHorizontally) {
        if (!std::exchange(settling_->isShaken, true)) {
            steering_.shakeLoose(settling_->window, now);
            return true;
        }
        return false;
    }
    // One that was maximised before has been restored, though the window manager may not have come to it yet.
    if (states.isMaximized() && !settling_->situation.geometry.states.isMaximized()) {
        settling_->isRestored = true;
        steering_.restore(settling_->window, now);
        return true;
    }
    if (std::exchange(settling_->isSuspect, false) && !states.any() && !settling_->isUntiled &&
        !hasLanded(now.geometry)) {
        settling_->isUntiled = true;
        steering_.untile(settling_->window, now);
        return true;
    }
    return false;
}

bool XWindowPlacer::hasLanded(const XWindowGeometry& now) {
    const XWindowTarget& target = settling_->target;
    if (!target.x || !target.y || !target.width || !target.height || isExactly(target, now.visibleFrame())) {
        return true;
    }
    const int width = now.clientWidthFor(*target.width);
    const int height = now.clientHeightFor(*target.height);
    const XSizeLimits limits(*connection_, settling_->window);
    if (!limits.explainWidth(now.client.width, width) || !limits.explainHeight(now.client.height, height)) {
        return false;
    }
    // One that cannot be made as small as it should be may have been moved so that all of it can be seen.
    const PixelRect frame = now.visibleFrame();
    return (frame.x == *target.x && frame.y == *target.y) || now.client.width > width ||
           now.client.height > height;
}

} // namespace tarvex
