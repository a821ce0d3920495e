#include "Tests/MacOS/GNUstep/Compatibility.h"

#include <functional>
#include <utility>

namespace {

NSMutableArray* shownStatusItems() {
    static NSMutableArray* const items = [[NSMutableArray alloc] init];
    return items;
}

std::function<void(NSWindow*)> flushWatcher;
/// The window that was told to draw last; not its owner.
NSWindow* toldToDraw = nil;

/// GNUstep's colours keep no object of Core Graphics; the number that stands for one is the colour itself.
void replace(NSColor*& held, CGColorRef color) {
    NSColor* const native = (NSColor*)color;
    [native retain];
    [held release];
    held = native;
}

void (*displayIfNeeded)(id, SEL) = nullptr;

void noteAndDisplayIfNeeded(id window, SEL selector) {
    toldToDraw = window;
    displayIfNeeded(window, selector);
}

} // namespace

@implementation CATransaction

+ (void)flush {
    NSWindow* const window = std::exchange(toldToDraw, nil);
    if (flushWatcher) {
        flushWatcher(window);
    }
}

@end

@implementation CALayer

- (void)dealloc {
    [borderColor_ release];
    [backgroundColor_ release];
    [shadowColor_ release];
    [super dealloc];
}

- (void)setCornerRadius:(CGFloat)radius {
    cornerRadius_ = radius;
}

- (void)setBorderWidth:(CGFloat)width {
    borderWidth_ = width;
}

- (void)setBorderColor:(CGColorRef)color {
    replace(borderColor_, color);
}

- (void)setBackgroundColor:(CGColorRef)color {
    replace(backgroundColor_, color);
}

- (void)setShadowColor:(CGColorRef)color {
    replace(shadowColor_, color);
}

- (void)setShadowOpacity:(float)opacity {
    shadowOpacity_ = opacity;
}

- (void)setShadowRadius:(CGFloat)radius {
    shadowRadius_ = radius;
}

- (void)setShadowOffset:(NSSize)offset {
    shadowOffset_ = offset;
}

- (CGFloat)cornerRadius {
    return cornerRadius_;
}

- (CGFloat)borderWidth {
    return borderWidth_;
}

- (NSColor*)borderNSColor {
    return borderColor_;
}

- (NSColor*)backgroundNSColor {
    return backgroundColor_;
}

- (NSColor*)shadowNSColor {
    return shadowColor_;
}

- (float)shadowOpacity {
    return shadowOpacity_;
}

- (CGFloat)shadowRadius {
    return shadowRadius_;
}

- (NSSize)shadowOffset {
    return shadowOffset_;
}

@end

@implementation NSColor (TarvexCompatibilityQuartz)

- (CGColorRef)CGColor {
    return (CGColorRef)self;
}

@end

@implementation NSImageSymbolConfiguration

+ (NSImageSymbolConfiguration*)configurationWithPointSize:(CGFloat)pointSize weight:(CGFloat)weight {
    NSImageSymbolConfiguration* const configuration = [[[self alloc] init] autorelease];
    configuration->pointSize_ = pointSize;
    configuration->weight_ = weight;
    return configuration;
}

- (CGFloat)pointSize {
    return pointSize_;
}

- (CGFloat)weight {
    return weight_;
}

@end

/// A picture of the system's.
@interface TarvexTestSymbol : NSImage {
    NSImageSymbolConfiguration* configuration_;
    NSString* description_;
    BOOL isTemplate_;
}
@end

@implementation TarvexTestSymbol

- (id)initWithConfiguration:(NSImageSymbolConfiguration*)configuration description:(NSString*)description {
    const CGFloat size = configuration == nil ? 13 : [configuration pointSize];
    self = [super initWithSize:NSMakeSize(size, size)];
    if (self != nil) {
        configuration_ = [configuration retain];
        description_ = [description copy];
    }
    return self;
}

- (void)dealloc {
    [configuration_ release];
    [description_ release];
    [super dealloc];
}

