#include "Platform/Linux/X11/KeyboardKeeper.h"

#include "Platform/Linux/X11/OverlayParking.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <utility>

namespace tarvex {

namespace {

/// More than these within the period are a struggle with somebody who takes the keyboard each time.
constexpr std::size_t maxRetakes = 8;
constexpr std::chrono::seconds retakePeriod{1};

/// What the notices about children of the root window have in common.
struct ChildNotice {
    std::uint8_t responseType;
    std::uint8_t padding;
    std::uint16_t sequence;
    xcb_window_t parent;
    xcb_window_t child;
};

} // namespace

KeyboardKeeper::KeyboardKeeper(XConnection& connection, XEventPump& pump,
                               std::vector<XClientResources> ownWindows)
    : connection_(&connection),
      ownWindows_(std::move(ownWindows)),
      loan_(connection),
      presses_(connection, pump, [this] { isUserElsewhere_ = true; }) {
    for (const std::uint8_t type : std::array<std::uint8_t, 2>{XCB_FOCUS_IN, XCB_FOCUS_OUT}) {
        subscriptions_.push_back(pump.subscribe(type, [this](const xcb_generic_event_t& event) {
            handleFocus(reinterpret_cast<const xcb_focus_in_event_t&>(event));
        }));
    }
    for (const std::uint8_t type :
         std::array<std::uint8_t, 3>{XCB_CONFIGURE_NOTIFY, XCB_UNMAP_NOTIFY, XCB_DESTROY_NOTIFY}) {
        subscriptions_.push_back(
            pump.subscribe(type, [this](const xcb_generic_event_t& event) { noteStacking(event); }));
    }
}

void KeyboardKeeper::take(xcb_window_t window) {
    window_ = window;
    loan_.give(window);
    // The notice of it comes later; until then another native window may have to take it over.
    holder_ = Holder::window;
    isLost_ = false;
    front_ = XCB_WINDOW_NONE;
}

void KeyboardKeeper::replace(xcb_window_t window) {
    window_ = window;
    if (holder_ == Holder::window) {
        take(window);
    } else if (holder_ == Holder::ownWindow) {
        lieBehind();
    }
}

bool KeyboardKeeper::notePress() {
    isUserElsewhere_ = false;
    // A rival who does not let go must not make the mouse useless.
    const bool counts = holder_ == Holder::window || holder_ == Holder::rival;
    if (holder_ != Holder::window) {
        comeBack();
    }
    return counts;
}

void KeyboardKeeper::noteEntry() {
    isUserElsewhere_ = false;
    if (holder_ == Holder::window) {
        return;
    }
    const std::optional<xcb_window_t> holder = loan_.holder();
    const bool isInUse = holder_ == Holder::ownWindow && holder && isOwn(*holder);
    if (!isInUse && mayRetake()) {
        comeBack();
    }
}

void KeyboardKeeper::endTurn() {
    if (std::exchange(hasFrontGone_, false) && holder_ == Holder::ownWindow) {
        // The press that closed it was no press for whoever gets the keyboard now.
        isUserElsewhere_ = false;
        comeBack();
    }
    if (std::exchange(isLost_, false)) {
        resolveLoss();
    }
    if (std::exchange(hasFrontMoved_, false) && holder_ == Holder::ownWindow) {
        lieBehind();
    }
}

void KeyboardKeeper::giveBack() {
    loan_.giveBack(window_);
}

void KeyboardKeeper::handleFocus(const xcb_focus_in_event_t& event) {
    // A grab of the keyboard passes; the focus stays.
    if (event.event != window_ || event.mode == XCB_NOTIFY_MODE_GRAB ||
        event.mode == XCB_NOTIFY_MODE_UNGRAB || event.detail == XCB_NOTIFY_DETAIL_POINTER) {
        return;
    }
    isLost_ = (event.response_type & 0x7F) == XCB_FOCUS_OUT;
    if (!isLost_) {
        holder_ = Holder::window;
    }
}

void KeyboardKeeper::noteStacking(const xcb_generic_event_t& event) {
    const auto& notice = reinterpret_cast<const ChildNotice&>(event);
    if (front_ == XCB_WINDOW_NONE || notice.parent != connection_->root() || notice.child != front_) {
        return;
    }
    if ((notice.responseType & 0x7F) == XCB_CONFIGURE_NOTIFY) {
        hasFrontMoved_ = true;
    } else {
        hasFrontGone_ = true;
    }
}

void KeyboardKeeper::resolveLoss() {
    const std::optional<xcb_window_t> holder = loan_.holder();
    if (!holder || *holder == window_) {
        holder_ = Holder::window;
    } else if (isOwn(*holder)) {
        stepBehind(*holder);
    } else if (isUserElsewhere_) {
        holder_ = Holder::choice;
    } else if (mayRetake()) {
        loan_.borrowFrom(*holder);
        take(window_);
    } else {
        holder_ = Holder::rival;
    }
}

void KeyboardKeeper::comeBack() {
    const std::optional<xcb_window_t> holder = loan_.holder();
    if (holder && *holder != window_) {
        loan_.borrowFrom(*holder);
    }
    raiseToTop(*connection_, window_);
    take(window_);
}

void KeyboardKeeper::stepBehind(xcb_window_t ownWindow) {
    holder_ = Holder::ownWindow;
    front_ = findTopLevel(ownWindow);
    lieBehind();
}

void KeyboardKeeper::lieBehind() {
    restackBeside(*connection_, window_, front_, XCB_STACK_MODE_BELOW);
}

bool KeyboardKeeper::isOwn(xcb_window_t window) const {
    return std::any_of(ownWindows_.begin(), ownWindows_.end(),
                       [&](const XClientResources& own) { return own.contains(window); });
}

xcb_window_t KeyboardKeeper::findTopLevel(xcb_window_t window) {
    for (;;) {
        const auto tree = connection_->take(xcb_query_tree_reply, xcb_query_tree(connection_->get(), window));
        if (!tree || tree->parent == connection_->root() || tree->parent == XCB_WINDOW_NONE) {
            return window;
        }
        window = tree->parent;
    }
}

bool KeyboardKeeper::mayRetake() {
    const Clock::time_point now = Clock::now();
    std::erase_if(retakes_, [&](Clock::time_point retake) { return now - retake > retakePeriod; });
    if (retakes_.size() >= maxRetakes) {
        return false;
    }
    retakes_.push_back(now);
    return true;
}

} // namespace tarvex
