#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace tarvex {

/// What the system calls one hotkey of a program.
struct HotkeyIdentifier {
    /// A four-character code, the same for all hotkeys of the program.
    std::uint32_t signature = 0;
    std::uint32_t id = 0;

    bool operator==(const HotkeyIdentifier&) const = default;
};

/// A hotkey that is registered with the system; destroying it ends that.
class RegisteredHotkey {
public:
    RegisteredHotkey() = default;
    RegisteredHotkey(const RegisteredHotkey&) = delete;
    RegisteredHotkey& operator=(const RegisteredHotkey&) = delete;
    RegisteredHotkey(RegisteredHotkey&&) = delete;
    RegisteredHotkey& operator=(RegisteredHotkey&&) = delete;
    virtual ~RegisteredHotkey() = default;
};

/// The answer to a registration. A refusal may come with a reference all the same.
struct HotkeyRegistration {
    /// 0, or the platform's status code.
    std::int32_t status = 0;
    /// May be null.
    std::unique_ptr<RegisteredHotkey> reference;
};

/// The one handler of a program's hotkeys; destroying it removes it.
class HotkeyHandler {
public:
    HotkeyHandler() = default;
    HotkeyHandler(const HotkeyHandler&) = delete;
    HotkeyHandler& operator=(const HotkeyHandler&) = delete;
    HotkeyHandler(HotkeyHandler&&) = delete;
    HotkeyHandler& operator=(HotkeyHandler&&) = delete;
    virtual ~HotkeyHandler() = default;
};

/// Port: hotkeys that work whichever program is active. Nothing throws.
class HotkeyPlatform {
public:
    /// Called when a registered hotkey is pressed, once for each press.
    using PressHandler = std::function<void(const HotkeyIdentifier&)>;

    HotkeyPlatform() = default;
    HotkeyPlatform(const HotkeyPlatform&) = delete;
    HotkeyPlatform& operator=(const HotkeyPlatform&) = delete;
    HotkeyPlatform(HotkeyPlatform&&) = delete;
    HotkeyPlatform& operator=(HotkeyPlatform&&) = delete;
    virtual ~HotkeyPlatform() = default;

    /// Has the handler called from the main thread's loop until the result is destroyed. Null when the
    /// platform refuses; hotkeys then register but are never heard of.
    [[nodiscard]] virtual std::unique_ptr<HotkeyHandler> installHandler(PressHandler handler) = 0;

    /// Registers a key combination.
    /// @param keyCode the virtual key code of the physical key (Apple, HIToolbox Events.h)
    /// @param modifiers a modifier mask; lock keys make no difference
    [[nodiscard]] virtual HotkeyRegistration registerHotkey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                            const HotkeyIdentifier& identifier) = 0;
};

} // namespace tarvex
