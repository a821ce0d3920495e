// Every constant and every signature of the system that the adapters rely on. Here this holds the
// declarations in Frameworks/ to what Apple documents; compiled on a Mac, it holds Apple's own headers to it,
// so that a difference is an error of the compiler and not of a running program. A function whose type
// differs cannot be assigned.

#include <ApplicationServices/ApplicationServices.h>
#include <Carbon/Carbon.h>
#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CoreGraphics.h>
#include <IOKit/IOKitLib.h>
#include <IOKit/graphics/IOGraphicsLib.h>
#include <dispatch/dispatch.h>
#include <os/log.h>
#include <string_view>
#include <type_traits>

namespace tarvex {
namespace {

// Basic types.
static_assert(sizeof(Boolean) == 1 && std::is_unsigned_v<Boolean>);
static_assert(sizeof(UniChar) == 2 && std::is_unsigned_v<UniChar>);
static_assert(sizeof(UniCharCount) == 8 && std::is_unsigned_v<UniCharCount>);
static_assert(sizeof(OSStatus) == 4 && std::is_signed_v<OSStatus>);
static_assert(sizeof(OSType) == 4 && std::is_unsigned_v<OSType>);
static_assert(sizeof(OptionBits) == 4 && sizeof(ItemCount) == 8 && sizeof(ByteCount) == 8);
static_assert(sizeof(CFIndex) == 8 && std::is_signed_v<CFIndex>);
static_assert(sizeof(CFTypeID) == 8 && std::is_unsigned_v<CFTypeID>);
static_assert(std::is_same_v<CFTimeInterval, double> && std::is_same_v<CFAbsoluteTime, double>);
static_assert(std::is_same_v<CGFloat, double>);
static_assert(sizeof(CGPoint) == 16 && sizeof(CGSize) == 16 && sizeof(CGRect) == 32);
static_assert(sizeof(CGEventMask) == 8 && sizeof(CGEventFlags) == 8 && sizeof(CGEventType) == 4);
static_assert(sizeof(CGDirectDisplayID) == 4 && std::is_unsigned_v<CGDirectDisplayID>);
static_assert(sizeof(AXError) == 4 && std::is_signed_v<std::underlying_type_t<AXError>>);
static_assert(sizeof(CGError) == 4 && std::is_signed_v<std::underlying_type_t<CGError>>);
static_assert(sizeof(EventHotKeyID) == 8 && sizeof(EventTypeSpec) == 8);
static_assert(sizeof(io_object_t) == 4 && sizeof(kern_return_t) == 4);

// Core Foundation.
static_assert(kCFStringEncodingUTF8 == 0x08000100);
static_assert(kCFNumberSInt64Type == 4);
static_assert(CFNotificationSuspensionBehaviorDeliverImmediately == 4);

// Accessibility.
static_assert(kAXErrorSuccess == 0);
static_assert(kAXErrorFailure == -25200);
static_assert(kAXErrorIllegalArgument == -25201);
static_assert(kAXErrorInvalidUIElement == -25202);
static_assert(kAXErrorCannotComplete == -25204);
static_assert(kAXErrorAttributeUnsupported == -25205);
static_assert(kAXErrorAPIDisabled == -25211);
static_assert(kAXErrorNoValue == -25212);
static_assert(kAXValueTypeCGPoint == 1);
static_assert(kAXValueTypeCGSize == 2);
static_assert(kAXValueTypeCGRect == 3);

// Event taps.
static_assert(kCGSessionEventTap == 1);
static_assert(kCGHeadInsertEventTap == 0);
static_assert(kCGEventTapOptionDefault == 0);
static_assert(kCGEventLeftMouseDown == 1);
static_assert(kCGEventLeftMouseUp == 2);
static_assert(kCGEventRightMouseDown == 3);
static_assert(kCGEventRightMouseUp == 4);
static_assert(kCGEventMouseMoved == 5);
static_assert(kCGEventLeftMouseDragged == 6);
static_assert(kCGEventKeyDown == 10);
static_assert(kCGEventKeyUp == 11);
static_assert(kCGEventFlagsChanged == 12);
static_assert(kCGEventScrollWheel == 22);
static_assert(kCGEventTapDisabledByTimeout == 0xFFFFFFFE);
static_assert(kCGEventTapDisabledByUserInput == 0xFFFFFFFF);
static_assert(kCGEventFlagMaskAlphaShift == 0x10000);
static_assert(kCGEventFlagMaskShift == 0x20000);
static_assert(kCGEventFlagMaskControl == 0x40000);
static_assert(kCGEventFlagMaskAlternate == 0x80000);
static_assert(kCGEventFlagMaskCommand == 0x100000);
static_assert(kCGEventSourceStateHIDSystemState == 1);
static_assert(kCGMouseButtonLeft == 0);

// Displays and the I/O registry.
static_assert(kCGErrorSuccess == 0);
static_assert(KERN_SUCCESS == 0 && IO_OBJECT_NULL == 0);
static_assert(kIODisplayOnlyPreferredName == 0x200);
static_assert(std::string_view(kDisplayProductName) == "DisplayProductName");

// Hotkeys and keyboard layouts.
static_assert(noErr == 0);
static_assert(kEventClassKeyboard == 0x6B657962);
static_assert(kEventHotKeyPressed == 5);
static_assert(kEventParamDirectObject == 0x2D2D2D2D);
static_assert(typeEventHotKeyID == 0x686B6964);
static_assert(eventParameterNotFoundErr == -9870);
static_assert(eventHotKeyExistsErr == -9878);
static_assert(eventHotKeyInvalidErr == -9879);
static_assert(cmdKey == 0x100 && shiftKey == 0x200 && optionKey == 0x800 && controlKey == 0x1000);
static_assert(kUCKeyActionDisplay == 3);

// The unified log.
static_assert(OS_LOG_TYPE_ERROR == 0x10);

// Members, in the order in which the adapters initialise them.
static_assert(std::is_same_v<decltype(EventHotKeyID::signature), OSType>);
static_assert(std::is_same_v<decltype(EventHotKeyID::id), UInt32>);
[[maybe_unused]] constexpr EventHotKeyID hotkey{1, 2};
static_assert(hotkey.signature == 1 && hotkey.id == 2);
[[maybe_unused]] constexpr EventTypeSpec type{1, 2};
static_assert(type.eventClass == 1 && type.eventKind == 2);
[[maybe_unused]] constexpr CFRange range{1, 2};
static_assert(range.location == 1 && range.length == 2);
[[maybe_unused]] constexpr CGRect rect{{1, 2}, {3, 4}};
static_assert(rect.origin.x == 1 && rect.origin.y == 2 && rect.size.width == 3 && rect.size.height == 4);

/// Signatures.
struct Signatures {
    // Core Foundation.
    CFTypeRef (*retain)(CFTypeRef) = &CFRetain;
    void (*release)(CFTypeRef) = &CFRelease;
    CFTypeID (*typeId)(CFTypeRef) = &CFGetTypeID;
    CFTypeID (*stringTypeId)() = &CFStringGetTypeID;
    CFTypeID (*numberTypeId)() = &CFNumberGetTypeID;
    CFTypeID (*dataTypeId)() = &CFDataGetTypeID;
    CFTypeID (*dictionaryTypeId)() = &CFDictionaryGetTypeID;
    CFStringRef (*stringWithBytes)(CFAllocatorRef, const UInt8*, CFIndex, CFStringEncoding,
                                   Boolean) = &CFStringCreateWithBytes;
    CFStringRef (*stringWithCharacters)(CFAllocatorRef, const UniChar*,
                                        CFIndex) = &CFStringCreateWithCharacters;
    CFIndex (*stringLength)(CFStringRef) = &CFStringGetLength;
    CFIndex (*stringBytes)(CFStringRef, CFRange, CFStringEncoding, UInt8, Boolean, UInt8*, CFIndex,
                           CFIndex*) = &CFStringGetBytes;
    CFMutableStringRef (*mutableString)(CFAllocatorRef, CFIndex, CFStringRef) = &CFStringCreateMutableCopy;
    void (*uppercase)(CFMutableStringRef, CFLocaleRef) = &CFStringUppercase;
    Boolean (*numberValue)(CFNumberRef, CFNumberType, void*) = &CFNumberGetValue;
    const UInt8* (*dataBytes)(CFDataRef) = &CFDataGetBytePtr;
    CFIndex (*dataLength)(CFDataRef) = &CFDataGetLength;
    CFDictionaryRef (*dictionary)(CFAllocatorRef, const void**, const void**, CFIndex,
                                  const CFDictionaryKeyCallBacks*,
                                  const CFDictionaryValueCallBacks*) = &CFDictionaryCreate;
    CFIndex (*dictionaryCount)(CFDictionaryRef) = &CFDictionaryGetCount;
    const void* (*dictionaryValue)(CFDictionaryRef, const void*) = &CFDictionaryGetValue;
    void (*dictionaryEntries)(CFDictionaryRef, const void**, const void**) = &CFDictionaryGetKeysAndValues;
    CFLocaleRef (*currentLocale)() = &CFLocaleCopyCurrent;
    CFLocaleIdentifier (*localeIdentifier)(CFLocaleRef) = &CFLocaleGetIdentifier;

