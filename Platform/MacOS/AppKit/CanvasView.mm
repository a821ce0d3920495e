#include "Platform/MacOS/AppKit/CanvasView.h"

#include "App/Input/EventTapPlatform.h"
#include "Platform/MacOS/AppKit/Guarded.h"
#include "Platform/MacOS/AppKit/NativeGeometry.h"

#include <array>

using tarvex::CanvasInput;
using tarvex::CanvasOwner;
using tarvex::KeyEvent;
using tarvex::MouseEvent;

namespace tarvex {

std::uint64_t eventFlags(NSEvent* event) {
    struct FlagPair {
        NSUInteger native;
        std::uint64_t flag;
    };

    constexpr std::array<FlagPair, 5> pairs{{{NSEventModifierFlagCapsLock, event_flag::capsLock},
                                             {NSEventModifierFlagShift, event_flag::shift},
                                             {NSEventModifierFlagControl, event_flag::control},
                                             {NSEventModifierFlagOption, event_flag::option},
                                             {NSEventModifierFlagCommand, event_flag::command}}};
    const NSUInteger held = [event modifierFlags];
    std::uint64_t flags = 0;
    for (const FlagPair& pair : pairs) {
        flags |= (held & pair.native) != 0 ? pair.flag : 0;
    }
    return flags;
}

} // namespace tarvex

@implementation TarvexCanvasView

- (instancetype)initTarvexWithFrame:(NSRect)frame owner:(CanvasOwner*)owner input:(CanvasInput)input {
    self = [super initWithFrame:frame];
    if (self != nil) {
        owner_ = owner;
        input_ = input;
        motionTime_ = -1;
        [self setWantsLayer:YES];
        if (input == CanvasInput::all) {
            [self tarvexTrackPointer];
        }
    }
    return self;
}

// An area that follows the visible part of the view needs no renewal when the view changes its size.
- (void)tarvexTrackPointer {
    const NSTrackingAreaOptions options = NSTrackingMouseEnteredAndExited | NSTrackingMouseMoved |
                                          NSTrackingActiveAlways | NSTrackingInVisibleRect |
                                          NSTrackingEnabledDuringMouseDrag;
    const auto area =
        tarvex::ObjCHandle<NSTrackingArea*>::adopt([[NSTrackingArea alloc] initWithRect:[self bounds]
                                                                                options:options
                                                                                  owner:self
                                                                               userInfo:nil]);
    [self addTrackingArea:area.get()];
}

- (void)tarvexForgetOwner {
    owner_ = nullptr;
}

- (void)drawRect:(NSRect)dirtyRect {
    [super drawRect:dirtyRect];
    if (owner_ != nullptr) {
        tarvex::callGuarded([owner = owner_] { owner->draw(); });
    }
}

- (BOOL)isOpaque {
    return NO;
}

- (BOOL)acceptsFirstResponder {
    return input_ == CanvasInput::all;
}

// The click that brings the program to the front counts as well.
- (BOOL)acceptsFirstMouse:(NSEvent*)event {
    static_cast<void>(event);
    return input_ == CanvasInput::all;
}

- (void)tarvexSend:(NSEvent*)event to:(void (CanvasOwner::*)(const MouseEvent&))handler {
    const tarvex::Point location = tarvex::pointOf([self convertPoint:[event locationInWindow] fromView:nil]);
    [self tarvexSendLocation:location of:event to:handler];
}

- (void)tarvexSendLocation:(tarvex::Point)location
                        of:(NSEvent*)event
                        to:(void (CanvasOwner::*)(const MouseEvent&))handler {
    // The handler may be the end of the owner, its window and this view.
    const auto self_ = tarvex::ObjCHandle<TarvexCanvasView*>::share(self);
    if (owner_ != nullptr) {
        const MouseEvent mouse{location, tarvex::eventFlags(event)};
        tarvex::callGuarded([owner = owner_, handler, &mouse] { (owner->*handler)(mouse); });
    }
}

// The same motion comes once through the area and once to the first responder of a window that accepts it.
- (BOOL)tarvexHasSeenMotion:(NSEvent*)event {
    const NSTimeInterval time = [event timestamp];
    const NSPoint location = [event locationInWindow];
    const bool isSame =
        time == motionTime_ && location.x == motionLocation_.x && location.y == motionLocation_.y;
    motionTime_ = time;
    motionLocation_ = location;
    return isSame ? YES : NO;
}

- (void)mouseMoved:(NSEvent*)event {
    if (![self tarvexHasSeenMotion:event]) {
        [self tarvexSend:event to:&CanvasOwner::mouseMoved];
    }
}

// The area reports the pointer's comings and goings during a drag as well; the drag goes on outside.
- (void)mouseEntered:(NSEvent*)event {
    if ([NSEvent pressedMouseButtons] == 0) {
        [self tarvexSend:event to:&CanvasOwner::mouseMoved];
    }
}

- (void)mouseExited:(NSEvent*)event {
    if ([NSEvent pressedMouseButtons] != 0) {
        return;
    }
    tarvex::Point location = tarvex::pointOf([self convertPoint:[event locationInWindow] fromView:nil]);
    if (tarvex::rectOf([self bounds]).contains(location)) {
        // Another window came under the pointer: for the view it is as good as gone.
        location = {-1, -1};
    }
    [self tarvexSendLocation:location of:event to:&CanvasOwner::mouseMoved];
}

- (void)mouseDown:(NSEvent*)event {
    [self tarvexSend:event to:&CanvasOwner::mouseDown];
}

- (void)mouseDragged:(NSEvent*)event {
    [self tarvexSend:event to:&CanvasOwner::mouseDragged];
}

- (void)mouseUp:(NSEvent*)event {
    [self tarvexSend:event to:&CanvasOwner::mouseUp];
}

- (void)rightMouseDown:(NSEvent*)event {
    [self tarvexSend:event to:&CanvasOwner::rightMouseDown];
}

- (void)keyDown:(NSEvent*)event {
    const auto self_ = tarvex::ObjCHandle<TarvexCanvasView*>::share(self);
    const KeyEvent key{[event keyCode], tarvex::eventFlags(event)};
    const bool isTaken = owner_ != nullptr &&
                         tarvex::answerGuarded([owner = owner_, &key] { return owner->keyDown(key); }, true);
    if (!isTaken) {
        [super keyDown:event];
    }
}

@end