- (NSImage*)imageWithSymbolConfiguration:(NSImageSymbolConfiguration*)configuration {
    return [[[TarvexTestSymbol alloc] initWithConfiguration:configuration
                                                description:description_] autorelease];
}

- (NSImageSymbolConfiguration*)symbolConfiguration {
    return configuration_;
}

- (NSString*)accessibilityDescription {
    return description_;
}

- (void)setTemplate:(BOOL)isTemplate {
    isTemplate_ = isTemplate;
}

- (BOOL)isTemplate {
    return isTemplate_;
}

@end

@implementation NSImage (TarvexCompatibility)

+ (NSImage*)imageWithSystemSymbolName:(NSString*)name accessibilityDescription:(NSString*)description {
    if (![name isEqualToString:@"rectangle.grid.2x2"]) {
        return nil;
    }
    return [[[TarvexTestSymbol alloc] initWithConfiguration:nil description:description] autorelease];
}

- (NSImage*)imageWithSymbolConfiguration:(NSImageSymbolConfiguration*)configuration {
    static_cast<void>(configuration);
    return nil;
}

- (NSImageSymbolConfiguration*)symbolConfiguration {
    return nil;
}

- (NSString*)accessibilityDescription {
    return nil;
}

- (void)setTemplate:(BOOL)isTemplate {
    static_cast<void>(isTemplate);
}

- (BOOL)isTemplate {
    return NO;
}

@end

@implementation NSMenu (TarvexCompatibility)

- (void)removeAllItems {
    while ([self numberOfItems] != 0) {
        [self removeItemAtIndex:0];
    }
}

@end

@implementation NSFileManager (TarvexCompatibility)

- (NSArray*)URLsForDirectory:(NSSearchPathDirectory)directory inDomains:(NSSearchPathDomainMask)domains {
    NSMutableArray* const urls = [NSMutableArray array];
    for (NSString* path in NSSearchPathForDirectoriesInDomains(directory, domains, YES)) {
        [urls addObject:[NSURL fileURLWithPath:path]];
    }
    return urls;
}

@end

// The class's own methods are to be replaced.
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wobjc-protocol-method-implementation"

@implementation NSStatusBar (TarvexCompatibility)

+ (NSStatusBar*)systemStatusBar {
    static NSStatusBar* const bar = [[NSStatusBar alloc] init];
    return bar;
}

- (NSStatusItem*)statusItemWithLength:(CGFloat)length {
    static_cast<void>(length);
    TarvexTestStatusItem* const item = [[[TarvexTestStatusItem alloc] init] autorelease];
    [shownStatusItems() addObject:item];
    return item;
}

- (void)removeStatusItem:(NSStatusItem*)item {
    [shownStatusItems() removeObjectIdenticalTo:item];
}

@end

#pragma clang diagnostic pop

@implementation TarvexTestStatusItem

+ (NSArray*)shown {
    return shownStatusItems();
}

- (id)init {
    self = [super init];
    if (self != nil) {
        button_ = (NSStatusBarButton*)[[NSButton alloc] initWithFrame:NSMakeRect(0, 0, 24, 24)];
    }
    return self;
}

- (void)dealloc {
    [button_ release];
    [menu_ release];
    [super dealloc];
}

- (NSStatusBarButton*)button {
    return button_;
}

- (void)setMenu:(NSMenu*)menu {
    [menu retain];
    [menu_ release];
    menu_ = menu;
}

- (NSMenu*)menu {
    return menu_;
}

@end

namespace tarvex::test {

void watchFlushes(std::function<void(NSWindow*)> watcher) {
    if (displayIfNeeded == nullptr) {
        displayIfNeeded =
            replaceMethod([NSWindow class], @selector(displayIfNeeded), &noteAndDisplayIfNeeded);
    }
    flushWatcher = std::move(watcher);
    toldToDraw = nil;
}

} // namespace tarvex::test
