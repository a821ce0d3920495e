#pragma once

// What the adapters use of Core Foundation, as Apple documents it: types, constants, signatures.

#include "MacTypes.h"

typedef const void* CFTypeRef;
typedef const struct OpaqueCFAllocator* CFAllocatorRef;
typedef const struct OpaqueCFString* CFStringRef;
typedef struct OpaqueCFString* CFMutableStringRef;
typedef const struct OpaqueCFNumber* CFNumberRef;
typedef const struct OpaqueCFBoolean* CFBooleanRef;
typedef const struct OpaqueCFData* CFDataRef;
typedef const struct OpaqueCFDictionary* CFDictionaryRef;
typedef struct OpaqueCFDictionary* CFMutableDictionaryRef;
typedef const struct OpaqueCFLocale* CFLocaleRef;
typedef struct OpaqueCFRunLoop* CFRunLoopRef;
typedef struct OpaqueCFRunLoopSource* CFRunLoopSourceRef;
typedef struct OpaqueCFRunLoopTimer* CFRunLoopTimerRef;
typedef struct OpaqueCFMachPort* CFMachPortRef;
typedef struct OpaqueCFNotificationCenter* CFNotificationCenterRef;

typedef signed long CFIndex;
typedef unsigned long CFTypeID;
typedef unsigned long CFOptionFlags;
typedef unsigned long CFHashCode;
typedef UInt32 CFStringEncoding;
typedef double CFTimeInterval;
typedef CFTimeInterval CFAbsoluteTime;
typedef CFStringRef CFLocaleIdentifier;
typedef CFStringRef CFRunLoopMode;
typedef CFStringRef CFNotificationName;

struct CFRange {
    CFIndex location;
    CFIndex length;
};

enum CFStringBuiltInEncodings : CFStringEncoding {
    kCFStringEncodingUTF8 = 0x08000100,
};

enum CFNumberType : CFIndex {
    kCFNumberSInt32Type = 3,
    kCFNumberSInt64Type = 4,
    kCFNumberFloat64Type = 6,
};

enum CFNotificationSuspensionBehavior : CFIndex {
    CFNotificationSuspensionBehaviorDrop = 1,
    CFNotificationSuspensionBehaviorCoalesce = 2,
    CFNotificationSuspensionBehaviorHold = 3,
    CFNotificationSuspensionBehaviorDeliverImmediately = 4,
};

typedef void (*CFNotificationCallback)(CFNotificationCenterRef center, void* observer,
                                       CFNotificationName name, const void* object, CFDictionaryRef userInfo);
typedef void (*CFMachPortInvalidationCallBack)(CFMachPortRef port, void* info);

typedef const void* (*CFDictionaryRetainCallBack)(CFAllocatorRef allocator, const void* value);
typedef void (*CFDictionaryReleaseCallBack)(CFAllocatorRef allocator, const void* value);
typedef CFStringRef (*CFDictionaryCopyDescriptionCallBack)(const void* value);
typedef Boolean (*CFDictionaryEqualCallBack)(const void* value1, const void* value2);
typedef CFHashCode (*CFDictionaryHashCallBack)(const void* value);

struct CFDictionaryKeyCallBacks {
    CFIndex version;
    CFDictionaryRetainCallBack retain;
    CFDictionaryReleaseCallBack release;
    CFDictionaryCopyDescriptionCallBack copyDescription;
    CFDictionaryEqualCallBack equal;
    CFDictionaryHashCallBack hash;
};

struct CFDictionaryValueCallBacks {
    CFIndex version;
    CFDictionaryRetainCallBack retain;
    CFDictionaryReleaseCallBack release;
    CFDictionaryCopyDescriptionCallBack copyDescription;
    CFDictionaryEqualCallBack equal;
};

typedef void (*CFRunLoopTimerCallBack)(CFRunLoopTimerRef timer, void* info);

struct CFRunLoopTimerContext {
    CFIndex version;
    void* info;
    const void* (*retain)(const void* info);
    void (*release)(const void* info);
    CFStringRef (*copyDescription)(const void* info);
};

