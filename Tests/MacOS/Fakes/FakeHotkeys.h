#pragma once

#include <Carbon/Carbon.h>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tarvex::fake {

/// One call of RegisterEventHotKey that gave a reference.
struct HotkeyRecord {
    UInt32 keyCode = 0;
    UInt32 modifiers = 0;
    EventHotKeyID identifier{};
    bool isRegistered = true;
};

/// One installed event handler.
struct HandlerRecord {
    EventHandlerUPP function = nullptr;
    std::vector<EventTypeSpec> types;
    void* userData = nullptr;
    bool isInstalled = true;
};

/// The Carbon Event Manager, as far as it knows of hotkeys. Presses arrive on a later turn of the run loop.
class FakeHotkeys {
public:
    /// Presses the combination; lock keys make no difference. False when it is nobody's hotkey and goes to
    /// the program that has the keyboard.
    bool press(UInt32 keyCode, UInt32 modifiers);

    /// The event of a press, with an identifier or without one, for the newest handler; one that does not
    /// answer noErr passes it on to the one before.
    void sendPressed(std::optional<EventHotKeyID> identifier);

    OSStatus install(EventHandlerUPP function, std::vector<EventTypeSpec> types, void* userData,
                     EventHandlerRef* reference);
    OSStatus remove(EventHandlerRef reference);
    OSStatus registerHotkey(HotkeyRecord record, EventHotKeyRef* reference);
    OSStatus unregister(EventHotKeyRef reference);

    /// The registered ones, in their order.
    [[nodiscard]] std::vector<HotkeyRecord> registered() const;

    [[nodiscard]] std::size_t handlerCount() const;

    /// Handlers and hotkeys that nobody took away, and what was taken away twice.
    [[nodiscard]] std::vector<std::string> leftovers() const;

    /// The next registrations end with this status; whether a reference is given all the same.
    OSStatus registrationStatus = noErr;
    bool givesReferenceAnyway = false;
    OSStatus installationStatus = noErr;

    /// Answers of handlers other than noErr.
    std::vector<OSStatus> badAnswers;

private:
    [[nodiscard]] const HotkeyRecord* registeredFor(UInt32 keyCode, UInt32 modifiers) const;
    void deliver(std::optional<EventHotKeyID> identifier);

    std::vector<std::unique_ptr<HotkeyRecord>> hotkeys_;
    std::vector<std::unique_ptr<HandlerRecord>> handlers_;
    std::vector<std::string> misuses_;
};

} // namespace tarvex::fake
