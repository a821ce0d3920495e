#pragma once

#include "Platform/Linux/X11/XAccessibilityPlatform.h"
#include "Platform/Linux/X11/XEventTapPlatform.h"
#include "Platform/Linux/X11/XPointer.h"
#include "Tests/Contract/X11/PumpedConnection.h"
#include "Tests/Support/X11/PixelGeometry.h"

#include <cstdint>
#include <string>

namespace tarvex::contract {

/// A desktop that stays as the test lays it out.
class FixedLayout final : public DesktopLayoutProvider {
public:
    [[nodiscard]] const DesktopLayout& layout() override { return value; }

    DesktopLayout value;
};

/// The adapters for the tap, the pointer and other programs' windows, on an X server. Unless the test says
/// otherwise the root window is one monitor of 1280 by 1024 pixels.
class XInputAdapters : public PumpedConnection {
public:
    explicit XInputAdapters(const std::string& displayName);

    /// Handles the events of everything that other clients had finished before. What is asked of the server
    /// in that has taken effect.
    void catchUp();

    /// The window that a press on this pixel of the root takes hold of, as the program finds it; null for
    /// none.
    [[nodiscard]] AccessibilityElementRef windowAt(test::PixelPoint point);

    /// What the port says of a window's visible frame, in pixels of the root.
    [[nodiscard]] test::PixelRect frameOf(const AccessibilityElementRef& window);

    /// Writes the position and then the size, so that the visible frame is on these pixels. The first error.
    std::int32_t place(const AccessibilityElementRef& window, const test::PixelRect& frame);

    FixedLayout layout;
    XPointer pointer;
    XEventTapPlatform taps;
    XAccessibilityPlatform accessibility;
};

} // namespace tarvex::contract
