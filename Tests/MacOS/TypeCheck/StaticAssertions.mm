// Every constant and every C function of AppKit and its like that the adapters rely on. Here this holds the
// declarations in Frameworks/ to what Apple documents; compiled on a Mac, it holds Apple's own headers to it,
// so that a difference is an error of the compiler and not of a running program.

#import <QuartzCore/QuartzCore.h>

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>
#import <ServiceManagement/ServiceManagement.h>
#include <type_traits>

namespace tarvex {
namespace {

// Basic types.
static_assert(sizeof(NSInteger) == 8 && std::is_signed_v<NSInteger>);
static_assert(sizeof(NSUInteger) == 8 && std::is_unsigned_v<NSUInteger>);
static_assert(sizeof(BOOL) == 1);
static_assert(std::is_same_v<CGFloat, double>);
static_assert(std::is_same_v<NSPoint, CGPoint> && std::is_same_v<NSSize, CGSize> &&
              std::is_same_v<NSRect, CGRect>);

// Foundation.
static_assert(NSUTF8StringEncoding == 4);
static_assert(NSISOLatin1StringEncoding == 5);
static_assert(NSLibraryDirectory == 5);
static_assert(NSApplicationSupportDirectory == 14);
static_assert(NSUserDomainMask == 1);
static_assert(NSNotFound == 0x7fffffffffffffff);

static_assert(NSActivityUserInitiatedAllowingIdleSystemSleep == 0xEFFFFF);
// The Mac and its screen may still go to sleep.
static_assert((NSActivityUserInitiatedAllowingIdleSystemSleep &
               (NSActivityIdleSystemSleepDisabled | NSActivityIdleDisplaySleepDisabled)) == 0);

// Events.
static_assert(NSEventMaskKeyDown == 1 << 10);
static_assert(NSEventModifierFlagCapsLock == 0x10000);
static_assert(NSEventModifierFlagShift == 0x20000);
static_assert(NSEventModifierFlagControl == 0x40000);
static_assert(NSEventModifierFlagOption == 0x80000);
static_assert(NSEventModifierFlagCommand == 0x100000);
static_assert((NSTrackingMouseEnteredAndExited | NSTrackingMouseMoved | NSTrackingActiveAlways |
               NSTrackingInVisibleRect | NSTrackingEnabledDuringMouseDrag) == 0x683);

// Windows.
static_assert(NSWindowStyleMaskBorderless == 0);
static_assert((NSWindowStyleMaskTitled | NSWindowStyleMaskClosable) == 3);
static_assert(NSBackingStoreBuffered == 2);
static_assert((NSWindowCollectionBehaviorCanJoinAllSpaces | NSWindowCollectionBehaviorFullScreenAuxiliary) ==
              257);
static_assert(NSWindowAnimationBehaviorNone == 2);
static_assert(NSApplicationActivationPolicyAccessory == 1);

// Controls.
static_assert(NSTextAlignmentNatural == 4);
static_assert(NSLineBreakByWordWrapping == 0);
static_assert(NSLineBreakByClipping == 2);
static_assert(NSControlStateValueOff == 0 && NSControlStateValueOn == 1);
static_assert(NSImageOnly == 1);
static_assert(NSButtonTypeSwitch == 3);
static_assert(NSButtonTypeMomentaryPushIn == 7);
static_assert(NSBezelStyleRounded == 1);
// The compiler of a Mac may not take it for a constant.
[[maybe_unused]] const CGFloat variableLength = NSVariableStatusItemLength;

// Login items.
static_assert(SMAppServiceStatusNotRegistered == 0);
static_assert(SMAppServiceStatusEnabled == 1);
static_assert(SMAppServiceStatusRequiresApproval == 2);
static_assert(SMAppServiceStatusNotFound == 3);

/// Signatures.
struct Signatures {
    NSRange (*makeRange)(NSUInteger, NSUInteger) = &NSMakeRange;
    NSPoint (*makePoint)(CGFloat, CGFloat) = &NSMakePoint;
    NSSize (*makeSize)(CGFloat, CGFloat) = &NSMakeSize;
    NSRect (*makeRect)(CGFloat, CGFloat, CGFloat, CGFloat) = &NSMakeRect;
    NSString* (*homeFolder)() = &NSHomeDirectory;
    void (*log)(NSString*, ...) = &NSLog;
    const NSRect* zeroRect = &NSZeroRect;
};

[[maybe_unused]] const Signatures signatures;

} // namespace
} // namespace tarvex
