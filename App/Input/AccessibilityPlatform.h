#pragma once

#include "Core/Geometry.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <variant>

namespace tarvex {

/// A node of the platform's accessibility tree: a window or a part of one. Dropping the last reference
/// releases it. A handle may outlive what it names; using it then gives an error.
class AccessibilityElement {
public:
    AccessibilityElement() = default;
    AccessibilityElement(const AccessibilityElement&) = delete;
    AccessibilityElement& operator=(const AccessibilityElement&) = delete;
    AccessibilityElement(AccessibilityElement&&) = delete;
    AccessibilityElement& operator=(AccessibilityElement&&) = delete;
    virtual ~AccessibilityElement() = default;
};

using AccessibilityElementRef = std::shared_ptr<AccessibilityElement>;

/// A value that is neither an element, nor a point, nor a size.
struct OtherAccessibilityValue {
    bool operator==(const OtherAccessibilityValue&) const = default;
};

/// The value of an attribute. Elements in it are never null.
using AccessibilityValue = std::variant<AccessibilityElementRef, Point, Size, OtherAccessibilityValue>;

/// The answer to a hit test.
struct AccessibilityElementResult {
    /// 0 for success, else the platform's error code.
    std::int32_t error = 0;
    /// May be null also after success.
    AccessibilityElementRef element;
};

/// The answer to an attribute read.
struct AccessibilityValueResult {
    /// 0 for success, else the platform's error code.
    std::int32_t error = 0;
    /// May be absent also after success.
    std::optional<AccessibilityValue> value;
};

/// Port: other programs' windows. Positions are in accessibility space: points, origin at the left edge of
/// the primary display and the top of the desktop, y down. No call waits for long for the program that owns
/// the window, and none throws: a window that has gone, or whose program does not answer, is an error code.
///
/// Attributes: "AXWindow" is the top-level window that an element belongs to; "AXParent" the element that
/// holds it; "AXPosition" the top-left corner of the window as the user sees it, frame included and invisible
/// borders not; "AXSize" the extent of the same rectangle.
class AccessibilityPlatform {
public:
    AccessibilityPlatform() = default;
    AccessibilityPlatform(const AccessibilityPlatform&) = delete;
    AccessibilityPlatform& operator=(const AccessibilityPlatform&) = delete;
    AccessibilityPlatform(AccessibilityPlatform&&) = delete;
    AccessibilityPlatform& operator=(AccessibilityPlatform&&) = delete;
    virtual ~AccessibilityPlatform() = default;

    /// Whether the user lets this program steer windows; with showsPrompt the platform may ask the user.
    /// Never waits for the answer.
    [[nodiscard]] virtual bool isProcessTrusted(bool showsPrompt) = 0;

    /// The deepest element at a point that is not part of this program's own click-through windows.
    [[nodiscard]] virtual AccessibilityElementResult copyElementAtPosition(float x, float y) = 0;

    /// One attribute of an element.
    [[nodiscard]] virtual AccessibilityValueResult copyAttributeValue(const AccessibilityElementRef& element,
                                                                      std::string_view name) = 0;

    /// A value that holds a point or a size, as setAttributeValue wants it; none when the platform cannot
    /// make one.
    [[nodiscard]] virtual std::optional<AccessibilityValue> makePointValue(Point point) = 0;
    [[nodiscard]] virtual std::optional<AccessibilityValue> makeSizeValue(Size size) = 0;

    /// Asks for a new "AXPosition" or "AXSize" and returns at once: 0 when the request went out, else the
    /// platform's error code. A position and a size that follow each other on one window take effect
    /// together.
    [[nodiscard]] virtual std::int32_t setAttributeValue(const AccessibilityElementRef& element,
                                                         std::string_view name,
                                                         const AccessibilityValue& value) = 0;
};

} // namespace tarvex
