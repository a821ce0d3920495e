#include "Tests/MacOS/GNUstep/Compatibility.h"

#include "Platform/MacOS/AppKit/ObjCHandle.h"

#include <Block.h>
#include <algorithm>
#include <map>
#include <utility>
#include <vector>

using tarvex::ObjCHandle;
using tarvex::test::replaceMethod;

namespace {

/// What is remembered of a view, a cell or a window that has no room for it.
struct Remembered {
    ObjCHandle<id> layer;
    ObjCHandle<id> accessibilityLabel;
    ObjCHandle<id> accessibilityTitle;
    bool isAccessibilityElement = true;
    bool isDark = false;
    int frontings = 0;
    ObjCHandle<id> bezelColor;
    ObjCHandle<id> contentTintColor;
    ObjCHandle<NSMutableArray*> trackingAreas;
    NSWindowCollectionBehavior collectionBehavior = NSWindowCollectionBehaviorDefault;
    NSWindowAnimationBehavior animationBehavior = NSWindowAnimationBehaviorDefault;
};

std::map<const void*, Remembered>& rememberedObjects() {
    static std::map<const void*, Remembered> objects;
    return objects;
}

void (*deallocView)(id, SEL) = nullptr;
void (*deallocWindow)(id, SEL) = nullptr;
void (*deallocCell)(id, SEL) = nullptr;

void forgetAndDeallocView(id view, SEL selector) {
    rememberedObjects().erase(static_cast<const void*>(view));
    deallocView(view, selector);
}

void forgetAndDeallocWindow(id window, SEL selector) {
    rememberedObjects().erase(static_cast<const void*>(window));
    deallocWindow(window, selector);
}

void forgetAndDeallocCell(id cell, SEL selector) {
    rememberedObjects().erase(static_cast<const void*>(cell));
    deallocCell(cell, selector);
}

/// Until the object's end.
Remembered& rememberedOf(id object) {
    static const bool forgets = [] {
        deallocView = replaceMethod([NSView class], @selector(dealloc), &forgetAndDeallocView);
        deallocWindow = replaceMethod([NSWindow class], @selector(dealloc), &forgetAndDeallocWindow);
        deallocCell = replaceMethod([NSCell class], @selector(dealloc), &forgetAndDeallocCell);
        return true;
    }();
    static_cast<void>(forgets);
    return rememberedObjects()[static_cast<const void*>(object)];
}

NSRect (*ownVisibleFrame)(id, SEL) = nullptr;
std::function<NSRect()> visibleFrameAsked;

NSRect askForVisibleFrame(id screen, SEL selector) {
    return visibleFrameAsked ? visibleFrameAsked() : ownVisibleFrame(screen, selector);
}

/// Of whoever draws at the moment; not its owner.
NSAppearance* currentAppearance = nil;

NSAppearance* darkAppearance() {
    static NSAppearance* const dark = [[NSAppearance alloc] init];
    return dark;
}

void (*orderFront)(id, SEL, id) = nullptr;

void countAndOrderFront(id window, SEL selector, id sender) {
    ++rememberedOf(window).frontings;
    orderFront(window, selector, sender);
}

struct KeyMonitorEntry {
    NSUInteger mask;
    NSEvent* (^handler)(NSEvent*);
    ObjCHandle<id> token;
};

std::vector<KeyMonitorEntry>& keyMonitors() {
    static std::vector<KeyMonitorEntry> monitors;
    return monitors;
}

/// Nil when a monitor swallowed the event.
NSEvent* showToMonitors(NSEvent* event) {
    const auto present = keyMonitors();
    for (auto entry = present.begin(); entry != present.end() && event != nil; ++entry) {
        if ((entry->mask & (NSUInteger{1} << [event type])) != 0) {
            event = entry->handler(event);
        }
    }
    return event;
}

} // namespace

const CGFloat NSFontWeightLight = -0.4;
const CGFloat NSFontWeightRegular = 0;
const CGFloat NSFontWeightMedium = 0.23;
const CGFloat NSFontWeightSemibold = 0.3;
const CGFloat NSFontWeightBold = 0.4;
const CGFloat NSFontWeightHeavy = 0.56;
const CGFloat NSFontWeightBlack = 0.62;

@implementation NSFont (TarvexCompatibility)

+ (NSFont*)systemFontOfSize:(CGFloat)size weight:(CGFloat)weight {
    return weight >= NSFontWeightSemibold ? [NSFont boldSystemFontOfSize:size]
                                          : [NSFont systemFontOfSize:size];
}

+ (NSFont*)monospacedDigitSystemFontOfSize:(CGFloat)size weight:(CGFloat)weight {
    return [NSFont systemFontOfSize:size weight:weight];
}

@end

@implementation NSColor (TarvexCompatibility)

+ (NSColor*)controlAccentColor {
    static NSColor* const light = [[NSColor colorWithCalibratedRed:0 green:0.5 blue:1 alpha:1] retain];
    static NSColor* const dark = [[NSColor colorWithCalibratedRed:0 green:0.75 blue:1 alpha:1] retain];
    return currentAppearance == darkAppearance() ? dark : light;
}

@end

@implementation NSAppearance (TarvexCompatibility)

- (void)performAsCurrentDrawingAppearance:(void (^)(void))block {
    NSAppearance* const before = std::exchange(currentAppearance, self);
    block();
    currentAppearance = before;
}

@end

@implementation NSScreen (TarvexCompatibility)

- (NSString*)localizedName {
    return @"Virtual screen";
}

@end

@implementation NSView (TarvexCompatibility)

