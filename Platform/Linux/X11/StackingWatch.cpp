#include "Platform/Linux/X11/StackingWatch.h"

#include <utility>

namespace tarvex {

StackingWatch::StackingWatch(XConnection& connection, XEventPump& pump, MainLoop& mainLoop,
                             std::function<void()> stackingMayHaveChanged)
    : connection_(&connection),
      mainLoop_(&mainLoop),
      stackingMayHaveChanged_(std::move(stackingMayHaveChanged)),
      own_(connection.get()),
      subscriptions_{pump.subscribe(XCB_MAP_NOTIFY,
                                    [this](const xcb_generic_event_t& event) {
                                        const auto& map =
                                            reinterpret_cast<const xcb_map_notify_event_t&>(event);
                                        note(map.event, map.window, std::nullopt);
                                    }),
                     pump.subscribe(XCB_CONFIGURE_NOTIFY, [this](const xcb_generic_event_t& event) {
                         const auto& configure = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
                         note(configure.event, configure.window,
                              PixelRect{configure.x, configure.y, configure.width, configure.height});
                     })} {}

void StackingWatch::start() {
    if (!selection_ && !pauseTimer_ && !hasGivenIn_) {
        selection_.emplace(*connection_, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    }
}

void StackingWatch::stop() {
    selection_.reset();
    pauseTimer_.reset();
    known_.clear();
    hasGivenIn_ = false;
}

void StackingWatch::note(xcb_window_t parent, xcb_window_t window, const std::optional<PixelRect>& place) {
    // Events that were on their way when the pause began come later still.
    if (!selection_ || parent != connection_->root() || own_.contains(window)) {
        return;
    }
    selection_.reset();
    hasGivenIn_ = place && insists(window, *place);
    if (hasGivenIn_) {
        return;
    }
    pauseTimer_ = mainLoop_->scheduleOnce(pause, [this] { resume(); });
    stackingMayHaveChanged_();
}

bool StackingWatch::insists(xcb_window_t window, const PixelRect& place) {
    Known& known = known_[window];
    known.restackings = known.place == place ? known.restackings + 1 : 0;
    known.place = place;
    return known.restackings >= maxRestackings;
}

void StackingWatch::resume() {
    StackingWatch& watch = *this;
    // This ends the action's own life.
    watch.pauseTimer_.reset();
    watch.start();
    // What happened in between was told by nobody.
    watch.stackingMayHaveChanged_();
}

} // namespace tarvex
