#pragma once

#include "App/Toolkit/Form.h"
#include "App/Toolkit/Scene.h"
#include "App/Toolkit/Window.h"
#include "Core/Geometry.h"

#include <cstdint>
#include <memory>
#include <string>

namespace tarvex {

/// Input by the pointer.
struct MouseEvent {
    /// In view coordinates: points, origin at the bottom-left of the view, y up. It may lie outside the view:
    /// a press keeps the pointer until it ends.
    Point location;
    /// The event_flag bits that were held.
    std::uint64_t modifierFlags = 0;
};

/// A key that was pressed or repeats.
struct KeyEvent {
    /// The virtual key code of the physical key (Apple, HIToolbox Events.h).
    std::uint16_t keyCode = 0;
    std::uint64_t modifierFlags = 0;
};

/// What fills a window and takes its input. The platform calls it on the main thread, and may be called back
/// and even destroy the window from within any of these, except from draw() and form().
class View {
public:
    View() = default;
    View(const View&) = delete;
    View& operator=(const View&) = delete;
    View(View&&) = delete;
    View& operator=(View&&) = delete;
    virtual ~View() = default;

    /// The picture as it is now. Asked when the window paints, not when the view changes.
    [[nodiscard]] virtual Scene draw() = 0;

    /// The controls over the picture.
    [[nodiscard]] virtual Form form() = 0;

    /// The pointer moved with no button down, or left the view.
    virtual void mouseMoved(const MouseEvent& event) = 0;

    /// The left button. A press on a control is the control's, with all that follows until the release.
    virtual void mouseDown(const MouseEvent& event) = 0;
    virtual void mouseDragged(const MouseEvent& event) = 0;
    virtual void mouseUp(const MouseEvent& event) = 0;

    virtual void rightMouseDown(const MouseEvent& event) = 0;

    /// False passes the key on to the platform.
    virtual bool keyDown(const KeyEvent& event) = 0;

    /// The control of that id was used.
    virtual void controlActivated(const std::string& id) = 0;

    /// A display came, went or moved, or panels leave another part of it, so that the window may no longer be
    /// where it should be.
    virtual void screensChanged() = 0;
};

/// Port: a native window that shows a view. It is made hidden; destroying it closes it, and gives the
/// keyboard back to the window that had it before if this one still has it. Nothing throws.
class ViewWindow {
public:
    ViewWindow() = default;
    ViewWindow(const ViewWindow&) = delete;
    ViewWindow& operator=(const ViewWindow&) = delete;
    ViewWindow(ViewWindow&&) = delete;
    ViewWindow& operator=(ViewWindow&&) = delete;
    virtual ~ViewWindow() = default;

    /// The frame in screen space.
    [[nodiscard]] virtual Rect frame() const = 0;

    /// The whole view is to be drawn anew, once, when what has happened until then has been dealt with.
    virtual void setNeedsDisplay() = 0;

    /// Shows the window in front and gives it the keyboard. Its view is the first responder.
    virtual void makeKeyAndOrderFront() = 0;
};

/// Port: makes windows that show a view.
class ViewWindowPlatform {
public:
    ViewWindowPlatform() = default;
    ViewWindowPlatform(const ViewWindowPlatform&) = delete;
    ViewWindowPlatform& operator=(const ViewWindowPlatform&) = delete;
    ViewWindowPlatform(ViewWindowPlatform&&) = delete;
    ViewWindowPlatform& operator=(ViewWindowPlatform&&) = delete;
    virtual ~ViewWindowPlatform() = default;

    /// A new hidden window over the view, which must outlive it; never null.
    [[nodiscard]] virtual std::unique_ptr<ViewWindow> makeViewWindow(const WindowAttributes& attributes,
                                                                     View& view) = 0;

    /// Brings the program to the front of all others.
    virtual void activateIgnoringOtherApps() = 0;
};

} // namespace tarvex
