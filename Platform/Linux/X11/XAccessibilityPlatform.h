#pragma once

#include "App/Input/AccessibilityPlatform.h"
#include "Platform/Linux/X11/XPointer.h"
#include "Platform/Linux/X11/XWindowFinder.h"
#include "Platform/Linux/X11/XWindowPlacer.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace tarvex {

/// Error codes of the X11 accessibility port besides those of X (1 to 255) and XConnection::connectionLost.
namespace x_accessibility_error {
/// The element is null or not one of this port's.
inline constexpr std::int32_t invalidElement = -2;
/// The element has no attribute of that name.
inline constexpr std::int32_t attributeUnsupported = -3;
/// The element has the attribute, but no value for it: it is part of no managed window, or is the root.
inline constexpr std::int32_t noValue = -4;
/// The value is of the wrong kind for the attribute, or beyond what X can express.
inline constexpr std::int32_t illegalValue = -5;
} // namespace x_accessibility_error

class XWindowElement;

/// Other programs' windows, as the X server and the window manager know them. X lets every client steer every
/// window, so that the process is always trusted. "AXPosition" and "AXSize" belong to what "AXWindow" gives.
///
/// While a press is delivered, what is found where the pointer was is the window that was pressed, and its
/// frame is the one that it had then: its window manager may be moving it already.
///
/// A window is put back by writing the frame that was read first while its button is still held. It goes back
/// to its pixels, wherever the primary monitor is by then.
class XAccessibilityPlatform final : public AccessibilityPlatform {
public:
    /// All must outlive the platform.
    /// @param ownClients this program's further connections, whose windows are never elements
    /// @param mainLoop as XWindowPlacer takes it
    /// @param pointer without one, presses are not told from other moments
    XAccessibilityPlatform(XConnection& connection, XEventPump& pump, DesktopLayoutProvider& layout,
                           std::vector<XClientResources> ownClients, MainLoop* mainLoop = nullptr,
                           const XPointer* pointer = nullptr);

    [[nodiscard]] bool isProcessTrusted(bool showsPrompt) override;
    [[nodiscard]] AccessibilityElementResult copyElementAtPosition(float x, float y) override;
    [[nodiscard]] AccessibilityValueResult copyAttributeValue(const AccessibilityElementRef& element,
                                                              std::string_view name) override;
    [[nodiscard]] std::optional<AccessibilityValue> makePointValue(Point point) override;
    [[nodiscard]] std::optional<AccessibilityValue> makeSizeValue(Size size) override;
    [[nodiscard]] std::int32_t setAttributeValue(const AccessibilityElementRef& element,
                                                 std::string_view name,
                                                 const AccessibilityValue& value) override;

private:
    [[nodiscard]] AccessibilityValueResult readFrame(XWindowElement& element, bool wantsPosition);
    /// The window that is being pressed there; null for none.
    [[nodiscard]] std::shared_ptr<XWindowSighting> sightingAt(int x, int y) const;
    [[nodiscard]] Point translated(const XWindowElement& element, Point position);
    [[nodiscard]] bool isOnRoot(const PixelRect& frame);

    XConnection* connection_;
    DesktopLayoutProvider* layout_;
    const XPointer* pointer_;
    XWindowFinder finder_;
    XWindowPlacer placer_;
};

} // namespace tarvex
