#pragma once

// AppKit as the adapters use it, over GNUstep's: what that has under another name or not at all. Whatever
// shows on the screen there is GNUstep's own; what it has not is remembered, so that a test can ask for it.

#include_next <AppKit/AppKit.h>

// Newer names of the same constants.
enum : NSUInteger {
    NSEventModifierFlagCapsLock = NSAlphaShiftKeyMask,
    NSEventModifierFlagShift = NSShiftKeyMask,
    NSEventModifierFlagControl = NSControlKeyMask,
    NSEventModifierFlagOption = NSAlternateKeyMask,
    NSEventModifierFlagCommand = NSCommandKeyMask,
    NSEventMaskKeyDown = NSKeyDownMask,
};

constexpr NSButtonType NSButtonTypeSwitch = NSSwitchButton;
constexpr NSButtonType NSButtonTypeMomentaryPushIn = NSMomentaryPushInButton;

enum NSWindowAnimationBehavior : NSInteger {
    NSWindowAnimationBehaviorDefault = 0,
    NSWindowAnimationBehaviorNone = 2,
};

extern const CGFloat NSFontWeightLight;
extern const CGFloat NSFontWeightRegular;
extern const CGFloat NSFontWeightMedium;
extern const CGFloat NSFontWeightSemibold;
extern const CGFloat NSFontWeightBold;
extern const CGFloat NSFontWeightHeavy;
extern const CGFloat NSFontWeightBlack;

@interface NSFont (TarvexCompatibility)
+ (NSFont*)systemFontOfSize:(CGFloat)size weight:(CGFloat)weight;
+ (NSFont*)monospacedDigitSystemFontOfSize:(CGFloat)size weight:(CGFloat)weight;
@end

@interface NSColor (TarvexCompatibility)
+ (NSColor*)controlAccentColor;
@end

@interface NSScreen (TarvexCompatibility)
- (NSString*)localizedName;
@end

@class CALayer;

@interface NSAppearance (TarvexCompatibility)
- (void)performAsCurrentDrawingAppearance:(void (^)(void))block;
@end

@interface NSView (TarvexCompatibility)
- (void)setWantsLayer:(BOOL)wantsLayer;
- (CALayer*)layer;
- (void)addTrackingArea:(NSTrackingArea*)area;
- (NSArray*)trackingAreas;
- (void)setAccessibilityLabel:(NSString*)label;
- (NSString*)accessibilityLabel;
- (NSAppearance*)effectiveAppearance;
- (void)viewDidChangeEffectiveAppearance;
@end

@interface NSTextField (TarvexCompatibility)
- (NSString*)accessibilityValue;
@end

/// What assistive technology is shown of a control that has one.
@interface NSCell (TarvexCompatibility)
- (id)accessibilityValue;
- (void)setAccessibilityLabel:(NSString*)label;
- (NSString*)accessibilityLabel;
@end

@interface NSWindow (TarvexCompatibility)
- (void)setAnimationBehavior:(NSWindowAnimationBehavior)behavior;
- (NSWindowAnimationBehavior)animationBehavior;
- (void)setAccessibilityElement:(BOOL)isElement;
- (BOOL)isAccessibilityElement;
- (void)setAccessibilityTitle:(NSString*)title;
- (NSString*)accessibilityTitle;
@end

@interface NSButton (TarvexCompatibility)
- (void)setBezelColor:(NSColor*)color;
- (NSColor*)bezelColor;
- (void)setContentTintColor:(NSColor*)color;
- (NSColor*)contentTintColor;
@end

@interface NSEvent (TarvexCompatibility)
+ (id)addLocalMonitorForEventsMatchingMask:(NSUInteger)mask handler:(NSEvent* (^)(NSEvent*))handler;
+ (void)removeMonitor:(id)monitor;
@end

@interface NSApplication (TarvexCompatibility)
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy;
@end

extern NSString* const NSWorkspaceDidActivateApplicationNotification;
extern NSString* const NSWorkspaceApplicationKey;

@interface NSApplication (TarvexCompatibilityActivation)
- (void)yieldActivationToApplication:(NSRunningApplication*)application;
@end

@interface NSRunningApplication (TarvexCompatibility)
- (BOOL)activateFromApplication:(NSRunningApplication*)application
                        options:(NSApplicationActivationOptions)options;
@end

@interface NSImageSymbolConfiguration : NSObject {
    CGFloat pointSize_;
    CGFloat weight_;
}
+ (NSImageSymbolConfiguration*)configurationWithPointSize:(CGFloat)pointSize weight:(CGFloat)weight;
- (CGFloat)pointSize;
- (CGFloat)weight;
@end

@interface NSImage (TarvexCompatibility)
/// A picture for "rectangle.grid.2x2" alone.
+ (NSImage*)imageWithSystemSymbolName:(NSString*)name accessibilityDescription:(NSString*)description;
- (NSImage*)imageWithSymbolConfiguration:(NSImageSymbolConfiguration*)configuration;
- (NSImageSymbolConfiguration*)symbolConfiguration;
- (NSString*)accessibilityDescription;
- (void)setTemplate:(BOOL)isTemplate;
- (BOOL)isTemplate;
@end

@interface NSMenu (TarvexCompatibility)
- (void)removeAllItems;
@end

@interface NSStatusItem (TarvexCompatibility)
- (NSStatusBarButton*)button;
@end
