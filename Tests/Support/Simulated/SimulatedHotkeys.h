#pragma once

#include "App/Hotkeys/HotkeyPlatform.h"
#include "App/Hotkeys/KeyMonitorPlatform.h"
#include "App/Hotkeys/KeyboardLayoutPlatform.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tarvex {

/// One hotkey as the system knows it.
struct SimulatedHotkey {
    std::uint32_t keyCode = 0;
    std::uint32_t modifiers = 0;
    HotkeyIdentifier identifier;

    bool operator==(const SimulatedHotkey&) const = default;
};

/// A system that knows hotkeys, and may refuse them.
class SimulatedHotkeys final : public HotkeyPlatform {
public:
    /// The statuses of a key code out of range, and of a combination that is registered already.
    static constexpr std::int32_t parameterError = -50;
    static constexpr std::int32_t existsError = -9878;

    [[nodiscard]] std::unique_ptr<HotkeyHandler> installHandler(PressHandler handler) override;
    [[nodiscard]] HotkeyRegistration registerHotkey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                    const HotkeyIdentifier& identifier) override;

    /// What is registered now, in the order of registration.
    [[nodiscard]] std::vector<SimulatedHotkey> registered() const;

    /// Registrations from now on end with this status; a reference is given all the same if so wanted.
    void answerWith(std::int32_t status, bool givesReference) {
        status_ = status;
        givesReference_ = givesReference;
    }

    /// As when the system tells of a press.
    void press(const HotkeyIdentifier& identifier);

    /// A person presses the combination; true when it is a hotkey, and so reaches nobody else. Of the
    /// modifiers only Command, Option, Control and Shift count.
    bool pressKey(std::uint32_t keyCode, std::uint32_t modifiers);

    [[nodiscard]] bool hasHandler() const { return handler_ != nullptr && *handler_ != nullptr; }

private:
    class Handler;
    class Reference;

    std::shared_ptr<PressHandler> handler_;
    std::shared_ptr<std::map<int, SimulatedHotkey>> hotkeys_ =
        std::make_shared<std::map<int, SimulatedHotkey>>();
    std::int32_t status_ = 0;
    bool givesReference_ = true;
    int lastNumber_ = 0;
};

/// Key presses in the program's own windows.
class SimulatedKeyMonitors final : public KeyMonitorPlatform {
public:
    [[nodiscard]] std::unique_ptr<KeyMonitor> addLocalKeyDownMonitor(KeyHandler handler) override;

    /// Presses a key; true when it reached the window, as modifier keys do in any case.
    bool press(const KeyEvent& event);

    /// How many monitors are installed.
    [[nodiscard]] std::size_t count() const { return handlers_->size(); }

private:
    class Monitor;

    using Handlers = std::map<int, std::shared_ptr<KeyHandler>>;

    std::shared_ptr<Handlers> handlers_ = std::make_shared<Handlers>();
    int lastNumber_ = 0;
};

/// A keyboard layout of a few keys.
class SimulatedKeyboardLayout final : public KeyboardLayoutPlatform {
public:
    [[nodiscard]] std::optional<std::string> unshiftedCharacter(std::uint16_t keyCode) override {
        const auto found = characters.find(keyCode);
        return found == characters.end() ? std::nullopt : std::optional(found->second);
    }

    [[nodiscard]] std::string upperCased(const std::string& text) override;

    std::map<std::uint16_t, std::string> characters{{0, "a"}, {14, "e"}, {41, "\u00F6"}, {18, "1"}};
    /// The capitals of all letters outside ASCII that there are.
    std::map<std::string, std::string> capitals{
        {"\u00DF", "SS"}, {"\u00E9", "\u00C9"}, {"\u00F6", "\u00D6"}, {"\u0439", "\u0419"}};
};

} // namespace tarvex
