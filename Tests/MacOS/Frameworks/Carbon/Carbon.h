#pragma once

// What the adapters use of the Carbon Event Manager and of the keyboard layouts, as Apple documents them.

#include "ApplicationServices/ApplicationServices.h"

typedef struct OpaqueEventRef* EventRef;
typedef struct OpaqueEventTargetRef* EventTargetRef;
typedef struct OpaqueEventHandlerRef* EventHandlerRef;
typedef struct OpaqueEventHandlerCallRef* EventHandlerCallRef;
typedef struct OpaqueEventHotKeyRef* EventHotKeyRef;
typedef struct OpaqueTISInputSource* TISInputSourceRef;
typedef OSType EventParamName;
typedef OSType EventParamType;

struct EventTypeSpec {
    OSType eventClass;
    UInt32 eventKind;
};

struct EventHotKeyID {
    OSType signature;
    UInt32 id;
};

/// The documented part of a layout resource; its tables follow it.
struct UCKeyboardLayout {
    UInt16 keyLayoutHeaderFormat;
    UInt16 keyLayoutDataVersion;
};

/// 'keyb'
enum { kEventClassKeyboard = 0x6B657962 };

enum { kEventHotKeyPressed = 5 };

/// '----'
enum { kEventParamDirectObject = 0x2D2D2D2D };

/// 'hkid'
enum { typeEventHotKeyID = 0x686B6964 };

enum {
    eventParameterNotFoundErr = -9870,
    eventHotKeyExistsErr = -9878,
    eventHotKeyInvalidErr = -9879,
};

enum {
    cmdKey = 0x100,
    shiftKey = 0x200,
    optionKey = 0x800,
    controlKey = 0x1000,
};

enum { kUCKeyActionDisplay = 3 };

typedef OSStatus (*EventHandlerProcPtr)(EventHandlerCallRef call, EventRef event, void* userData);
typedef EventHandlerProcPtr EventHandlerUPP;

extern "C" {

EventTargetRef GetApplicationEventTarget(void);
OSStatus InstallEventHandler(EventTargetRef target, EventHandlerUPP handler, ItemCount typeCount,
                             const EventTypeSpec* types, void* userData, EventHandlerRef* reference);
OSStatus RemoveEventHandler(EventHandlerRef handler);
OSStatus GetEventParameter(EventRef event, EventParamName name, EventParamType desiredType,
                           EventParamType* actualType, ByteCount capacity, ByteCount* actualSize, void* data);
OSStatus RegisterEventHotKey(UInt32 keyCode, UInt32 modifiers, EventHotKeyID identifier,
                             EventTargetRef target, OptionBits options, EventHotKeyRef* reference);
OSStatus UnregisterEventHotKey(EventHotKeyRef hotkey);

extern const CFStringRef kTISPropertyUnicodeKeyLayoutData;
TISInputSourceRef TISCopyCurrentKeyboardLayoutInputSource(void);
void* TISGetInputSourceProperty(TISInputSourceRef source, CFStringRef key);

UInt8 LMGetKbdType(void);
OSStatus UCKeyTranslate(const UCKeyboardLayout* layout, UInt16 keyCode, UInt16 action, UInt32 modifiers,
                        UInt32 keyboardType, OptionBits options, UInt32* deadKeyState, UniCharCount capacity,
                        UniCharCount* length, UniChar* characters);
}
