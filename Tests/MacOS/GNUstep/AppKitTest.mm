#include "Tests/MacOS/GNUstep/AppKitTest.h"

#include <array>
#include <cmath>
#include <cstdio>

namespace tarvex::test {

namespace {

NSTimeInterval nextTimestamp() {
    static NSTimeInterval time = 0;
    time += 0.001;
    return time;
}

} // namespace

void handOutEvents() {
    @autoreleasepool {
        while (NSEvent* event = [NSApp nextEventMatchingMask:NSAnyEventMask
                                                   untilDate:[NSDate distantPast]
                                                      inMode:NSDefaultRunLoopMode
                                                     dequeue:YES]) {
            [NSApp sendEvent:event];
        }
    }
}

AppKitTest::~AppKitTest() {
    endTurn();
}

void AppKitTest::endTurn() {
    loop_.runPosted();
    handOutEvents();
}

NSWindow* AppKitTest::newestWindow() {
    NSWindow* newest = nil;
    for (NSWindow* window in [NSApp windows]) {
        if (isOfAnAdapter(window) && (newest == nil || [window windowNumber] > [newest windowNumber])) {
            newest = window;
        }
    }
    return newest;
}

NSEvent* AppKitTest::mouseEvent(NSEventType type, NSWindow* window, const Point& location, NSUInteger flags) {
    return [NSEvent mouseEventWithType:type
                              location:NSMakePoint(location.x, location.y)
                         modifierFlags:flags
                             timestamp:nextTimestamp()
                          windowNumber:[window windowNumber]
                               context:nil
                           eventNumber:0
                            clickCount:1
                              pressure:1];
}

NSEvent* AppKitTest::keyEvent(NSWindow* window, unsigned short keyCode, NSUInteger flags,
                              NSString* characters) {
    return [NSEvent keyEventWithType:NSKeyDown
                            location:NSZeroPoint
                       modifierFlags:flags
                           timestamp:nextTimestamp()
                        windowNumber:[window windowNumber]
                             context:nil
                          characters:characters
         charactersIgnoringModifiers:characters
                           isARepeat:NO
                             keyCode:keyCode];
}

void AppKitTest::click(NSWindow* window, const Point& location) {
    // A control that tracks the button waits for its release in a loop of its own, and looks at where the
    // pointer is only when that moves.
    [NSApp postEvent:mouseEvent(NSLeftMouseDragged, window, location) atStart:NO];
    [NSApp postEvent:mouseEvent(NSLeftMouseUp, window, location) atStart:NO];
    [NSApp sendEvent:mouseEvent(NSLeftMouseDown, window, location)];
    endTurn();
}

HandOvers::HandOvers(NSWindow* window) {
    watchFlushes([this, window](NSWindow* drawn) {
        ++all_;
        good_ += drawn == window && ![window isVisible] ? 1 : 0;
    });
}

HandOvers::~HandOvers() {
    watchFlushes({});
}

Point middleOf(NSView* view) {
    const NSRect bounds = [view bounds];
    const NSPoint middle = [view convertPoint:NSMakePoint(NSMidX(bounds), NSMidY(bounds)) toView:nil];
    return {middle.x, middle.y};
}

ViewPixels::ViewPixels(NSView* view) {
    [view lockFocus];
    bitmap_ = [[NSBitmapImageRep alloc] initWithFocusedViewRect:[view bounds]];
    [view unlockFocus];
}

ViewPixels::~ViewPixels() {
    [bitmap_ release];
}

std::string ViewPixels::at(int x, int y) const {
    NSColor* const color = [bitmap_ colorAtX:x y:[bitmap_ pixelsHigh] - 1 - y];
    const auto byte = [](CGFloat part) { return static_cast<unsigned>(std::lround(part * 255)); };
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "%02x%02x%02x", byte([color redComponent]) & 0xFFU,
                  byte([color greenComponent]) & 0xFFU, byte([color blueComponent]) & 0xFFU);
    return text.data();
}

int ViewPixels::countOthers(const Rect& rect, const std::string& color) const {
    int count = 0;
    for (int y = static_cast<int>(rect.minY()); y < static_cast<int>(rect.maxY()); ++y) {
        for (int x = static_cast<int>(rect.minX()); x < static_cast<int>(rect.maxX()); ++x) {
            count += at(x, y) == color ? 0 : 1;
        }
    }
    return count;
}

} // namespace tarvex::test
