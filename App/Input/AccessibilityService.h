#pragma once

#include "App/Input/AccessibilityPlatform.h"
#include "Core/Displays/ScreenPlatform.h"
#include "Core/Logging/LogPlatform.h"

#include <optional>
#include <string_view>

namespace tarvex {

/// Finds, measures and moves other programs' windows, and converts between screen space (points, origin at
/// the bottom-left of the primary display, y up) and accessibility space (origin at the top of the desktop, y
/// down). It keeps no state. Failures are logged and give none; nothing throws.
class AccessibilityService {
public:
    /// The ports must outlive the service.
    AccessibilityService(AccessibilityPlatform& platform, ScreenPlatform& screens, LogPlatform& log);

    /// Asks for the permission to steer windows, with the platform's prompt, and logs the outcome. Does not
    /// wait for the user.
    void ensureTrusted();

    /// The window under a point in screen space; none when there is none or the platform fails.
    [[nodiscard]] AccessibilityElementRef getWindowUnderCursor(Point point);

    /// The named attribute as a point or a size, in points and accessibility space; none, silently, when it
    /// cannot be read or is of another type.
    [[nodiscard]] std::optional<Point> getPointAttribute(const AccessibilityElementRef& window,
                                                         std::string_view name);
    [[nodiscard]] std::optional<Size> getSizeAttribute(const AccessibilityElementRef& window,
                                                       std::string_view name);

    /// Asks the window to move its top-left corner there (accessibility space), or to take that extent. A
    /// failure is logged; whether the window complied is not checked.
    void setPosition(const AccessibilityElementRef& window, Point origin);
    void setSize(const AccessibilityElementRef& window, Size size);

    /// The top-left corner in accessibility space of a frame in screen space.
    [[nodiscard]] Point convertToAccessibilityOrigin(const Rect& frame);

    /// The bottom-left corner in screen space of a rectangle given by its top-left corner in accessibility
    /// space and its extent.
    [[nodiscard]] Point convertToCocoaOrigin(Point origin, Size size);

private:
    [[nodiscard]] AccessibilityElementRef resolveWindowElement(AccessibilityElementRef element);
    [[nodiscard]] Point convertToAccessibilityPoint(Point point);
    [[nodiscard]] double desktopTop();
    void write(const AccessibilityElementRef& window, std::string_view attribute,
               const std::optional<AccessibilityValue>& value, std::string_view operation);

    AccessibilityPlatform* platform_;
    ScreenPlatform* screens_;
    LogPlatform* log_;
};

} // namespace tarvex
