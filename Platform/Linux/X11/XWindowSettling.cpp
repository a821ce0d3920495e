#include "Platform/Linux/X11/XWindowSettling.h"

#include "Platform/Linux/X11/XTileAreas.h"

#include <algorithm>
#include <utility>

namespace tarvex {

namespace {

using Clock = std::chrono::steady_clock;

/// The place within a range that is nearest to the present one.
int nearest(int present, int length, int rangeStart, int rangeLength) {
    return std::clamp(present, rangeStart, std::max(rangeStart, rangeStart + rangeLength - length));
}

} // namespace

XWindowSettling::XWindowSettling(XConnection& connection, XEventPump& pump, XWindowSteering& steering,
                                 Times times, MainLoop* mainLoop)
    : connection_(&connection),
      times_(times),
      mainLoop_(mainLoop),
      steering_(&steering),
      echo_(connection, pump, [this] { handleAnswer(); }),
      propertyChanges_(pump.subscribe(
          XCB_PROPERTY_NOTIFY, [this](const xcb_generic_event_t& event) { handlePropertyChange(event); })),
      configurations_(pump.subscribe(
          XCB_CONFIGURE_NOTIFY, [this](const xcb_generic_event_t& event) { handleConfiguration(event); })),
      ends_(pump.subscribe(XCB_DESTROY_NOTIFY,
                           [this](const xcb_generic_event_t& event) { handleEnd(event); })) {}

void XWindowSettling::start(XWindowRequest request) {
    current_ = std::make_unique<Current>();
    current_->placement = XPlacement(request.target, request.situation.limits);
    current_->request = std::move(request);
    current_->start = Clock::now();
    send();
    // The window is not to wait for what comes after it.
    connection_->flush();
    if (!current_->request.situation.hasManager) {
        stop();
        return;
    }
    awaitAnswer(current_->request.situation);
    connection_->flush();
}

void XWindowSettling::stop() {
    current_.reset();
    echo_.forget();
}

void XWindowSettling::send() {
    const XWindowRequest& request = current_->request;
    const XWindowSituation& now = request.situation;
    const std::optional<XWindowRecord>& first = request.atFirst;
    current_->placement.noteRequest(now.geometry);
    steering_->cancelInteractiveMove(request.window, now);
    if (first && first->states.any() && isExactly(request.target, first->frame)) {
        current_->earlier = first;
        putBack(now, *first);
        return;
    }
    current_->isRestored = now.geometry.states.isMaximized();
    steering_->restore(request.window, now);
    if (first && isTiledSince(*first)) {
        untile(now);
    }
    place(now);
}

void XWindowSettling::place(const XWindowSituation& now) {
    const XWindowTarget target = current_->placement.requestFor(now.geometry);
    current_->placement.noteRequest(now.geometry);
    steering_->place(current_->request.window, now, target);
}

void XWindowSettling::putBack(const XWindowSituation& now, const XWindowRecord& earlier) {
    const xcb_window_t window = current_->request.window;
    const XSizeStates& states = now.geometry.states;
    const PixelRect frame = now.geometry.visibleFrame();
    steering_->removeStates(window, now, states.without(earlier.states));
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
        steering_->place(window, now, target);
    }
    steering_->addStates(window, now, earlier.states.without(states));
}

void XWindowSettling::awaitAnswer(const XWindowSituation& now) {
    if (!current_->isLookedAt) {
        current_->look.reset();
        echo_.ask(now.managerTellsBorders);
    }
}

void XWindowSettling::handleAnswer() {
    if (!std::exchange(current_->isAnswered, true)) {
        current_->start = Clock::now();
    }
    // What a window manager leaves for when it has nothing else to do, and the client's answer, may come yet.
    if (mainLoop_ != nullptr) {
        current_->look =
            mainLoop_->scheduleOnce(std::chrono::duration<double>(times_.silence).count(), [this] {
                current_->isLookedAt = true;
                look();
                connection_->flush();
            });
    }
}

bool XWindowSettling::isSettling(xcb_window_t window, std::chrono::milliseconds forAtMost) {
    if (!current_ || current_->request.window != window) {
        return false;
    }
    const auto age = Clock::now() - current_->start;
    if (age > times_.borders) {
        stop();
    }
    return current_ && (!current_->isAnswered || age <= forAtMost);
}

bool XWindowSettling::isRecent() const {
    return !current_->isAnswered || Clock::now() - current_->start <= times_.state;
}

void XWindowSettling::handlePropertyChange(const xcb_generic_event_t& event) {
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    const bool isState = steering_->isStateProperty(change.atom);
    if (isSettling(change.window, isState ? times_.state : times_.borders)) {
        current_->isChanged |= isState || steering_->isBorderProperty(change.atom);
    }
}

void XWindowSettling::handleConfiguration(const xcb_generic_event_t& event) {
    const auto& change = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
    // A window manager that lags behind still moves the window as it was, and gives one that is restored the
    // size that it had before.
    if (isSettling(change.window, times_.state) && !current_->placement.noteConfiguration(change) &&
        !current_->placement.assumed().states.any()) {
        current_->isChanged = true;
        current_->isSuspect = true;
    }
}

