#pragma once

#include "App/Hotkeys/HotkeyPlatform.h"
#include "Platform/Linux/X11/XEventPump.h"
#include "Platform/Linux/X11/XKeyboardNotices.h"
#include "Platform/Linux/X11/XModifierMap.h"

#include <array>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <set>
#include <utility>
#include <vector>

namespace tarvex {

/// Hears of a registered hotkey that stopped working, with a status as a registration would have given it.
using HotkeyLossHandler = std::function<void(const HotkeyIdentifier&, std::int32_t status)>;

/// Key combinations grabbed on the root window, by the physical key and once for each combination of the
/// locks (X Window System Protocol, GrabKey). The server takes such a press away from all other clients. When
/// the keyboard's map changes, the grabs move to the modifiers that stand for the same keys then; what
/// another client holds at that moment is asked for again at the next change. Everything is let go with the
/// object.
class XHotkeyGrabs {
public:
    /// Waits for the server. Connection and pump must outlive the object.
    /// @param pressed called from the pump for each press; it may destroy the object
    /// @param lost called from the pump with an X error code when a hotkey is held by nobody or by another
    ///   client after the keyboard's map has changed; it must not destroy the object
    XHotkeyGrabs(XConnection& connection, XEventPump& pump,
                 std::function<void(const HotkeyIdentifier&)> pressed, HotkeyLossHandler lost);

    XHotkeyGrabs(const XHotkeyGrabs&) = delete;
    XHotkeyGrabs& operator=(const XHotkeyGrabs&) = delete;
    XHotkeyGrabs(XHotkeyGrabs&&) = delete;
    XHotkeyGrabs& operator=(XHotkeyGrabs&&) = delete;
    ~XHotkeyGrabs();

    /// What an addition came to.
    struct Added {
        /// 0, an X error code or XConnection::connectionLost.
        std::int32_t status = 0;
        /// For remove(); nothing is held when there is a status.
        int number = 0;
    };

    /// Waits for the server.
    /// @param eventFlags the modifiers, as event_flag bits
    [[nodiscard]] Added add(xcb_keycode_t key, std::uint64_t eventFlags, const HotkeyIdentifier& identifier);

    void remove(int number);

private:
    /// A modifier state and a key.
    using Grab = std::pair<std::uint16_t, xcb_keycode_t>;

    struct Hotkey {
        int number = 0;
        xcb_keycode_t key = 0;
        std::uint64_t eventFlags = 0;
        HotkeyIdentifier identifier;
        /// What is grabbed for it now; empty while the keyboard or another client stands against it.
        std::set<Grab> grabs;
    };

    void handlePress(const xcb_key_press_event_t& event);
    void handleRelease(const xcb_key_release_event_t& event);
    void handleTurnEnd();
    void askForDetectableRepeat();

    [[nodiscard]] std::set<Grab> grabsOf(xcb_keycode_t key, std::uint64_t eventFlags);
    [[nodiscard]] std::set<Grab> held() const;

    /// All of them or none; the first error.
    [[nodiscard]] std::int32_t grab(const std::vector<Grab>& grabs);
    void ungrab(const Grab& grab);

    XConnection* connection_;
    std::function<void(const HotkeyIdentifier&)> pressed_;
    HotkeyLossHandler lost_;
    XModifierMap modifiers_;
    XKeyboardNotices keyboardNotices_;
    std::array<std::unique_ptr<XEventPump::Subscription>, 3> subscriptions_;
    std::list<Hotkey> hotkeys_;
    int lastNumber_ = 0;
    bool hasKeyboardChanged_ = false;
    /// The keys seen to be pressed during a grab of ours, and the one that began it.
    std::set<xcb_keycode_t> down_;
    xcb_keycode_t firstDown_ = 0;
};

} // namespace tarvex
