#pragma once

// The application, its events, screens, windows and views.

#include <Foundation/Foundation.h>

@class CALayer;
@class NSAppearance;
@class NSColor;
@class NSView;
@class NSWindow;

typedef NSUInteger NSEventModifierFlags;

enum : NSEventModifierFlags {
    NSEventModifierFlagCapsLock = 1 << 16,
    NSEventModifierFlagShift = 1 << 17,
    NSEventModifierFlagControl = 1 << 18,
    NSEventModifierFlagOption = 1 << 19,
    NSEventModifierFlagCommand = 1 << 20,
};

enum NSEventMask : unsigned long long {
    NSEventMaskKeyDown = 1ULL << 10,
};

@interface NSEvent : NSObject
+ (NSPoint)mouseLocation;
+ (NSUInteger)pressedMouseButtons;
+ (id)addLocalMonitorForEventsMatchingMask:(NSEventMask)mask handler:(NSEvent* (^)(NSEvent* event))handler;
+ (void)removeMonitor:(id)monitor;
- (NSEventModifierFlags)modifierFlags;
- (NSTimeInterval)timestamp;
- (NSPoint)locationInWindow;
- (unsigned short)keyCode;
- (NSString*)characters;
@end

@interface NSResponder : NSObject
- (BOOL)acceptsFirstResponder;
- (void)mouseDown:(NSEvent*)event;
- (void)mouseDragged:(NSEvent*)event;
- (void)mouseUp:(NSEvent*)event;
- (void)mouseMoved:(NSEvent*)event;
- (void)mouseEntered:(NSEvent*)event;
- (void)mouseExited:(NSEvent*)event;
- (void)rightMouseDown:(NSEvent*)event;
- (void)keyDown:(NSEvent*)event;
- (BOOL)performKeyEquivalent:(NSEvent*)event;
@end

typedef NSUInteger NSTrackingAreaOptions;

enum : NSTrackingAreaOptions {
    NSTrackingMouseEnteredAndExited = 0x01,
    NSTrackingMouseMoved = 0x02,
    NSTrackingActiveAlways = 0x80,
    NSTrackingInVisibleRect = 0x200,
    NSTrackingEnabledDuringMouseDrag = 0x400,
};

@interface NSTrackingArea : NSObject
- (instancetype)initWithRect:(NSRect)rect
                     options:(NSTrackingAreaOptions)options
                       owner:(id)owner
                    userInfo:(NSDictionary*)userInfo;
@end

@interface NSView : NSResponder
- (instancetype)initWithFrame:(NSRect)frame;
- (NSRect)bounds;
- (void)setFrame:(NSRect)frame;
- (void)setHidden:(BOOL)hidden;
- (void)setAlphaValue:(CGFloat)alpha;
- (void)setToolTip:(NSString*)toolTip;
- (void)setAccessibilityLabel:(NSString*)label;
- (NSAppearance*)effectiveAppearance;
- (void)viewDidChangeEffectiveAppearance;
- (void)setWantsLayer:(BOOL)wantsLayer;
- (CALayer*)layer;
- (BOOL)isOpaque;
- (BOOL)acceptsFirstMouse:(NSEvent*)event;
- (NSPoint)convertPoint:(NSPoint)point fromView:(NSView*)view;
- (void)setSubviews:(NSArray*)views;
- (void)setNextKeyView:(NSView*)view;
- (void)removeFromSuperview;
- (void)addTrackingArea:(NSTrackingArea*)area;
- (void)drawRect:(NSRect)dirtyRect;
- (void)setNeedsDisplay:(BOOL)needsDisplay;
@end

@interface NSScreen : NSObject
+ (NSArray*)screens;
+ (NSScreen*)mainScreen;
- (NSRect)frame;
- (NSRect)visibleFrame;
- (NSDictionary*)deviceDescription;
- (NSString*)localizedName;
@end

enum NSWindowStyleMask : NSUInteger {
    NSWindowStyleMaskBorderless = 0,
    NSWindowStyleMaskTitled = 1 << 0,
    NSWindowStyleMaskClosable = 1 << 1,
};

enum NSBackingStoreType : NSUInteger {
    NSBackingStoreBuffered = 2,
};

typedef NSInteger NSWindowLevel;

enum NSWindowCollectionBehavior : NSUInteger {
    NSWindowCollectionBehaviorCanJoinAllSpaces = 1 << 0,
    NSWindowCollectionBehaviorFullScreenAuxiliary = 1 << 8,
};

