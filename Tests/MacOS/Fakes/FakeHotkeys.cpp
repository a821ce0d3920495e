#include "Tests/MacOS/Fakes/FakeHotkeys.h"

#include "Tests/MacOS/Fakes/FakeMac.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace tarvex::fake {

namespace {

constexpr UInt32 fourModifiers = cmdKey | shiftKey | optionKey | controlKey;

struct PressEvent {
    std::optional<EventHotKeyID> identifier;
};

bool wantsPresses(const HandlerRecord& handler) {
    return std::any_of(handler.types.begin(), handler.types.end(), [](const EventTypeSpec& type) {
        return type.eventClass == kEventClassKeyboard && type.eventKind == kEventHotKeyPressed;
    });
}

template <typename Record>
Record* find(const std::vector<std::unique_ptr<Record>>& records, const void* reference) {
    const auto found = std::find_if(records.begin(), records.end(),
                                    [&](const auto& record) { return record.get() == reference; });
    return found == records.end() ? nullptr : found->get();
}

EventTargetRef applicationTarget() {
    static char target = 0;
    return reinterpret_cast<EventTargetRef>(&target);
}

} // namespace

bool FakeHotkeys::press(UInt32 keyCode, UInt32 modifiers) {
    const HotkeyRecord* hotkey = registeredFor(keyCode, modifiers & fourModifiers);
    if (hotkey != nullptr) {
        sendPressed(hotkey->identifier);
    }
    return hotkey != nullptr;
}

const HotkeyRecord* FakeHotkeys::registeredFor(UInt32 keyCode, UInt32 modifiers) const {
    const auto found = std::find_if(hotkeys_.begin(), hotkeys_.end(), [&](const auto& hotkey) {
        return hotkey->isRegistered && hotkey->keyCode == keyCode && hotkey->modifiers == modifiers;
    });
    return found == hotkeys_.end() ? nullptr : found->get();
}

void FakeHotkeys::sendPressed(std::optional<EventHotKeyID> identifier) {
    mac().runLoop.enqueue([this, identifier] { deliver(identifier); });
}

void FakeHotkeys::deliver(std::optional<EventHotKeyID> identifier) {
    PressEvent event{identifier};
    for (std::size_t index = handlers_.size(); index > 0; --index) {
        const HandlerRecord& handler = *handlers_[index - 1];
        if (!handler.isInstalled || !wantsPresses(handler)) {
            continue;
        }
        const OSStatus answer =
            handler.function(nullptr, reinterpret_cast<EventRef>(&event), handler.userData);
        if (answer == noErr) {
            return;
        }
        badAnswers.push_back(answer);
    }
}

OSStatus FakeHotkeys::install(EventHandlerUPP function, std::vector<EventTypeSpec> types, void* userData,
                              EventHandlerRef* reference) {
    if (installationStatus != noErr) {
        return installationStatus;
    }
    handlers_.push_back(
        std::make_unique<HandlerRecord>(HandlerRecord{function, std::move(types), userData, true}));
    *reference = reinterpret_cast<EventHandlerRef>(handlers_.back().get());
    return noErr;
}

OSStatus FakeHotkeys::remove(EventHandlerRef reference) {
    HandlerRecord* handler = find(handlers_, reference);
    if (handler == nullptr || !handler->isInstalled) {
        misuses_.emplace_back("RemoveEventHandler of no handler");
        return eventParameterNotFoundErr;
    }
    handler->isInstalled = false;
    return noErr;
}

OSStatus FakeHotkeys::registerHotkey(HotkeyRecord record, EventHotKeyRef* reference) {
    constexpr UInt32 lastKeyCode = 0x7F;
    if (record.keyCode > lastKeyCode) {
        return eventHotKeyInvalidErr;
    }
    if (registeredFor(record.keyCode, record.modifiers) != nullptr) {
        return eventHotKeyExistsErr;
    }
    if (registrationStatus == noErr || givesReferenceAnyway) {
        hotkeys_.push_back(std::make_unique<HotkeyRecord>(record));
        *reference = reinterpret_cast<EventHotKeyRef>(hotkeys_.back().get());
    }
    return registrationStatus;
}

OSStatus FakeHotkeys::unregister(EventHotKeyRef reference) {
    HotkeyRecord* hotkey = find(hotkeys_, reference);
    if (hotkey == nullptr || !hotkey->isRegistered) {
        misuses_.emplace_back("UnregisterEventHotKey of no hotkey");
        return eventHotKeyInvalidErr;
    }
    hotkey->isRegistered = false;
    return noErr;
}

std::vector<HotkeyRecord> FakeHotkeys::registered() const {
    std::vector<HotkeyRecord> found;
    for (const auto& hotkey : hotkeys_) {
        if (hotkey->isRegistered) {
            found.push_back(*hotkey);
        }
    }
    return found;
}

std::size_t FakeHotkeys::handlerCount() const {
    return static_cast<std::size_t>(std::count_if(handlers_.begin(), handlers_.end(),
                                                  [](const auto& handler) { return handler->isInstalled; }));
}

std::vector<std::string> FakeHotkeys::leftovers() const {
    std::vector<std::string> found = misuses_;
    found.insert(found.end(), handlerCount(), "event handler");
    found.insert(found.end(), registered().size(), "hotkey");
    return found;
}

} // namespace tarvex::fake

using namespace tarvex::fake;

extern "C" {

EventTargetRef GetApplicationEventTarget(void) {
    return applicationTarget();
}

OSStatus InstallEventHandler(EventTargetRef target, EventHandlerUPP handler, ItemCount typeCount,
                             const EventTypeSpec* types, void* userData, EventHandlerRef* reference) {
    if (target != applicationTarget()) {
        mac().heap.noteMisuse("InstallEventHandler on another target than the application");
    }
    return mac().hotkeys.install(handler, {types, types + typeCount}, userData, reference);
}

OSStatus RemoveEventHandler(EventHandlerRef handler) {
    return mac().hotkeys.remove(handler);
}

OSStatus GetEventParameter(EventRef event, EventParamName name, EventParamType desiredType,
                           EventParamType* /*actualType*/, ByteCount capacity, ByteCount* /*actualSize*/,
                           void* data) {
    const auto* press = reinterpret_cast<const PressEvent*>(event);
    const bool isKnown = name == kEventParamDirectObject && desiredType == typeEventHotKeyID;
    if (!isKnown || !press->identifier || capacity < sizeof(EventHotKeyID)) {
        return eventParameterNotFoundErr;
    }
    std::memcpy(data, &*press->identifier, sizeof(EventHotKeyID));
    return noErr;
}

OSStatus RegisterEventHotKey(UInt32 keyCode, UInt32 modifiers, EventHotKeyID identifier,
                             EventTargetRef target, OptionBits options, EventHotKeyRef* reference) {
    if (target != applicationTarget() || options != 0) {
        mac().heap.noteMisuse("RegisterEventHotKey on another target than the application, or with options");
    }
    return mac().hotkeys.registerHotkey({keyCode, modifiers, identifier, true}, reference);
}

OSStatus UnregisterEventHotKey(EventHotKeyRef hotkey) {
    return mac().hotkeys.unregister(hotkey);
}
}
