#pragma once

// What the adapters use of Foundation, as Apple documents it: types, constants, signatures.

#include <CoreGraphics/CGGeometry.h>
#include <stddef.h>

#if __OBJC_BOOL_IS_BOOL
typedef bool BOOL;
#else
typedef signed char BOOL;
#endif
#define YES __objc_yes
#define NO __objc_no
#define nil nullptr

typedef long NSInteger;
typedef unsigned long NSUInteger;
typedef unsigned short unichar;
typedef double NSTimeInterval;
typedef CGPoint NSPoint;
typedef CGSize NSSize;
typedef CGRect NSRect;

inline constexpr NSInteger NSNotFound = 0x7fffffffffffffff;

struct NSRange {
    NSUInteger location;
    NSUInteger length;
};

inline NSRange NSMakeRange(NSUInteger location, NSUInteger length) {
    return {location, length};
}

inline NSPoint NSMakePoint(CGFloat x, CGFloat y) {
    return {x, y};
}

inline NSSize NSMakeSize(CGFloat width, CGFloat height) {
    return {width, height};
}

inline NSRect NSMakeRect(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
    return {{x, y}, {width, height}};
}

extern "C" const NSRect NSZeroRect;

@class NSArray;
@class NSData;
@class NSDictionary;
@class NSError;
@class NSString;

@protocol NSObject
- (Class)class;
- (BOOL)isKindOfClass:(Class)aClass;
- (BOOL)isEqual:(id)object;
- (instancetype)self;
#if !__has_feature(objc_arc)
- (instancetype)retain;
- (oneway void)release;
- (instancetype)autorelease;
#endif
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject>
+ (instancetype)alloc;
+ (Class)class;
- (instancetype)init;
- (void)dealloc;
- (void)performSelector:(SEL)selector withObject:(id)argument afterDelay:(NSTimeInterval)delay;
@end

typedef NSUInteger NSStringEncoding;

enum : NSStringEncoding {
    NSUTF8StringEncoding = 4,
    NSISOLatin1StringEncoding = 5,
};

@interface NSCharacterSet : NSObject
+ (NSCharacterSet*)alphanumericCharacterSet;
@end

@interface NSString : NSObject
+ (instancetype)stringWithContentsOfFile:(NSString*)path
                                encoding:(NSStringEncoding)encoding
                                   error:(NSError* __autoreleasing*)error;
- (instancetype)initWithBytes:(const void*)bytes
                       length:(NSUInteger)length
                     encoding:(NSStringEncoding)encoding;
- (NSData*)dataUsingEncoding:(NSStringEncoding)encoding allowLossyConversion:(BOOL)lossy;
- (NSRange)rangeOfCharacterFromSet:(NSCharacterSet*)set;
- (NSString*)pathExtension;
- (NSString*)lowercaseString;
- (BOOL)isEqualToString:(NSString*)string;
- (NSString*)stringByAppendingPathComponent:(NSString*)component;
@end

@interface NSAttributedString : NSObject
- (instancetype)initWithString:(NSString*)string attributes:(NSDictionary*)attributes;
- (instancetype)initWithAttributedString:(NSAttributedString*)string;
- (NSUInteger)length;
@end

@interface NSMutableAttributedString : NSAttributedString
- (void)addAttribute:(NSString*)name value:(id)value range:(NSRange)range;
@end

@interface NSData : NSObject
- (NSUInteger)length;
- (const void*)bytes;
@end

struct NSFastEnumerationState {
    unsigned long state;
    __unsafe_unretained id* itemsPtr;
    unsigned long* mutationsPtr;
    unsigned long extra[5];
};

@interface NSArray : NSObject
- (NSUInteger)count;
- (id)objectAtIndex:(NSUInteger)index;
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(__unsafe_unretained id*)buffer
                                    count:(NSUInteger)length;
@end

@interface NSMutableArray : NSArray
- (void)addObject:(id)object;
@end

@interface NSDictionary : NSObject
- (id)objectForKey:(id)key;
@end

@interface NSMutableDictionary : NSDictionary
- (void)setObject:(id)object forKey:(id)key;
@end

@interface NSNumber : NSObject
+ (NSNumber*)numberWithUnsignedInt:(unsigned int)value;
- (unsigned int)unsignedIntValue;
@end

@interface NSURL : NSObject
- (NSString*)path;
@end

@interface NSError : NSObject
- (NSString*)localizedDescription;
@end

@interface NSBundle : NSObject
+ (NSBundle*)mainBundle;
- (NSString*)bundlePath;
- (NSDictionary*)infoDictionary;
- (NSString*)pathForResource:(NSString*)name ofType:(NSString*)extension;
@end

enum NSSearchPathDirectory : NSUInteger {
    NSLibraryDirectory = 5,
    NSApplicationSupportDirectory = 14,
};

typedef NSUInteger NSSearchPathDomainMask;

enum : NSSearchPathDomainMask {
    NSUserDomainMask = 1,
};

@interface NSFileManager : NSObject
+ (NSFileManager*)defaultManager;
- (NSURL*)URLForDirectory:(NSSearchPathDirectory)directory
                 inDomain:(NSSearchPathDomainMask)domain
        appropriateForURL:(NSURL*)url
                   create:(BOOL)create
                    error:(NSError* __autoreleasing*)error;
- (NSArray*)URLsForDirectory:(NSSearchPathDirectory)directory inDomains:(NSSearchPathDomainMask)domains;
@end

@interface NSNotification : NSObject
- (NSDictionary*)userInfo;
@end

@interface NSNotificationCenter : NSObject
+ (NSNotificationCenter*)defaultCenter;
- (void)addObserver:(id)observer selector:(SEL)selector name:(NSString*)name object:(id)object;
- (void)removeObserver:(id)observer;
@end

typedef unsigned long long NSActivityOptions;

enum : NSActivityOptions {
    NSActivityIdleDisplaySleepDisabled = 1ULL << 40,
    NSActivityIdleSystemSleepDisabled = 1ULL << 20,
    NSActivityUserInitiated = 0x00FFFFFFULL | NSActivityIdleSystemSleepDisabled,
    NSActivityUserInitiatedAllowingIdleSystemSleep =
        NSActivityUserInitiated & ~NSActivityIdleSystemSleepDisabled,
};

@interface NSProcessInfo : NSObject
+ (NSProcessInfo*)processInfo;
- (id<NSObject>)beginActivityWithOptions:(NSActivityOptions)options reason:(NSString*)reason;
- (void)endActivity:(id<NSObject>)activity;
@end

extern "C" void NSLog(NSString* format, ...) __attribute__((format(__NSString__, 1, 2)));
extern "C" NSString* NSHomeDirectory(void);
