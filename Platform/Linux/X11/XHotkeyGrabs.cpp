#include "Platform/Linux/X11/XHotkeyGrabs.h"

#include "Platform/Linux/X11/XkbProtocol.h"

#include <algorithm>
#include <iterator>

namespace tarvex {

XHotkeyGrabs::XHotkeyGrabs(XConnection& connection, XEventPump& pump,
                           std::function<void(const HotkeyIdentifier&)> pressed, HotkeyLossHandler lost)
    : connection_(&connection),
      pressed_(std::move(pressed)),
      lost_(std::move(lost)),
      modifiers_(connection),
      keyboardNotices_(connection, pump, [this] { hasKeyboardChanged_ = true; }),
      subscriptions_{pump.subscribe(XCB_KEY_PRESS,
                                    [this](const xcb_generic_event_t& event) {
                                        handlePress(reinterpret_cast<const xcb_key_press_event_t&>(event));
                                    }),
                     pump.subscribe(XCB_KEY_RELEASE,
                                    [this](const xcb_generic_event_t& event) {
                                        handleRelease(
                                            reinterpret_cast<const xcb_key_release_event_t&>(event));
                                    }),
                     pump.subscribeTurnEnd([this] { handleTurnEnd(); })} {
    askForDetectableRepeat();
}

XHotkeyGrabs::~XHotkeyGrabs() {
    for (const Grab& grab : held()) {
        ungrab(grab);
    }
    connection_->flush();
}

void XHotkeyGrabs::askForDetectableRepeat() {
    if (connection_->extension(xcb_xkb_id) == nullptr) {
        return;
    }
    // A key that is held then repeats its press alone, without a release in between (X Keyboard Extension,
    // Detectable Autorepeat).
    constexpr std::uint32_t repeat = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    static_cast<void>(connection_->take(
        xcb_xkb_per_client_flags_reply,
        xcb_xkb_per_client_flags(connection_->get(), XCB_XKB_ID_USE_CORE_KBD, repeat, repeat, 0, 0, 0)));
}

XHotkeyGrabs::Added XHotkeyGrabs::add(xcb_keycode_t key, std::uint64_t eventFlags,
                                      const HotkeyIdentifier& identifier) {
    const bool isTaken = std::any_of(hotkeys_.begin(), hotkeys_.end(), [&](const Hotkey& hotkey) {
        return hotkey.key == key && hotkey.eventFlags == eventFlags;
    });
    if (isTaken) {
        return {XCB_ACCESS};
    }
    const std::set<Grab> wanted = grabsOf(key, eventFlags);
    if (wanted.empty()) {
        return {connection_->isBroken() ? XConnection::connectionLost : XCB_MATCH};
    }
    if (const std::int32_t error = grab({wanted.begin(), wanted.end()}); error != 0) {
        return {error};
    }
    hotkeys_.push_back({++lastNumber_, key, eventFlags, identifier, wanted});
    return {0, lastNumber_};
}

void XHotkeyGrabs::remove(int number) {
    const auto found = std::find_if(hotkeys_.begin(), hotkeys_.end(),
                                    [=](const Hotkey& hotkey) { return hotkey.number == number; });
    if (found == hotkeys_.end()) {
        return;
    }
    for (const Grab& grab : found->grabs) {
        ungrab(grab);
    }
    hotkeys_.erase(found);
    connection_->flush();
}

void XHotkeyGrabs::handlePress(const xcb_key_press_event_t& event) {
    if (event.event != connection_->root()) {
        return;
    }
    if (down_.empty()) {
        firstDown_ = event.detail;
    }
    if (!down_.insert(event.detail).second) {
        return;
    }
    // The server has compared the rest of the state; what it tells here of a second layout depends on the
    // map.
    const std::uint64_t eventFlags = modifiers_.eventFlags(event.state);
    for (const Hotkey& hotkey : hotkeys_) {
        if (hotkey.key == event.detail && hotkey.eventFlags == eventFlags) {
            // The call may be the end of everything here.
            const HotkeyIdentifier identifier = hotkey.identifier;
            const auto pressed = pressed_;
            pressed(identifier);
            return;
        }
    }
}

void XHotkeyGrabs::handleRelease(const xcb_key_release_event_t& event) {
    if (event.event != connection_->root()) {
        return;
    }
    down_.erase(event.detail);
    if (event.detail == firstDown_) {
        // That ended the grab: what else is down will be released unseen.
        down_.clear();
    }
}

void XHotkeyGrabs::handleTurnEnd() {
    if (!std::exchange(hasKeyboardChanged_, false)) {
        return;
    }
    modifiers_.invalidate();
    const std::set<Grab> before = held();
    for (Hotkey& hotkey : hotkeys_) {
        std::set<Grab> wanted = grabsOf(hotkey.key, hotkey.eventFlags);
        std::vector<Grab> missing;
        std::set_difference(wanted.begin(), wanted.end(), before.begin(), before.end(),
                            std::back_inserter(missing));
        const std::int32_t status = wanted.empty() ? XCB_MATCH : grab(missing);
        hotkey.grabs = status == 0 ? std::move(wanted) : std::set<Grab>();
        if (status != 0) {
            lost_(hotkey.identifier, status);
        }
    }
    // The new ones are in place before the old ones go, so that no press falls between.
    const std::set<Grab> after = held();
    for (const Grab& old : before) {
        if (!after.contains(old)) {
            ungrab(old);
        }
    }
}

std::set<XHotkeyGrabs::Grab> XHotkeyGrabs::grabsOf(xcb_keycode_t key, std::uint64_t eventFlags) {
    std::set<Grab> grabs;
    for (const std::uint16_t state : modifiers_.statesOf(eventFlags)) {
        grabs.insert({state, key});
    }
    return grabs;
}

std::set<XHotkeyGrabs::Grab> XHotkeyGrabs::held() const {
    std::set<Grab> grabs;
    for (const Hotkey& hotkey : hotkeys_) {
        grabs.insert(hotkey.grabs.begin(), hotkey.grabs.end());
    }
    return grabs;
}

std::int32_t XHotkeyGrabs::grab(const std::vector<Grab>& grabs) {
    std::vector<xcb_void_cookie_t> cookies;
    cookies.reserve(grabs.size());
    for (const auto& [state, key] : grabs) {
        // The events are told of the root window alone: a window of this program's that has the keyboard must
        // not take the press for typing.
        cookies.push_back(xcb_grab_key_checked(connection_->get(), 0, connection_->root(), state, key,
                                               XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
    std::int32_t firstError = 0;
    std::vector<Grab> granted;
    for (std::size_t index = 0; index < grabs.size(); ++index) {
        const std::int32_t error = connection_->check(cookies[index]);
        if (error == 0) {
            granted.push_back(grabs[index]);
        }
        firstError = firstError == 0 ? error : firstError;
    }
    if (firstError != 0) {
        std::for_each(granted.begin(), granted.end(), [this](const Grab& grab) { ungrab(grab); });
        connection_->flush();
    }
    return firstError;
}

void XHotkeyGrabs::ungrab(const Grab& grab) {
    connection_->discard(
        xcb_ungrab_key_checked(connection_->get(), grab.second, connection_->root(), grab.first));
}

} // namespace tarvex