- (void)setWantsLayer:(BOOL)wantsLayer {
    Remembered& remembered = rememberedOf(self);
    if (wantsLayer && !remembered.layer) {
        remembered.layer = ObjCHandle<id>::adopt([[CALayer alloc] init]);
    } else if (!wantsLayer) {
        remembered.layer = {};
    }
}

- (CALayer*)layer {
    return rememberedOf(self).layer.get();
}

- (void)addTrackingArea:(NSTrackingArea*)area {
    auto& areas = rememberedOf(self).trackingAreas;
    areas = ObjCHandle<NSMutableArray*>::share([NSMutableArray arrayWithObject:area]);
}

- (NSArray*)trackingAreas {
    return rememberedOf(self).trackingAreas.get();
}

- (void)setAccessibilityLabel:(NSString*)label {
    rememberedOf(self).accessibilityLabel = ObjCHandle<id>::share(label);
}

- (NSString*)accessibilityLabel {
    return rememberedOf(self).accessibilityLabel.get();
}

- (NSAppearance*)effectiveAppearance {
    static NSAppearance* const light = [[NSAppearance alloc] init];
    return rememberedOf(self).isDark ? darkAppearance() : light;
}

- (void)viewDidChangeEffectiveAppearance {
}

@end

@implementation NSTextField (TarvexCompatibility)

- (NSString*)accessibilityValue {
    return [self stringValue];
}

@end

@implementation NSCell (TarvexCompatibility)

- (id)accessibilityValue {
    return [self stringValue];
}

- (void)setAccessibilityLabel:(NSString*)label {
    rememberedOf(self).accessibilityLabel = ObjCHandle<id>::share(label);
}

- (NSString*)accessibilityLabel {
    return rememberedOf(self).accessibilityLabel.get();
}

@end

// GNUstep has the methods, but they do nothing.
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wobjc-protocol-method-implementation"

@implementation NSWindow (TarvexCompatibility)

- (void)setCollectionBehavior:(NSWindowCollectionBehavior)behavior {
    rememberedOf(self).collectionBehavior = behavior;
}

- (NSWindowCollectionBehavior)collectionBehavior {
    return rememberedOf(self).collectionBehavior;
}

- (void)setAnimationBehavior:(NSWindowAnimationBehavior)behavior {
    rememberedOf(self).animationBehavior = behavior;
}

- (NSWindowAnimationBehavior)animationBehavior {
    return rememberedOf(self).animationBehavior;
}

- (void)setAccessibilityElement:(BOOL)isElement {
    rememberedOf(self).isAccessibilityElement = isElement == YES;
}

- (BOOL)isAccessibilityElement {
    return rememberedOf(self).isAccessibilityElement ? YES : NO;
}

- (void)setAccessibilityTitle:(NSString*)title {
    rememberedOf(self).accessibilityTitle = ObjCHandle<id>::share(title);
}

- (NSString*)accessibilityTitle {
    return rememberedOf(self).accessibilityTitle.get();
}

@end

#pragma clang diagnostic pop

@implementation NSButton (TarvexCompatibility)

- (void)setBezelColor:(NSColor*)color {
    rememberedOf(self).bezelColor = ObjCHandle<id>::share(color);
}

- (NSColor*)bezelColor {
    return rememberedOf(self).bezelColor.get();
}

- (void)setContentTintColor:(NSColor*)color {
    rememberedOf(self).contentTintColor = ObjCHandle<id>::share(color);
}

- (NSColor*)contentTintColor {
    return rememberedOf(self).contentTintColor.get();
}

@end

@implementation NSEvent (TarvexCompatibility)

+ (id)addLocalMonitorForEventsMatchingMask:(NSUInteger)mask handler:(NSEvent* (^)(NSEvent*))handler {
    auto token = ObjCHandle<id>::adopt([[NSObject alloc] init]);
    keyMonitors().push_back({mask, Block_copy(handler), token});
    return token.get();
}

+ (void)removeMonitor:(id)monitor {
    auto& monitors = keyMonitors();
    const auto found =
        std::find_if(monitors.begin(), monitors.end(),
                     [monitor](const KeyMonitorEntry& entry) { return entry.token.get() == monitor; });
    if (found != monitors.end()) {
        NSEvent* (^const handler)(NSEvent*) = found->handler;
        monitors.erase(found);
        Block_release(handler);
    }
}

@end

@implementation NSApplication (TarvexCompatibility)

- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)policy {
    return policy == NSApplicationActivationPolicyAccessory;
}

@end

@implementation TarvexTestApplication

- (void)sendEvent:(NSEvent*)event {
    NSEvent* const passed = showToMonitors(event);
    if (passed != nil) {
        [super sendEvent:passed];
    }
}

@end

namespace tarvex::test {

int keyMonitorCount() {
    return static_cast<int>(keyMonitors().size());
}

int frontings(NSWindow* window) {
    if (orderFront == nullptr) {
        orderFront = replaceMethod([NSWindow class], @selector(orderFront:), &countAndOrderFront);
    }
    return rememberedOf(window).frontings;
}

void setDark(NSView* view, bool isDark) {
    rememberedOf(view).isDark = isDark;
    [view viewDidChangeEffectiveAppearance];
}

void setVisibleFrame(std::function<NSRect()> visibleFrame) {
    if (ownVisibleFrame == nullptr) {
        ownVisibleFrame = replaceMethod([NSScreen class], @selector(visibleFrame), &askForVisibleFrame);
    }
    visibleFrameAsked = std::move(visibleFrame);
}

NSUInteger trackingOptions(NSView* view) {
    NSUInteger options = 0;
    for (NSTrackingArea* area in [view trackingAreas]) {
        options |= [area options];
    }
    return options;
}

} // namespace tarvex::test
