#include "Platform/MacOS/AppKit/ObjCHandle.h"
#include "Tests/MacOS/GNUstep/Compatibility.h"

#include <algorithm>
#include <vector>

using tarvex::ObjCHandle;

namespace {

int activationCount = 0;
/// Whom this program lets become active.
NSRunningApplication* yieldedTo = nil;

ObjCHandle<NSRunningApplication*>& applicationInFront() {
    static auto application =
        ObjCHandle<NSRunningApplication*>::adopt([[TarvexTestRunningApplication alloc] init]);
    return application;
}

struct Activity {
    ObjCHandle<id> token;
    NSActivityOptions options;
};

std::vector<Activity>& activities() {
    static std::vector<Activity> activities;
    return activities;
}

} // namespace

NSString* const NSWorkspaceDidActivateApplicationNotification =
    @"NSWorkspaceDidActivateApplicationNotification";
NSString* const NSWorkspaceApplicationKey = @"NSWorkspaceApplicationKey";

@implementation NSApplication (TarvexCompatibilityActivation)

- (void)yieldActivationToApplication:(NSRunningApplication*)application {
    yieldedTo = application;
}

@end

@implementation NSRunningApplication (TarvexCompatibility)

- (BOOL)activateFromApplication:(NSRunningApplication*)application
                        options:(NSApplicationActivationOptions)options {
    static_cast<void>(application);
    static_cast<void>(options);
    return NO;
}

@end

// The classes' own methods are to be replaced: GNUstep's ask other processes.
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wobjc-protocol-method-implementation"

@implementation NSWorkspace (TarvexCompatibility)

- (NSRunningApplication*)frontmostApplication {
    return [NSApp isActive] ? [NSRunningApplication currentApplication] : applicationInFront().get();
}

- (NSNotificationCenter*)notificationCenter {
    static NSNotificationCenter* const center = [[NSNotificationCenter alloc] init];
    return center;
}

@end

@implementation NSProcessInfo (TarvexCompatibility)

- (id)beginActivityWithOptions:(NSActivityOptions)options reason:(NSString*)reason {
    const auto token = ObjCHandle<id>::adopt([reason copy]);
    activities().push_back({token, options});
    return token.get();
}

- (void)endActivity:(id<NSObject>)activity {
    std::erase_if(activities(), [&](const Activity& entry) { return entry.token.get() == activity; });
}

@end

@implementation NSRunningApplication (TarvexCompatibilityItself)

+ (id)currentApplication {
    static NSRunningApplication* const itself = [[NSRunningApplication alloc] init];
    return itself;
}

@end

#pragma clang diagnostic pop

@implementation TarvexTestRunningApplication

+ (TarvexTestRunningApplication*)newWithIdentifier:(NSString*)identifier {
    TarvexTestRunningApplication* const application = [[self alloc] init];
    application->identifier_ = identifier;
    return application;
}

+ (int)activations {
    return activationCount;
}

- (int)activations {
    return activations_;
}

- (int)requests {
    return requests_;
}

- (void)refuse {
    refuses_ = YES;
}

- (void)quit {
    isTerminated_ = YES;
}

- (BOOL)isTerminated {
    return isTerminated_;
}

- (NSString*)bundleIdentifier {
    return identifier_;
}

- (void)comeToFront {
    applicationInFront() = ObjCHandle<NSRunningApplication*>::share(self);
    [NSApp deactivate];
    [self tellOfActivation];
}

- (void)tellOfActivation {
    [[[NSWorkspace sharedWorkspace] notificationCenter]
        postNotificationName:NSWorkspaceDidActivateApplicationNotification
                      object:[NSWorkspace sharedWorkspace]
                    userInfo:[NSDictionary dictionaryWithObject:self forKey:NSWorkspaceApplicationKey]];
}

// The compiler takes every macOS that it is asked about for there, so that the older call is never made here.
- (BOOL)activateFromApplication:(NSRunningApplication*)application
                        options:(NSApplicationActivationOptions)options {
    static_cast<void>(options);
    ++requests_;
    if (refuses_ || isTerminated_ || yieldedTo != self ||
        application != [NSRunningApplication currentApplication]) {
        return NO;
    }
    yieldedTo = nil;
    ++activationCount;
    ++activations_;
    [self comeToFront];
    return YES;
}

@end

namespace tarvex::test {

std::vector<NSActivityOptions> runningActivities() {
    std::vector<NSActivityOptions> options;
    for (const Activity& activity : activities()) {
        options.push_back(activity.options);
    }
    return options;
}

} // namespace tarvex::test
