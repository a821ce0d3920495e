#pragma once

#include "Core/Configuration/TarvexConfig.h"
#include "Platform/Linux/X11/VirtualKeyCodes.h"
#include "Platform/Linux/X11/XHotkeyPlatform.h"
#include "Tests/Contract/X11/InputAdapters.h"
#include "Tests/Support/X11/Keyboard.h"
#include "Tests/Support/X11/XServer.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace tarvex::contract {

// Key codes of the server's standard keyboard.
namespace x_key {
inline constexpr std::uint8_t shift = 50;
inline constexpr std::uint8_t control = 37;
inline constexpr std::uint8_t alt = 64;
inline constexpr std::uint8_t altGr = 108;
inline constexpr std::uint8_t super = 133;
inline constexpr std::uint8_t capsLock = 66;
inline constexpr std::uint8_t numLock = 77;
inline constexpr std::uint8_t scrollLock = 78;
inline constexpr std::uint8_t letterE = 26;
inline constexpr std::uint8_t letterR = 27;
} // namespace x_key

/// A person at the keyboard, who knows keys by their virtual key codes and modifiers by their mask.
class Typist {
public:
    explicit Typist(const std::string& displayName) : keyboard_{displayName} {}

    void press(std::uint32_t keyCode, std::uint32_t modifiers) {
        awaitNextInstant();
        for (const auto& [modifier, key] : modifierKeys) {
            if ((modifiers & modifier) != 0) {
                keyboard_.pressKey(key);
            }
        }
        keyboard_.pressKey(keyOf(keyCode));
    }

    void release(std::uint32_t keyCode, std::uint32_t modifiers) {
        keyboard_.releaseKey(keyOf(keyCode));
        released_ = Clock::now();
        for (const auto& [modifier, key] : modifierKeys) {
            if ((modifiers & modifier) != 0) {
                keyboard_.releaseKey(key);
            }
        }
    }

    void type(std::uint32_t keyCode, std::uint32_t modifiers) {
        press(keyCode, modifiers);
        release(keyCode, modifiers);
    }

    void typeModifier(std::uint32_t modifier) {
        for (const auto& [one, key] : modifierKeys) {
            if (one == modifier) {
                keyboard_.tapKey(key);
            }
        }
    }

    test::Keyboard& keyboard() { return keyboard_; }

private:
    using Clock = std::chrono::steady_clock;

    /// The server counts milliseconds, and a press at the instant of the release is how it tells that a key
    /// repeats. No person is that fast.
    void awaitNextInstant() const {
        while (Clock::now() < released_ + std::chrono::milliseconds(2)) {
            std::this_thread::yield();
        }
    }

    static constexpr std::array<std::pair<std::uint32_t, std::uint8_t>, 4> modifierKeys{
        {{modifier_mask::command, x_key::super},
         {modifier_mask::option, x_key::alt},
         {modifier_mask::control, x_key::control},
         {modifier_mask::shift, x_key::shift}}};

    static std::uint8_t keyOf(std::uint32_t keyCode) {
        const auto key = xKeyCodeOf(static_cast<std::uint16_t>(keyCode));
        if (!key) {
            throw std::runtime_error("no such key: " + std::to_string(keyCode));
        }
        return *key;
    }

    test::Keyboard keyboard_;
    Clock::time_point released_;
};

/// Another program's window that has the keyboard, and counts what is typed into it.
class KeyCountingWindow {
public:
    explicit KeyCountingWindow(const std::string& displayName) : client_{displayName} {
        client_.setEventHandler([this](const xcb_generic_event_t& event) {
            const auto& key = reinterpret_cast<const xcb_key_press_event_t&>(event);
            if ((event.response_type & 0x7F) == XCB_KEY_PRESS) {
                const auto virtualKey = virtualKeyCodeOf(key.detail);
                count_ += virtualKey && isModifierKey(*virtualKey) ? 0 : 1;
            }
        });
        window_ = xcb_generate_id(client_.connection());
        const std::array<std::uint32_t, 2> values{1, XCB_EVENT_MASK_KEY_PRESS};
        xcb_create_window(client_.connection(), XCB_COPY_FROM_PARENT, window_, client_.root(), 0, 0, 100, 100,
                          0, XCB_WINDOW_CLASS_INPUT_OUTPUT, client_.screen().root_visual,
                          XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values.data());
        xcb_map_window(client_.connection(), window_);
        client_.waitUntil([this] { return client_.isViewable(window_); }, "the window is shown");
        xcb_set_input_focus(client_.connection(), XCB_INPUT_FOCUS_POINTER_ROOT, window_, XCB_CURRENT_TIME);
        client_.sync();
    }

