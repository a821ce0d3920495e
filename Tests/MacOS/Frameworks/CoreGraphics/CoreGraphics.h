#pragma once

// What the adapters use of Core Graphics, as Apple documents it: event taps and displays.

#include "CoreFoundation/CoreFoundation.h"
#include "CoreGraphics/CGGeometry.h"

// The Mach type is unsigned on Intel and signed on ARM.
#if defined(__x86_64__)
typedef unsigned int boolean_t;
#else
typedef int boolean_t;
#endif

typedef struct OpaqueCGEvent* CGEventRef;
typedef struct OpaqueCGEventTapProxy* CGEventTapProxy;
typedef uint64_t CGEventMask;
typedef uint32_t CGDirectDisplayID;

enum CGError : int32_t {
    kCGErrorSuccess = 0,
    kCGErrorFailure = 1000,
    kCGErrorIllegalArgument = 1001,
    kCGErrorInvalidConnection = 1002,
    kCGErrorCannotComplete = 1004,
};

enum CGEventType : uint32_t {
    kCGEventNull = 0,
    kCGEventLeftMouseDown = 1,
    kCGEventLeftMouseUp = 2,
    kCGEventRightMouseDown = 3,
    kCGEventRightMouseUp = 4,
    kCGEventMouseMoved = 5,
    kCGEventLeftMouseDragged = 6,
    kCGEventKeyDown = 10,
    kCGEventKeyUp = 11,
    kCGEventFlagsChanged = 12,
    kCGEventScrollWheel = 22,
    kCGEventTapDisabledByTimeout = 0xFFFFFFFE,
    kCGEventTapDisabledByUserInput = 0xFFFFFFFF,
};

// A set of options is a plain integer in C++.
typedef uint64_t CGEventFlags;

enum : CGEventFlags {
    kCGEventFlagMaskAlphaShift = 0x10000,
    kCGEventFlagMaskShift = 0x20000,
    kCGEventFlagMaskControl = 0x40000,
    kCGEventFlagMaskAlternate = 0x80000,
    kCGEventFlagMaskCommand = 0x100000,
};

enum CGEventTapLocation : uint32_t {
    kCGHIDEventTap = 0,
    kCGSessionEventTap = 1,
    kCGAnnotatedSessionEventTap = 2,
};

enum CGEventTapPlacement : uint32_t {
    kCGHeadInsertEventTap = 0,
    kCGTailAppendEventTap = 1,
};

enum CGEventTapOptions : uint32_t {
    kCGEventTapOptionDefault = 0,
    kCGEventTapOptionListenOnly = 1,
};

enum CGEventSourceStateID : int32_t {
    kCGEventSourceStateCombinedSessionState = 0,
    kCGEventSourceStateHIDSystemState = 1,
};

enum CGMouseButton : uint32_t {
    kCGMouseButtonLeft = 0,
    kCGMouseButtonRight = 1,
};

typedef CGEventRef (*CGEventTapCallBack)(CGEventTapProxy proxy, CGEventType type, CGEventRef event,
                                         void* userInfo);

extern "C" {

bool CGPreflightListenEventAccess(void);
bool CGRequestListenEventAccess(void);
CFMachPortRef CGEventTapCreate(CGEventTapLocation location, CGEventTapPlacement placement,
                               CGEventTapOptions options, CGEventMask mask, CGEventTapCallBack callback,
                               void* userInfo);
void CGEventTapEnable(CFMachPortRef tap, bool isEnabled);
CGEventFlags CGEventGetFlags(CGEventRef event);
bool CGEventSourceButtonState(CGEventSourceStateID state, CGMouseButton button);

CGError CGGetActiveDisplayList(uint32_t capacity, CGDirectDisplayID* displays, uint32_t* count);
uint32_t CGDisplayVendorNumber(CGDirectDisplayID display);
uint32_t CGDisplayModelNumber(CGDirectDisplayID display);
uint32_t CGDisplaySerialNumber(CGDirectDisplayID display);
CGRect CGDisplayBounds(CGDirectDisplayID display);
boolean_t CGDisplayIsBuiltin(CGDirectDisplayID display);
boolean_t CGDisplayIsOnline(CGDirectDisplayID display);
}