extern "C" {

extern const CFAllocatorRef kCFAllocatorDefault;
extern const CFBooleanRef kCFBooleanTrue;
extern const CFBooleanRef kCFBooleanFalse;
extern const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks;
extern const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks;
extern const CFRunLoopMode kCFRunLoopCommonModes;

CFTypeRef CFRetain(CFTypeRef object);
void CFRelease(CFTypeRef object);
CFTypeID CFGetTypeID(CFTypeRef object);

CFTypeID CFStringGetTypeID(void);
CFStringRef CFStringCreateWithBytes(CFAllocatorRef allocator, const UInt8* bytes, CFIndex byteCount,
                                    CFStringEncoding encoding, Boolean isExternalRepresentation);
CFStringRef CFStringCreateWithCharacters(CFAllocatorRef allocator, const UniChar* characters, CFIndex count);
CFIndex CFStringGetLength(CFStringRef string);
CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
                         Boolean isExternalRepresentation, UInt8* buffer, CFIndex capacity, CFIndex* used);
CFMutableStringRef CFStringCreateMutableCopy(CFAllocatorRef allocator, CFIndex maxLength, CFStringRef string);
void CFStringUppercase(CFMutableStringRef string, CFLocaleRef locale);

CFTypeID CFNumberGetTypeID(void);
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value);

CFTypeID CFDataGetTypeID(void);
const UInt8* CFDataGetBytePtr(CFDataRef data);
CFIndex CFDataGetLength(CFDataRef data);

CFTypeID CFDictionaryGetTypeID(void);
CFDictionaryRef CFDictionaryCreate(CFAllocatorRef allocator, const void** keys, const void** values,
                                   CFIndex count, const CFDictionaryKeyCallBacks* keyCallBacks,
                                   const CFDictionaryValueCallBacks* valueCallBacks);
CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary);
const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key);
void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary, const void** keys, const void** values);

CFLocaleRef CFLocaleCopyCurrent(void);
CFLocaleIdentifier CFLocaleGetIdentifier(CFLocaleRef locale);

CFAbsoluteTime CFAbsoluteTimeGetCurrent(void);

CFRunLoopRef CFRunLoopGetMain(void);
void CFRunLoopAddSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFRunLoopMode mode);
void CFRunLoopRemoveSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFRunLoopMode mode);
void CFRunLoopAddTimer(CFRunLoopRef loop, CFRunLoopTimerRef timer, CFRunLoopMode mode);
CFRunLoopTimerRef CFRunLoopTimerCreate(CFAllocatorRef allocator, CFAbsoluteTime fireDate,
                                       CFTimeInterval interval, CFOptionFlags flags, CFIndex order,
                                       CFRunLoopTimerCallBack callout, CFRunLoopTimerContext* context);
void CFRunLoopTimerInvalidate(CFRunLoopTimerRef timer);

CFRunLoopSourceRef CFMachPortCreateRunLoopSource(CFAllocatorRef allocator, CFMachPortRef port, CFIndex order);
void CFMachPortInvalidate(CFMachPortRef port);
CFMachPortInvalidationCallBack CFMachPortGetInvalidationCallBack(CFMachPortRef port);
void CFMachPortSetInvalidationCallBack(CFMachPortRef port, CFMachPortInvalidationCallBack callout);

CFNotificationCenterRef CFNotificationCenterGetLocalCenter(void);
CFNotificationCenterRef CFNotificationCenterGetDistributedCenter(void);
void CFNotificationCenterAddObserver(CFNotificationCenterRef center, const void* observer,
                                     CFNotificationCallback callback, CFStringRef name, const void* object,
                                     CFNotificationSuspensionBehavior suspension);
void CFNotificationCenterRemoveObserver(CFNotificationCenterRef center, const void* observer,
                                        CFNotificationName name, const void* object);
void CFNotificationCenterPostNotification(CFNotificationCenterRef center, CFNotificationName name,
                                          const void* object, CFDictionaryRef userInfo,
                                          Boolean deliverImmediately);
}
