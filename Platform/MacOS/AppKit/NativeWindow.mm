#include "Platform/MacOS/AppKit/NativeWindow.h"

#include "Platform/MacOS/AppKit/NativeColors.h"
#include "Platform/MacOS/AppKit/NativeGeometry.h"

#import <QuartzCore/QuartzCore.h>

@implementation TarvexWindow

- (void)tarvexSetCanBecomeKey:(BOOL)canBecomeKey main:(BOOL)canBecomeMain {
    canBecomeKey_ = canBecomeKey;
    canBecomeMain_ = canBecomeMain;
}

- (BOOL)canBecomeKeyWindow {
    return canBecomeKey_;
}

- (BOOL)canBecomeMainWindow {
    return canBecomeMain_;
}

- (NSRect)constrainFrameRect:(NSRect)frameRect toScreen:(NSScreen*)screen {
    static_cast<void>(screen);
    return frameRect;
}

@end

namespace tarvex {

ObjCHandle<TarvexWindow*> makeNativeWindow(const WindowAttributes& attributes, NSView* content) {
    auto handle = ObjCHandle<TarvexWindow*>::adopt([[TarvexWindow alloc]
        initWithContentRect:nativeRect(attributes.contentRect)
                  styleMask:static_cast<NSWindowStyleMask>(attributes.styleMask)
                    backing:static_cast<NSBackingStoreType>(attributes.backing)
                      defer:attributes.isDeferred ? YES : NO]);
    TarvexWindow* const window = handle.get();
    [window setReleasedWhenClosed:NO];
    [window setCanHide:NO];
    [window tarvexSetCanBecomeKey:attributes.canBecomeKey ? YES : NO
                             main:attributes.canBecomeMain ? YES : NO];
    [window setOpaque:attributes.isOpaque ? YES : NO];
    [window setBackgroundColor:nativeColor(attributes.backgroundColor)];
    [window setLevel:attributes.level];
    [window setCollectionBehavior:static_cast<NSWindowCollectionBehavior>(attributes.collectionBehavior)];
    [window setHasShadow:attributes.hasShadow ? YES : NO];
    [window setIgnoresMouseEvents:attributes.ignoresMouseEvents ? YES : NO];
    [window setAcceptsMouseMovedEvents:attributes.acceptsMouseMovedEvents ? YES : NO];
    if (attributes.ignoresMouseEvents) {
        [window setAccessibilityElement:NO];
    }
    [window setAnimationBehavior:NSWindowAnimationBehaviorNone];
    [window setContentView:content];
    // A window without them arranges its views for the tabulator itself when it first shows.
    [window setAutorecalculatesKeyViewLoop:NO];
    [window setInitialFirstResponder:content];
    return handle;
}

void handOverPicture(NSWindow* window) {
    [window displayIfNeeded];
    [CATransaction flush];
}

} // namespace tarvex
