#pragma once

// What the adapters use of the accessibility interface, as Apple documents it, and Core Graphics with it.

#include "CoreFoundation/CoreFoundation.h"
#include "CoreGraphics/CoreGraphics.h"

typedef const struct OpaqueAXUIElement* AXUIElementRef;
typedef const struct OpaqueAXValue* AXValueRef;

enum AXError : SInt32 {
    kAXErrorSuccess = 0,
    kAXErrorFailure = -25200,
    kAXErrorIllegalArgument = -25201,
    kAXErrorInvalidUIElement = -25202,
    kAXErrorCannotComplete = -25204,
    kAXErrorAttributeUnsupported = -25205,
    kAXErrorAPIDisabled = -25211,
    kAXErrorNoValue = -25212,
};

enum AXValueType : UInt32 {
    kAXValueTypeIllegal = 0,
    kAXValueTypeCGPoint = 1,
    kAXValueTypeCGSize = 2,
    kAXValueTypeCGRect = 3,
};

extern "C" {

extern CFStringRef kAXTrustedCheckOptionPrompt;

Boolean AXIsProcessTrustedWithOptions(CFDictionaryRef options);

CFTypeID AXUIElementGetTypeID(void);
AXUIElementRef AXUIElementCreateSystemWide(void);
AXError AXUIElementCopyElementAtPosition(AXUIElementRef application, float x, float y,
                                         AXUIElementRef* element);
AXError AXUIElementCopyAttributeValue(AXUIElementRef element, CFStringRef attribute, CFTypeRef* value);
AXError AXUIElementSetAttributeValue(AXUIElementRef element, CFStringRef attribute, CFTypeRef value);
AXError AXUIElementSetMessagingTimeout(AXUIElementRef element, float seconds);

CFTypeID AXValueGetTypeID(void);
AXValueRef AXValueCreate(AXValueType type, const void* value);
AXValueType AXValueGetType(AXValueRef value);
Boolean AXValueGetValue(AXValueRef value, AXValueType type, void* result);
}
