#include "Platform/MacOS/AppKit/AppKitApplication.h"

#include "Platform/MacOS/AppKit/Guarded.h"
#include "Platform/MacOS/AppKit/ObjCHandle.h"

#import <AppKit/AppKit.h>

using tarvex::AppDelegate;

/// Hands what the system tells on to the portable delegate, which outlives it.
@interface TarvexApplicationDelegate : NSObject <NSApplicationDelegate> {
    AppDelegate* delegate_;
    const std::function<void()>* reopened_;
}
- (instancetype)initWithDelegate:(AppDelegate*)delegate reopened:(const std::function<void()>*)reopened;
@end

@implementation TarvexApplicationDelegate

- (instancetype)initWithDelegate:(AppDelegate*)delegate reopened:(const std::function<void()>*)reopened {
    self = [super init];
    if (self != nil) {
        delegate_ = delegate;
        reopened_ = reopened;
    }
    return self;
}

- (void)applicationDidFinishLaunching:(NSNotification*)notification {
    static_cast<void>(notification);
    tarvex::callGuarded([delegate = delegate_] { delegate->applicationDidFinishLaunching(); });
}

- (BOOL)applicationShouldTerminateAfterLastWindowClosed:(NSApplication*)application {
    static_cast<void>(application);
    return AppDelegate::applicationShouldTerminateAfterLastWindowClosed() ? YES : NO;
}

// No leaves nothing of it for the application object to do.
- (BOOL)applicationShouldHandleReopen:(NSApplication*)application hasVisibleWindows:(BOOL)hasVisibleWindows {
    static_cast<void>(application);
    static_cast<void>(hasVisibleWindows);
    tarvex::callGuarded(*reopened_);
    return NO;
}

// The system writes a warning for a program that does not say so.
- (BOOL)applicationSupportsSecureRestorableState:(NSApplication*)application {
    static_cast<void>(application);
    return YES;
}

@end

namespace tarvex {

void prepareApplication() {
    @autoreleasepool {
        [[NSApplication sharedApplication] setActivationPolicy:NSApplicationActivationPolicyAccessory];
    }
}

void runApplication(AppDelegate& delegate, std::function<void()> reopened) {
    @autoreleasepool {
        const auto receiver = ObjCHandle<TarvexApplicationDelegate*>::adopt(
            [[TarvexApplicationDelegate alloc] initWithDelegate:&delegate reopened:&reopened]);
        NSApplication* const application = [NSApplication sharedApplication];
        [application setDelegate:receiver.get()];
        [application run];
        [application setDelegate:nil];
    }
}

// The call is there on every macOS. In practice it still activates where the one that macOS 14 brought in its
// place declines, as for a hotkey that was pressed in another program.
void activateApplication() {
    @autoreleasepool {
        [NSApp activateIgnoringOtherApps:YES];
    }
}

void terminateApplication() {
    [NSApp terminate:nil];
}

} // namespace tarvex