    // Run loop and queues.
    CFAbsoluteTime (*now)() = &CFAbsoluteTimeGetCurrent;
    CFRunLoopRef (*mainLoop)() = &CFRunLoopGetMain;
    void (*addSource)(CFRunLoopRef, CFRunLoopSourceRef, CFRunLoopMode) = &CFRunLoopAddSource;
    void (*removeSource)(CFRunLoopRef, CFRunLoopSourceRef, CFRunLoopMode) = &CFRunLoopRemoveSource;
    void (*addTimer)(CFRunLoopRef, CFRunLoopTimerRef, CFRunLoopMode) = &CFRunLoopAddTimer;
    CFRunLoopTimerRef (*timer)(CFAllocatorRef, CFAbsoluteTime, CFTimeInterval, CFOptionFlags, CFIndex,
                               CFRunLoopTimerCallBack, CFRunLoopTimerContext*) = &CFRunLoopTimerCreate;
    void (*invalidateTimer)(CFRunLoopTimerRef) = &CFRunLoopTimerInvalidate;
    CFRunLoopSourceRef (*portSource)(CFAllocatorRef, CFMachPortRef, CFIndex) = &CFMachPortCreateRunLoopSource;
    void (*invalidatePort)(CFMachPortRef) = &CFMachPortInvalidate;
    CFMachPortInvalidationCallBack (*invalidationCallback)(CFMachPortRef) =
        &CFMachPortGetInvalidationCallBack;
    void (*setInvalidationCallback)(CFMachPortRef,
                                    CFMachPortInvalidationCallBack) = &CFMachPortSetInvalidationCallBack;
    dispatch_queue_main_t (*mainQueue)() = &dispatch_get_main_queue;
    void (*async)(dispatch_queue_t, void*, dispatch_function_t) = &dispatch_async_f;

