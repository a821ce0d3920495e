#pragma once

#include "App/Input/AccessibilityPlatform.h"
#include "Platform/MacOS/CoreFoundation/CFHandle.h"

#include <ApplicationServices/ApplicationServices.h>

namespace tarvex {

/// Other programs' windows through the accessibility interface. Error codes are AXError values. Every
/// question is a message to the program that owns the element: one that does not answer within
/// messagingTimeoutSeconds gives kAXErrorCannotComplete, since the caller sits in an event tap that holds up
/// the input of the whole desktop. Points are translated from and to the system's own space, whose origin is
/// the top-left of the primary display, however far other displays reach above it.
class MacAccessibilityPlatform final : public AccessibilityPlatform {
public:
    /// A press asks up to three questions of a program that has just stopped answering; together they stay
    /// below the second after which the system disables a tap.
    static constexpr float messagingTimeoutSeconds = 0.25F;

    [[nodiscard]] bool isProcessTrusted(bool showsPrompt) override;
    [[nodiscard]] AccessibilityElementResult copyElementAtPosition(float x, float y) override;
    [[nodiscard]] AccessibilityValueResult copyAttributeValue(const AccessibilityElementRef& element,
                                                              std::string_view name) override;
    [[nodiscard]] std::optional<AccessibilityValue> makePointValue(Point point) override;
    [[nodiscard]] std::optional<AccessibilityValue> makeSizeValue(Size size) override;
    [[nodiscard]] std::int32_t setAttributeValue(const AccessibilityElementRef& element,
                                                 std::string_view name,
                                                 const AccessibilityValue& value) override;
};

} // namespace tarvex
