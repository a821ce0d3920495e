#pragma once

#include <QuartzCore/QuartzCore.h>

#import <AppKit/AppKit.h>
#include <ServiceManagement/ServiceManagement.h>

/// An application that shows key monitors the events before it hands them out, as AppKit does.
@interface TarvexTestApplication : NSApplication
@end

/// A status item that remembers what it shows. GNUstep has none that work.
@interface TarvexTestStatusItem : NSStatusItem {
    NSStatusBarButton* button_;
    NSMenu* menu_;
}
/// Those that are in the bar.
+ (NSArray*)shown;
@end

/// The program that was in front when this one came; it counts how often it is made active.
@interface TarvexTestRunningApplication : NSRunningApplication
+ (int)activations;
@end

/// What the login item's service answers from now on.
@interface SMAppService (TarvexTest)
+ (void)setStatus:(NSInteger)status;
@end

namespace tarvex::test {

void setLoginItemRefuses(bool refuses);

/// How many key monitors are installed.
[[nodiscard]] int keyMonitorCount();

/// The options of the areas in which a view follows the pointer.
[[nodiscard]] NSUInteger trackingOptions(NSView* view);

} // namespace tarvex::test