    // Notifications.
    CFNotificationCenterRef (*localCenter)() = &CFNotificationCenterGetLocalCenter;
    CFNotificationCenterRef (*distributedCenter)() = &CFNotificationCenterGetDistributedCenter;
    void (*addObserver)(CFNotificationCenterRef, const void*, CFNotificationCallback, CFStringRef,
                        const void*, CFNotificationSuspensionBehavior) = &CFNotificationCenterAddObserver;
    void (*removeObserver)(CFNotificationCenterRef, const void*, CFNotificationName,
                           const void*) = &CFNotificationCenterRemoveObserver;
    void (*postNotification)(CFNotificationCenterRef, CFNotificationName, const void*, CFDictionaryRef,
                             Boolean) = &CFNotificationCenterPostNotification;

    // Accessibility.
    Boolean (*trusted)(CFDictionaryRef) = &AXIsProcessTrustedWithOptions;
    CFTypeID (*elementTypeId)() = &AXUIElementGetTypeID;
    CFTypeID (*valueTypeId)() = &AXValueGetTypeID;
    AXUIElementRef (*systemWide)() = &AXUIElementCreateSystemWide;
    AXError (*elementAt)(AXUIElementRef, float, float, AXUIElementRef*) = &AXUIElementCopyElementAtPosition;
    AXError (*readAttribute)(AXUIElementRef, CFStringRef, CFTypeRef*) = &AXUIElementCopyAttributeValue;
    AXError (*writeAttribute)(AXUIElementRef, CFStringRef, CFTypeRef) = &AXUIElementSetAttributeValue;
    AXError (*setTimeout)(AXUIElementRef, float) = &AXUIElementSetMessagingTimeout;
    AXValueRef (*makeValue)(AXValueType, const void*) = &AXValueCreate;
    AXValueType (*valueType)(AXValueRef) = &AXValueGetType;
    Boolean (*value)(AXValueRef, AXValueType, void*) = &AXValueGetValue;

    // Event taps.
    bool (*preflight)() = &CGPreflightListenEventAccess;
    bool (*request)() = &CGRequestListenEventAccess;
    CFMachPortRef (*tap)(CGEventTapLocation, CGEventTapPlacement, CGEventTapOptions, CGEventMask,
                         CGEventTapCallBack, void*) = &CGEventTapCreate;
    void (*enableTap)(CFMachPortRef, bool) = &CGEventTapEnable;
    CGEventFlags (*eventFlags)(CGEventRef) = &CGEventGetFlags;
    bool (*buttonState)(CGEventSourceStateID, CGMouseButton) = &CGEventSourceButtonState;