    [[nodiscard]] xcb_window_t id() const { return window_; }

    int count() {
        client_.sync();
        client_.handleEvents();
        return count_;
    }

private:
    test::XClient client_;
    xcb_window_t window_ = XCB_NONE;
    int count_ = 0;
};

/// Another program that grabs keys.
class GrabbingClient {
public:
    explicit GrabbingClient(const std::string& displayName) : client_{displayName} {}

    /// Whether the server let it have the key with exactly this modifier state.
    bool grab(std::uint16_t state, std::uint8_t key) {
        const auto cookie = xcb_grab_key_checked(client_.connection(), 0, client_.root(), state, key,
                                                 XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        const test::Owned<xcb_generic_error_t> error(xcb_request_check(client_.connection(), cookie));
        return error == nullptr;
    }

    void ungrab(std::uint16_t state, std::uint8_t key) {
        xcb_ungrab_key(client_.connection(), key, client_.root(), state);
        client_.sync();
    }

    /// Whether nobody else has grabbed the key with any modifier state at all.
    bool isFree(std::uint8_t key) {
        const bool isGranted = grab(XCB_MOD_MASK_ANY, key);
        ungrab(XCB_MOD_MASK_ANY, key);
        return isGranted;
    }

    /// The modifier states of all 256 with which somebody else has grabbed the key.
    std::vector<std::uint16_t> statesTaken(std::uint8_t key) {
        std::vector<std::uint16_t> taken;
        for (std::uint16_t state = 0; state < 256; ++state) {
            if (!grab(state, key)) {
                taken.push_back(state);
            } else {
                ungrab(state, key);
            }
        }
        return taken;
    }

    test::XClient& client() { return client_; }

private:
    test::XClient client_;
};

/// The keys attached to each of the modifiers, from Shift to Mod5.
using ModifierKeys = std::array<std::vector<std::uint8_t>, 8>;

inline const ModifierKeys standardModifiers{{{x_key::shift},
                                             {x_key::capsLock},
                                             {x_key::control},
                                             {x_key::alt},
                                             {x_key::numLock},
                                             {},
                                             {x_key::super},
                                             {}}};

inline void setModifierMap(test::XClient& client, const ModifierKeys& modifiers) {
    std::array<std::uint8_t, 16> keys{};
    for (std::size_t modifier = 0; modifier < modifiers.size(); ++modifier) {
        for (std::size_t index = 0; index < modifiers.at(modifier).size(); ++index) {
            keys.at(2 * modifier + index) = modifiers.at(modifier).at(index);
        }
    }
    const test::Owned<xcb_set_modifier_mapping_reply_t> reply(xcb_set_modifier_mapping_reply(
        client.connection(), xcb_set_modifier_mapping(client.connection(), 2, keys.data()), nullptr));
    if (!reply || reply->status != XCB_MAPPING_STATUS_SUCCESS) {
        throw std::runtime_error("the modifier map was refused");
    }
    client.sync();
}

/// Chooses the server's layout as a person does, such as "de", or "us,ru" with options.
inline void setLayout(const test::XServer& server, const std::string& layout,
                      const std::string& variant = {}) {
    test::Command command;
    command.arguments = {"setxkbmap", "-display", server.displayName(), "-layout", layout, "-option", ""};
    if (!variant.empty()) {
        command.arguments.insert(command.arguments.end(), {"-variant", variant});
    }
    command.environment = server.clientEnvironment("setxkbmap");
    test::ChildProcess process(command);
    if (process.waitForExit() != test::ExitStatus{0, std::nullopt}) {
        throw std::runtime_error("setxkbmap failed: " + process.standardError());
    }
}

} // namespace tarvex::contract