void XWindowSettling::handleEnd(const xcb_generic_event_t& event) {
    // The server may give its number to the next window soon.
    const auto& end = reinterpret_cast<const xcb_destroy_notify_event_t&>(event);
    if (current_ && end.window == current_->request.window) {
        stop();
    }
}

void XWindowSettling::handleTurnEnd() {
    if (current_ && std::exchange(current_->isChanged, false)) {
        settle();
    }
}

std::optional<XWindowSituation> XWindowSettling::readToPlace() {
    XWindowSituation now = steering_->read(current_->request.window);
    // Whoever holds the button down again since has perhaps taken the window: from then on it is his.
    const bool isTakenAgain = now.isButtonDown && !current_->request.situation.isButtonDown;
    if (now.geometry.error != 0 || isTakenAgain) {
        stop();
        return std::nullopt;
    }
    if (const std::optional<XWindowRecord>& earlier = current_->earlier; earlier) {
        if (isRecent()) {
            putBack(now, *earlier);
        }
        return std::nullopt;
    }
    return now;
}

void XWindowSettling::settle() {
    const std::optional<XWindowSituation> now = readToPlace();
    if (!now) {
        return;
    }
    const XWindowGeometry assumed = current_->placement.assumed();
    bool isDue = isRecent() && prepareAgain(*now);
    if (!isDue && now->geometry.states.any() && !assumed.states.any()) {
        // Somebody wants it so; that its borders changed with it is no reason to place it.
        stop();
        return;
    }
    if (!isDue && current_->placement.outcomeFor(now->geometry) == XPlacement::Outcome::clientInCorner) {
        current_->placement.aimWithClient();
        isDue = true;
    }
    if (isDue || now->geometry.decoration != assumed.decoration ||
        now->geometry.invisible != assumed.invisible) {
        place(*now);
        awaitAnswer(*now);
    }
}

void XWindowSettling::look() {
    const std::optional<XWindowSituation> now = readToPlace();
    if (!now) {
        return;
    }
    if (isRecent() && prepareAgain(*now)) {
        place(*now);
        return;
    }
    if (now->geometry.states.any() || current_->isUntiled) {
        return;
    }
    const XPlacement::Outcome outcome = current_->placement.outcomeFor(now->geometry);
    if (outcome == XPlacement::Outcome::kept || outcome == XPlacement::Outcome::astray) {
        steering_->cancelStuckMove(current_->request.window, *now);
    }
    switch (outcome) {
    case XPlacement::Outcome::landed:
        return;
    case XPlacement::Outcome::refused:
        if (!isTile(now->geometry.visibleFrame())) {
            return;
        }
        untile(*now);
        break;
    case XPlacement::Outcome::kept:
        untile(*now);
        break;
    case XPlacement::Outcome::clientInCorner:
        current_->placement.aimWithClient();
        break;
    case XPlacement::Outcome::astray:
        if (isTile(now->geometry.visibleFrame())) {
            untile(*now);
        } else if (!now->managerTellsBorders) {
            // kwin, alone among those that say nothing of borders, has tiles of any size, which it keeps
            // windows in that are dragged with Shift. One that stays there a second time is in such a tile.
            current_->isLookedAt = std::exchange(current_->isAskedTwice, true);
        }
        break;
    }
    place(*now);
    awaitAnswer(*now);
}

void XWindowSettling::untile(const XWindowSituation& now) {
    current_->isUntiled = true;
    steering_->untile(current_->request.window, now);
}

bool XWindowSettling::prepareAgain(const XWindowSituation& now) {
    const xcb_window_t window = current_->request.window;
    const XSizeStates& states = now.geometry.states;
    if (current_->isRestored && states.maximizedVertically && !states.maximizedHorizontally) {
        if (!std::exchange(current_->isShaken, true)) {
            steering_->shakeLoose(window, now);
            return true;
        }
        return false;
    }
    // One that was maximised before has been restored, though the window manager may not have come to it yet.
    if (states.isMaximized() && !current_->placement.assumed().states.isMaximized()) {
        current_->isRestored = true;
        steering_->restore(window, now);
        return true;
    }
    const bool isSuspect = std::exchange(current_->isSuspect, false) && !current_->isUntiled && !states.any();
    if (isSuspect && current_->placement.outcomeFor(now.geometry) != XPlacement::Outcome::landed &&
        isTile(now.geometry.visibleFrame())) {
        untile(now);
        return true;
    }
    return false;
}

bool XWindowSettling::isTile(const PixelRect& frame) const {
    const XSizeLimits::Extent steps = current_->request.situation.limits.steps();
    return XTileAreas(*connection_).isTile(frame, {steps.width, steps.height});
}

// A window manager that tiles a window says so in none of its states.
bool XWindowSettling::isTiledSince(const XWindowRecord& first) const {
    const XWindowGeometry& now = current_->request.situation.geometry;
    const PixelRect frame = now.visibleFrame();
    const bool isOfItsSize = frame.width == first.frame.width && frame.height == first.frame.height;
    return !first.states.any() && !now.states.any() && !isOfItsSize && isTile(frame);
}

} // namespace tarvex
