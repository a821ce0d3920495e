#pragma once

#include "Platform/Linux/X11/XAccessibilityPlatform.h"
#include "Platform/Linux/X11/XEventTapPlatform.h"
#include "Platform/Linux/X11/XPointer.h"
#include "Tests/Support/X11/PixelGeometry.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tarvex::contract {

/// A desktop that stays as the test lays it out.
class FixedLayout final : public DesktopLayoutProvider {
public:
    [[nodiscard]] const DesktopLayout& layout() override { return value; }

    DesktopLayout value;
};

/// The adapters for the tap, the pointer and other programs' windows, on an X server. Unless the test says
/// otherwise the root window is one monitor of 1280 by 1024 pixels.
class XInputAdapters {
public:
    explicit XInputAdapters(const std::string& displayName);

    /// Handles events until the condition holds; false when the patience ended first.
    bool waitUntil(const std::function<bool()>& condition);

    /// Returns when the server has dealt with all requests. What it has sent is read, but not handled.
    void awaitServer();

    /// Handles the events of everything that other clients had finished before. What is asked of the server
    /// in that has taken effect.
    void catchUp();

    /// How many requests the connection sends while the work is done.
    [[nodiscard]] unsigned requestsDuring(const std::function<void()>& work);

    /// The window that a press on this pixel of the root takes hold of, as the program finds it; null for
    /// none.
    [[nodiscard]] AccessibilityElementRef windowAt(test::PixelPoint point);

    /// What the port says of a window's visible frame, in pixels of the root.
    [[nodiscard]] test::PixelRect frameOf(const AccessibilityElementRef& window);

    /// Writes the position and then the size, so that the visible frame is on these pixels. The first error.
    std::int32_t place(const AccessibilityElementRef& window, const test::PixelRect& frame);

    std::unique_ptr<XConnection> connection;
    XEventPump pump;
    FixedLayout layout;
    XPointer pointer;
    XEventTapPlatform taps;
    XAccessibilityPlatform accessibility;
};

} // namespace tarvex::contract
