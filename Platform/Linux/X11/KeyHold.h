#pragma once

#include "Platform/Linux/X11/XConnection.h"
#include "Platform/Linux/X11/XEventPump.h"

#include <memory>

namespace tarvex {

/// Keeps the keyboard from all windows until a key that is down has been released (X Window System Protocol,
/// GrabKeyboard): the repetitions of a key that closed a window must not go to the next one. Destroying it
/// lets go of the keyboard.
class KeyHold {
public:
    /// Waits for the server. Is over at once when the key is up already, or somebody else has the keyboard.
    /// The connection and the pump must outlive the hold.
    /// @param key the server's number of the key
    KeyHold(XConnection& connection, XEventPump& pump, xcb_keycode_t key);

    KeyHold(const KeyHold&) = delete;
    KeyHold& operator=(const KeyHold&) = delete;
    KeyHold(KeyHold&&) = delete;
    KeyHold& operator=(KeyHold&&) = delete;
    ~KeyHold();

    /// Whether the keyboard is free again.
    [[nodiscard]] bool isOver() const { return window_ == XCB_WINDOW_NONE; }

private:
    void makeWindow();
    [[nodiscard]] bool grab();
    [[nodiscard]] bool isDown();
    void letGo();
    void handleRelease(const xcb_key_release_event_t& event);

    XConnection* connection_;
    xcb_keycode_t key_;
    /// Who gets the keys meanwhile. The server ends the grab with it.
    xcb_window_t window_ = XCB_WINDOW_NONE;
    std::unique_ptr<XEventPump::Subscription> releases_;
};

} // namespace tarvex
