#pragma once

#include <QuartzCore/QuartzCore.h>

#import <AppKit/AppKit.h>
#include <ServiceManagement/ServiceManagement.h>
#include <functional>
#include <objc/runtime.h>
#include <vector>

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

/// Another program. One is in front from the start while this one is not.
@interface TarvexTestRunningApplication : NSRunningApplication {
    NSString* identifier_;
    int activations_;
    int requests_;
    BOOL refuses_;
    BOOL isTerminated_;
}
/// @param identifier a constant; no program has one from the start
+ (TarvexTestRunningApplication*)newWithIdentifier:(NSString*)identifier;
/// How often this program made another one active.
+ (int)activations;
/// How often it was this one.
- (int)activations;
/// How often this program asked for it, whatever came of it.
- (int)requests;
/// From now on the system does not let it come to the front.
- (void)refuse;
/// It ends.
- (void)quit;
/// The user turns to it.
- (void)comeToFront;
@end

namespace tarvex::test {

/// Is called when layers are handed to the window server, with the window that was told to draw what it needs
/// to since the last time, if one was; empty for nobody.
void watchFlushes(std::function<void(NSWindow*)> watcher);

/// Puts a function in the place of a method that the class has itself, and gives the one that was there.
template <typename Result, typename... Arguments>
auto replaceMethod(Class owner, SEL selector, Result (*function)(id, SEL, Arguments...))
    -> Result (*)(id, SEL, Arguments...) {
    const IMP replaced =
        method_setImplementation(class_getInstanceMethod(owner, selector), reinterpret_cast<IMP>(function));
    return reinterpret_cast<Result (*)(id, SEL, Arguments...)>(replaced);
}

/// How often the window was ordered front since it was first asked about any.
[[nodiscard]] int frontings(NSWindow* window);

/// What the activities that have begun, and not ended, ask for.
[[nodiscard]] std::vector<NSActivityOptions> runningActivities();

/// Changes what the system's colours are for the view, and tells it.
void setDark(NSView* view, bool isDark);

/// Is asked, until it is taken away, for the area of the screen that is free of the menu bar and the like;
/// empty for the toolkit's own.
void setVisibleFrame(std::function<NSRect()> visibleFrame);

/// How many key monitors are installed.
[[nodiscard]] int keyMonitorCount();

/// The options of the areas in which a view follows the pointer.
[[nodiscard]] NSUInteger trackingOptions(NSView* view);

} // namespace tarvex::test
