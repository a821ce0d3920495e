#include "Platform/MacOS/AppKit/AppKitApplication.h"

#include "Platform/MacOS/AppKit/Guarded.h"
#include "Platform/MacOS/AppKit/ObjCHandle.h"

#import <AppKit/AppKit.h>

using tarvex::AppDelegate;

/// Hands what the system tells on to the portable delegate.
@interface TarvexApplicationDelegate : NSObject <NSApplicationDelegate> {
    AppDelegate* delegate_;
}
- (instancetype)initWithDelegate:(AppDelegate*)delegate;
@end

@implementation TarvexApplicationDelegate

- (instancetype)initWithDelegate:(AppDelegate*)delegate {
    self = [super init];
    if (self != nil) {
        delegate_ = delegate;
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

@end

namespace tarvex {

void prepareApplication() {
    @autoreleasepool {
        [[NSApplication sharedApplication] setActivationPolicy:NSApplicationActivationPolicyAccessory];
    }
}

void runApplication(AppDelegate& delegate) {
    @autoreleasepool {
        const auto receiver = ObjCHandle<TarvexApplicationDelegate*>::adopt(
            [[TarvexApplicationDelegate alloc] initWithDelegate:&delegate]);
        NSApplication* const application = [NSApplication sharedApplication];
        [application setDelegate:receiver.get()];
        [application run];
        [application setDelegate:nil];
    }
}

void terminateApplication() {
    [NSApp terminate:nil];
}

} // namespace tarvex
