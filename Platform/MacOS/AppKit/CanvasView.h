#pragma once

#include "App/Toolkit/View.h"
#include "Platform/MacOS/AppKit/ObjCHandle.h"

#import <AppKit/AppKit.h>

namespace tarvex {

/// What fills a TarvexCanvasView and hears of its input, in view coordinates. It must outlive the view or be
/// forgotten by it, and may be destroyed from within any of these calls but draw().
class CanvasOwner {
public:
    CanvasOwner() = default;
    CanvasOwner(const CanvasOwner&) = delete;
    CanvasOwner& operator=(const CanvasOwner&) = delete;
    CanvasOwner(CanvasOwner&&) = delete;
    CanvasOwner& operator=(CanvasOwner&&) = delete;

    /// Draws into the current graphics context.
    virtual void draw() = 0;

    virtual void mouseMoved(const MouseEvent& /*event*/) {}

    virtual void mouseDown(const MouseEvent& /*event*/) {}

    virtual void mouseDragged(const MouseEvent& /*event*/) {}

    virtual void mouseUp(const MouseEvent& /*event*/) {}

    virtual void rightMouseDown(const MouseEvent& /*event*/) {}

    /// False leaves the key to the toolkit.
    virtual bool keyDown(const KeyEvent& /*event*/) { return false; }

protected:
    ~CanvasOwner() = default;
};

/// What a canvas takes besides being drawn.
enum class CanvasInput : std::uint8_t {
    /// Nothing.
    none,
    /// The pointer, also while no button is down, and the keyboard.
    all
};

} // namespace tarvex

/// The view of a window that draws a picture of ours.
@interface TarvexCanvasView : NSView {
    tarvex::CanvasOwner* owner_;
    tarvex::CanvasInput input_;
    NSTimeInterval motionTime_;
    NSPoint motionLocation_;
}
- (instancetype)initTarvexWithFrame:(NSRect)frame
                              owner:(tarvex::CanvasOwner*)owner
                              input:(tarvex::CanvasInput)input;
/// Draws nothing and reports nothing from now on.
- (void)tarvexForgetOwner;
@end

namespace tarvex {

/// The event_flag bits of an event; what tells left keys from right ones is left out.
[[nodiscard]] std::uint64_t eventFlags(NSEvent* event);

} // namespace tarvex
