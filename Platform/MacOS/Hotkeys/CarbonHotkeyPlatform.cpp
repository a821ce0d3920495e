#include "Platform/MacOS/Hotkeys/CarbonHotkeyPlatform.h"

#include "Platform/MacOS/Logging/SwallowedException.h"

#include <Carbon/Carbon.h>
#include <memory>
#include <utility>

namespace tarvex {

namespace {

/// What the native handler works on; it lives through a call in which its owner is destroyed.
class PressContext : public std::enable_shared_from_this<PressContext> {
public:
    explicit PressContext(HotkeyPlatform::PressHandler handler) : handler_(std::move(handler)) {}

    void handle(EventRef event) const {
        EventHotKeyID identifier{};
        const OSStatus status = GetEventParameter(event, kEventParamDirectObject, typeEventHotKeyID, nullptr,
                                                  sizeof identifier, nullptr, &identifier);
        if (status == noErr && handler_) {
            handler_({identifier.signature, identifier.id});
        }
    }

private:
    HotkeyPlatform::PressHandler handler_;
};

// Always noErr: any other answer would hand the press on to handlers that know nothing of it.
OSStatus handleHotkeyEvent(EventHandlerCallRef /*call*/, EventRef event, void* userData) noexcept {
    if (event == nullptr || userData == nullptr) {
        return noErr;
    }
    try {
        static_cast<PressContext*>(userData)->shared_from_this()->handle(event);
    } catch (...) {
        // An exception must not pass through a frame of the system.
        logSwallowedException("CarbonHotkeyPlatform");
    }
    return noErr;
}

class CarbonHotkeyHandler final : public HotkeyHandler {
public:
    CarbonHotkeyHandler(std::shared_ptr<PressContext> context, EventHandlerRef reference)
        : context_(std::move(context)), reference_(reference) {}

    CarbonHotkeyHandler(const CarbonHotkeyHandler&) = delete;
    CarbonHotkeyHandler& operator=(const CarbonHotkeyHandler&) = delete;
    CarbonHotkeyHandler(CarbonHotkeyHandler&&) = delete;
    CarbonHotkeyHandler& operator=(CarbonHotkeyHandler&&) = delete;

    ~CarbonHotkeyHandler() override { RemoveEventHandler(reference_); }

private:
    std::shared_ptr<PressContext> context_;
    EventHandlerRef reference_;
};

class CarbonHotkey final : public RegisteredHotkey {
public:
    explicit CarbonHotkey(EventHotKeyRef reference) : reference_(reference) {}

    CarbonHotkey(const CarbonHotkey&) = delete;
    CarbonHotkey& operator=(const CarbonHotkey&) = delete;
    CarbonHotkey(CarbonHotkey&&) = delete;
    CarbonHotkey& operator=(CarbonHotkey&&) = delete;

    ~CarbonHotkey() override { UnregisterEventHotKey(reference_); }

private:
    EventHotKeyRef reference_;
};

} // namespace

std::unique_ptr<HotkeyHandler> CarbonHotkeyPlatform::installHandler(PressHandler handler) {
    auto context = std::make_shared<PressContext>(std::move(handler));
    const EventTypeSpec pressed{kEventClassKeyboard, kEventHotKeyPressed};
    EventHandlerRef reference = nullptr;
    const OSStatus status = InstallEventHandler(GetApplicationEventTarget(), &handleHotkeyEvent, 1, &pressed,
                                                context.get(), &reference);
    if (status != noErr || reference == nullptr) {
        return nullptr;
    }
    return std::make_unique<CarbonHotkeyHandler>(std::move(context), reference);
}

HotkeyRegistration CarbonHotkeyPlatform::registerHotkey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                        const HotkeyIdentifier& identifier) {
    constexpr OptionBits noOptions = 0;
    EventHotKeyRef reference = nullptr;
    const OSStatus status = RegisterEventHotKey(keyCode, modifiers, {identifier.signature, identifier.id},
                                                GetApplicationEventTarget(), noOptions, &reference);
    return {status, reference == nullptr ? nullptr : std::make_unique<CarbonHotkey>(reference)};
}

} // namespace tarvex
