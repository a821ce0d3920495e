#pragma once

#include "Platform/Linux/X11/PixelPlace.h"
#include "Platform/Linux/X11/PixelRect.h"
#include "Platform/Linux/X11/XConnection.h"

#include <optional>
#include <vector>

namespace tarvex {

/// The children of the root window: window managers' frames, and what they lay above them that nobody sees.
class XOutermostWindows {
public:
    /// A pixel of the root window, and the child of the root window that the server finds there, if any.
    struct Look {
        PixelPlace place;
        xcb_window_t child = XCB_WINDOW_NONE;
    };

    explicit XOutermostWindows(XConnection& connection) : connection_(&connection) {}

    /// What the user takes hold of where the server finds that child of the root window. The frame, for one
    /// of the borders outside a frame that the window manager lets windows be resized by. For the shield that
    /// a window manager may lay over the whole screen while it moves a window, or at all times between the
    /// windows in sight and those that are not, what is below it at the pixel and in sight; none for the bare
    /// desktop. Else the child itself.
    [[nodiscard]] xcb_window_t behind(xcb_window_t child, int x, int y);

    /// What was pressed, of which is known by now that the pointer has gone on. Both looks are of one moment:
    /// the window manager may not have moved or resized anything by then, or be about it.
    [[nodiscard]] xcb_window_t pressedOf(const Look& atPress, const Look& now);

private:
    struct Shape {
        /// In root pixels, with the X border.
        PixelRect outline;
        /// The same without it.
        PixelRect inside;
        bool isInputOnly = false;
        bool isViewable = false;
    };

    [[nodiscard]] std::optional<Shape> shapeOf(xcb_window_t window);
    [[nodiscard]] bool isShield(const Shape& shape) const;
    [[nodiscard]] bool takesPointer(xcb_window_t window, const Shape& shape, int x, int y);
    /// From the top down.
    [[nodiscard]] std::vector<xcb_window_t> childrenBelow(xcb_window_t child);
    [[nodiscard]] xcb_window_t belowShield(xcb_window_t shield, int x, int y);
    /// Of a frame or of a window without one.
    [[nodiscard]] bool isOutOfSight(xcb_window_t window);
    /// None where it is no border of a frame.
    [[nodiscard]] xcb_window_t frameInside(xcb_window_t border, const Shape& shape);
    /// Those that hold the active window, and the one with the keyboard.
    [[nodiscard]] std::vector<xcb_window_t> activeWindows();
    [[nodiscard]] xcb_window_t outermostOf(xcb_window_t window);

    XConnection* connection_;
};

} // namespace tarvex