enum NSWindowAnimationBehavior : NSInteger {
    NSWindowAnimationBehaviorDefault = 0,
    NSWindowAnimationBehaviorNone = 2,
};

@interface NSWindow : NSResponder
- (instancetype)initWithContentRect:(NSRect)contentRect
                          styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backing
                              defer:(BOOL)isDeferred;
- (NSRect)constrainFrameRect:(NSRect)frameRect toScreen:(NSScreen*)screen;
- (NSRect)frame;
- (NSWindowStyleMask)styleMask;
- (NSString*)title;
- (void)setTitle:(NSString*)title;
- (NSView*)contentView;
- (void)setContentView:(NSView*)view;
- (void)setReleasedWhenClosed:(BOOL)isReleased;
- (void)setOpaque:(BOOL)isOpaque;
- (void)setBackgroundColor:(NSColor*)color;
- (void)setLevel:(NSWindowLevel)level;
- (void)setCollectionBehavior:(NSWindowCollectionBehavior)behavior;
- (void)setAnimationBehavior:(NSWindowAnimationBehavior)behavior;
- (void)setHasShadow:(BOOL)hasShadow;
- (void)setIgnoresMouseEvents:(BOOL)ignores;
- (void)setAcceptsMouseMovedEvents:(BOOL)accepts;
- (void)setCanHide:(BOOL)canHide;
- (void)setAccessibilityElement:(BOOL)isElement;
- (void)setAccessibilityTitle:(NSString*)title;
- (NSResponder*)firstResponder;
- (void)selectKeyViewFollowingView:(NSView*)view;
- (void)setAutorecalculatesKeyViewLoop:(BOOL)recalculates;
- (void)setInitialFirstResponder:(NSView*)view;
- (BOOL)canBecomeKeyWindow;
- (BOOL)canBecomeMainWindow;
- (BOOL)isKeyWindow;
- (BOOL)isVisible;
- (BOOL)makeFirstResponder:(NSResponder*)responder;
- (void)makeKeyAndOrderFront:(id)sender;
- (void)orderFront:(id)sender;
- (void)orderOut:(id)sender;
- (void)displayIfNeeded;
- (void)center;
- (void)performClose:(id)sender;
- (void)close;
@end

enum NSApplicationActivationPolicy : NSInteger {
    NSApplicationActivationPolicyRegular = 0,
    NSApplicationActivationPolicyAccessory = 1,
};

typedef NSUInteger NSApplicationActivationOptions;

@interface NSRunningApplication : NSObject
+ (NSRunningApplication*)currentApplication;
- (NSString*)bundleIdentifier;
- (BOOL)isTerminated;
- (BOOL)activateWithOptions:(NSApplicationActivationOptions)options;
- (BOOL)activateFromApplication:(NSRunningApplication*)application
                        options:(NSApplicationActivationOptions)options
    __attribute__((availability(macos, introduced = 14.0)));
@end

@interface NSWorkspace : NSObject
+ (NSWorkspace*)sharedWorkspace;
- (NSNotificationCenter*)notificationCenter;
- (NSRunningApplication*)frontmostApplication;
@end

extern "C" NSString* const NSWorkspaceDidActivateApplicationNotification;
extern "C" NSString* const NSWorkspaceApplicationKey;

@class NSApplication;

@protocol NSApplicationDelegate <NSObject>
@optional
- (void)applicationDidFinishLaunching:(NSNotification*)notification;
- (BOOL)applicationShouldTerminateAfterLastWindowClosed:(NSApplication*)application;
- (BOOL)applicationShouldHandleReopen:(NSApplication*)application hasVisibleWindows:(BOOL)hasVisibleWindows;
- (BOOL)applicationSupportsSecureRestorableState:(NSApplication*)application
    __attribute__((availability(macos, introduced = 12.0)));
@end

@interface NSApplication : NSResponder
+ (NSApplication*)sharedApplication;
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy;
- (void)setDelegate:(id<NSApplicationDelegate>)delegate;
- (void)activateIgnoringOtherApps:(BOOL)ignores
    __attribute__((availability(macos, introduced = 10.0, deprecated = 27.0)));
- (void)yieldActivationToApplication:(NSRunningApplication*)application
    __attribute__((availability(macos, introduced = 14.0)));
- (BOOL)isActive;
- (NSArray*)windows;
- (NSWindow*)keyWindow;
- (void)run;
- (void)terminate:(id)sender;
@end

extern "C" NSApplication* NSApp;
extern "C" NSString* const NSApplicationDidChangeScreenParametersNotification;
