#include "Platform/MacOS/Accessibility/MacAccessibilityPlatform.h"

#include "Platform/MacOS/CoreFoundation/CFText.h"
#include "Platform/MacOS/Displays/CoreGraphicsDisplayPlatform.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace tarvex {

namespace {

class MacAccessibilityElement final : public AccessibilityElement {
public:
    explicit MacAccessibilityElement(CFHandle<AXUIElementRef> element) : element_(std::move(element)) {}

    [[nodiscard]] AXUIElementRef get() const { return element_.get(); }

private:
    CFHandle<AXUIElementRef> element_;
};

/// Null when the element is null or another port's.
AXUIElementRef nativeElement(const AccessibilityElementRef& element) {
    const auto* held = dynamic_cast<const MacAccessibilityElement*>(element.get());
    return held == nullptr ? nullptr : held->get();
}

AccessibilityElementRef wrap(CFHandle<AXUIElementRef> element) {
    return element ? std::make_shared<MacAccessibilityElement>(std::move(element)) : nullptr;
}

// The timeout of the system-wide element is that of every element of the process (Apple,
// AXUIElementSetMessagingTimeout).
CFHandle<AXUIElementRef> makeSystemWideElement() {
    auto systemWide = CFHandle<AXUIElementRef>::adopt(AXUIElementCreateSystemWide());
    if (systemWide) {
        AXUIElementSetMessagingTimeout(systemWide.get(), MacAccessibilityPlatform::messagingTimeoutSeconds);
    }
    return systemWide;
}

// Where accessibility space begins, in the system's own space, which begins at the top of the primary
// display: 0, or less where another display reaches above that one. Asked anew each time, since displays come
// and go.
double desktopTop() {
    CoreGraphicsDisplayPlatform displays;
    double top = 0;
    for (const std::uint32_t display : displays.activeDisplays(displays.activeDisplays(0).count).displays) {
        top = std::min(top, displays.bounds(display).minY());
    }
    return top;
}

CFHandle<AXValueRef> wrapPoint(Point point) {
    const CGPoint native{point.x, point.y + desktopTop()};
    return CFHandle<AXValueRef>::adopt(AXValueCreate(kAXValueTypeCGPoint, &native));
}

CFHandle<AXValueRef> wrapSize(Size size) {
    const CGSize native{size.width, size.height};
    return CFHandle<AXValueRef>::adopt(AXValueCreate(kAXValueTypeCGSize, &native));
}

AccessibilityValue unwrap(AXValueRef value) {
    const AXValueType type = AXValueGetType(value);
    if (type == kAXValueTypeCGPoint) {
        CGPoint point{};
        if (AXValueGetValue(value, type, &point) != 0) {
            return Point{point.x, point.y - desktopTop()};
        }
    }
    if (type == kAXValueTypeCGSize) {
        CGSize size{};
        if (AXValueGetValue(value, type, &size) != 0) {
            return Size{size.width, size.height};
        }
    }
    return OtherAccessibilityValue{};
}

AccessibilityValue unwrap(CFTypeRef value) {
    if (const auto element = castTo<AXUIElementRef>(value, AXUIElementGetTypeID())) {
        return wrap(CFHandle<AXUIElementRef>::share(element));
    }
    if (const auto geometry = castTo<AXValueRef>(value, AXValueGetTypeID())) {
        return unwrap(geometry);
    }
    return OtherAccessibilityValue{};
}

/// Null for a value that no writable attribute takes.
CFHandle<AXValueRef> wrapValue(const AccessibilityValue& value) {
    if (const auto* point = std::get_if<Point>(&value)) {
        return wrapPoint(*point);
    }
    if (const auto* size = std::get_if<Size>(&value)) {
        return wrapSize(*size);
    }
    return {};
}

} // namespace

bool MacAccessibilityPlatform::isProcessTrusted(bool showsPrompt) {
    const void* key = kAXTrustedCheckOptionPrompt;
    const void* value = showsPrompt ? kCFBooleanTrue : kCFBooleanFalse;
    const auto options = CFHandle<CFDictionaryRef>::adopt(
        CFDictionaryCreate(kCFAllocatorDefault, &key, &value, 1, &kCFTypeDictionaryKeyCallBacks,
                           &kCFTypeDictionaryValueCallBacks));
    return AXIsProcessTrustedWithOptions(options.get()) != 0;
}

AccessibilityElementResult MacAccessibilityPlatform::copyElementAtPosition(float x, float y) {
    const auto systemWide = makeSystemWideElement();
    if (!systemWide) {
        return {kAXErrorFailure, nullptr};
    }
    AXUIElementRef found = nullptr;
    const AXError error =
        AXUIElementCopyElementAtPosition(systemWide.get(), x, static_cast<float>(y + desktopTop()), &found);
    // Whatever came with an error is owned all the same.
    auto element = CFHandle<AXUIElementRef>::adopt(found);
    return {error, error == kAXErrorSuccess ? wrap(std::move(element)) : nullptr};
}

AccessibilityValueResult MacAccessibilityPlatform::copyAttributeValue(const AccessibilityElementRef& element,
                                                                      std::string_view name) {
    const AXUIElementRef native = nativeElement(element);
    if (native == nullptr) {
        return {kAXErrorInvalidUIElement, std::nullopt};
    }
    const auto attribute = makeCFString(name);
    if (!attribute) {
        return {kAXErrorIllegalArgument, std::nullopt};
    }
    CFTypeRef copied = nullptr;
    const AXError error = AXUIElementCopyAttributeValue(native, attribute.get(), &copied);
    const auto value = CFHandle<CFTypeRef>::adopt(copied);
    if (error != kAXErrorSuccess || !value) {
        return {error, std::nullopt};
    }
    return {kAXErrorSuccess, unwrap(value.get())};
}

std::optional<AccessibilityValue> MacAccessibilityPlatform::makePointValue(Point point) {
    return wrapPoint(point) ? std::optional<AccessibilityValue>(point) : std::nullopt;
}

std::optional<AccessibilityValue> MacAccessibilityPlatform::makeSizeValue(Size size) {
    return wrapSize(size) ? std::optional<AccessibilityValue>(size) : std::nullopt;
}

std::int32_t MacAccessibilityPlatform::setAttributeValue(const AccessibilityElementRef& element,
                                                         std::string_view name,
                                                         const AccessibilityValue& value) {
    const AXUIElementRef native = nativeElement(element);
    if (native == nullptr) {
        return kAXErrorInvalidUIElement;
    }
    const auto attribute = makeCFString(name);
    const auto wrapped = wrapValue(value);
    if (!attribute || !wrapped) {
        return kAXErrorIllegalArgument;
    }
    return AXUIElementSetAttributeValue(native, attribute.get(), wrapped.get());
}

} // namespace tarvex
