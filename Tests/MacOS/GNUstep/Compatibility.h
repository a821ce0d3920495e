#pragma once

#include <QuartzCore/QuartzCore.h>

#import <AppKit/AppKit.h>
#include <ServiceManagement/ServiceManagement.h>
#include <functional>
#include <objc/runtime.h>

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

namespace tarvex::test {

/// Is called when layers are handed to the window server, with the window that was told to draw what it needs
/// to since the last time, if one was; empty for nobody.
void watchFlushes(std::function<void(NSWindow*)> watcher);

/// Puts a function in the place of a method that the class has itself, and gives the one that was there.
template <typename Result>
auto replaceMethod(Class owner, SEL selector, Result (*function)(id, SEL)) -> Result (*)(id, SEL) {
    const IMP replaced =
        method_setImplementation(class_getInstanceMethod(owner, selector), reinterpret_cast<IMP>(function));
    return reinterpret_cast<Result (*)(id, SEL)>(replaced);
}

/// How many key monitors are installed.
[[nodiscard]] int keyMonitorCount();

/// The options of the areas in which a view follows the pointer.
[[nodiscard]] NSUInteger trackingOptions(NSView* view);

} // namespace tarvex::test