    // Displays and the I/O registry.
    CGError (*displayList)(uint32_t, CGDirectDisplayID*, uint32_t*) = &CGGetActiveDisplayList;
    uint32_t (*vendorNumber)(CGDirectDisplayID) = &CGDisplayVendorNumber;
    uint32_t (*modelNumber)(CGDirectDisplayID) = &CGDisplayModelNumber;
    uint32_t (*serialNumber)(CGDirectDisplayID) = &CGDisplaySerialNumber;
    CGRect (*bounds)(CGDirectDisplayID) = &CGDisplayBounds;
    boolean_t (*isBuiltin)(CGDirectDisplayID) = &CGDisplayIsBuiltin;
    boolean_t (*isOnline)(CGDirectDisplayID) = &CGDisplayIsOnline;
    CFMutableDictionaryRef (*matching)(const char*) = &IOServiceMatching;
    kern_return_t (*search)(mach_port_t, CFDictionaryRef, io_iterator_t*) = &IOServiceGetMatchingServices;
    io_object_t (*next)(io_iterator_t) = &IOIteratorNext;
    kern_return_t (*releaseObject)(io_object_t) = &IOObjectRelease;
    CFTypeRef (*property)(io_registry_entry_t, CFStringRef, CFAllocatorRef,
                          IOOptionBits) = &IORegistryEntryCreateCFProperty;
    CFDictionaryRef (*displayInformation)(io_service_t, IOOptionBits) = &IODisplayCreateInfoDictionary;

    // Hotkeys and keyboard layouts.
    EventTargetRef (*applicationTarget)() = &GetApplicationEventTarget;
    OSStatus (*installHandler)(EventTargetRef, EventHandlerUPP, ItemCount, const EventTypeSpec*, void*,
                               EventHandlerRef*) = &InstallEventHandler;
    OSStatus (*removeHandler)(EventHandlerRef) = &RemoveEventHandler;
    OSStatus (*parameter)(EventRef, EventParamName, EventParamType, EventParamType*, ByteCount, ByteCount*,
                          void*) = &GetEventParameter;
    OSStatus (*registerHotkey)(UInt32, UInt32, EventHotKeyID, EventTargetRef, OptionBits,
                               EventHotKeyRef*) = &RegisterEventHotKey;
    OSStatus (*unregisterHotkey)(EventHotKeyRef) = &UnregisterEventHotKey;
    TISInputSourceRef (*inputSource)() = &TISCopyCurrentKeyboardLayoutInputSource;
    void* (*inputSourceProperty)(TISInputSourceRef, CFStringRef) = &TISGetInputSourceProperty;
    UInt8 (*keyboardType)() = &LMGetKbdType;
    OSStatus (*translate)(const UCKeyboardLayout*, UInt16, UInt16, UInt32, UInt32, OptionBits, UInt32*,
                          UniCharCount, UniCharCount*, UniChar*) = &UCKeyTranslate;

    // The unified log.
    os_log_t (*makeLog)(const char*, const char*) = &os_log_create;
    void (*releaseLog)(void*) = &os_release;

    // Constants that have an address.
    const CFAllocatorRef* allocator = &kCFAllocatorDefault;
    const CFBooleanRef* yes = &kCFBooleanTrue;
    const CFBooleanRef* no = &kCFBooleanFalse;
    const CFDictionaryKeyCallBacks* keyCallBacks = &kCFTypeDictionaryKeyCallBacks;
    const CFDictionaryValueCallBacks* valueCallBacks = &kCFTypeDictionaryValueCallBacks;
    const CFRunLoopMode* commonModes = &kCFRunLoopCommonModes;
    const CFStringRef* promptOption = &kAXTrustedCheckOptionPrompt;
    const CFStringRef* layoutData = &kTISPropertyUnicodeKeyLayoutData;
    const mach_port_t* mainPort = &kIOMainPortDefault;
};

[[maybe_unused]] const Signatures signatures;

// The functions that the adapters hand to the system.
[[maybe_unused]] constexpr CGEventTapCallBack tapCallback = [](CGEventTapProxy, CGEventType, CGEventRef event,
                                                               void*) { return event; };
[[maybe_unused]] constexpr EventHandlerUPP eventHandler = [](EventHandlerCallRef, EventRef,
                                                             void*) -> OSStatus { return noErr; };
[[maybe_unused]] constexpr CFRunLoopTimerCallBack timerCallback = [](CFRunLoopTimerRef, void*) {};
[[maybe_unused]] constexpr CFMachPortInvalidationCallBack invalidationCallback = [](CFMachPortRef, void*) {};
[[maybe_unused]] constexpr CFNotificationCallback notificationCallback =
    [](CFNotificationCenterRef, void*, CFNotificationName, const void*, CFDictionaryRef) {};
[[maybe_unused]] constexpr dispatch_function_t queuedFunction = [](void*) {};
static_assert(std::is_same_v<decltype(CFRunLoopTimerContext::retain), const void* (*)(const void*)>);
static_assert(std::is_same_v<decltype(CFRunLoopTimerContext::release), void (*)(const void*)>);

} // namespace
} // namespace tarvex
