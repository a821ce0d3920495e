#include "App/Input/AccessibilityService.h"

#include <algorithm>
#include <limits>
#include <string>
#include <utility>

namespace tarvex {

namespace {

constexpr int maxParentSteps = 10;

AccessibilityElementRef elementOf(AccessibilityValueResult result) {
    if (result.error != 0 || !result.value) {
        return nullptr;
    }
    auto* element = std::get_if<AccessibilityElementRef>(&*result.value);
    return element != nullptr ? std::move(*element) : nullptr;
}

template <typename Value>
std::optional<Value> valueOf(const AccessibilityValueResult& result) {
    if (result.error != 0 || !result.value) {
        return std::nullopt;
    }
    const auto* value = std::get_if<Value>(&*result.value);
    return value != nullptr ? std::optional<Value>(*value) : std::nullopt;
}

} // namespace

AccessibilityService::AccessibilityService(AccessibilityPlatform& platform, ScreenPlatform& screens,
                                           LogPlatform& log)
    : platform_(&platform), screens_(&screens), log_(&log) {}

void AccessibilityService::ensureTrusted() {
    const bool trusted = platform_->isProcessTrusted(true);
    log_->systemLog(std::string("AccessibilityService.ensureTrusted: trusted=") +
                    (trusted ? "true" : "false"));
    if (!trusted) {
        log_->systemLog("AccessibilityService.ensureTrusted: not trusted. Check Privacy & Security -> "
                        "Accessibility for Tarvex.app");
    }
}

AccessibilityElementRef AccessibilityService::getWindowUnderCursor(Point point) {
    const Point position = convertToAccessibilityPoint(point);
    AccessibilityElementResult found =
        platform_->copyElementAtPosition(static_cast<float>(position.x), static_cast<float>(position.y));
    if (found.error != 0) {
        log_->systemLog("AccessibilityService.getWindowUnderCursor: CopyElementAtPosition failed (" +
                        std::to_string(found.error) + ")");
        return nullptr;
    }
    if (!found.element) {
        log_->systemLog(
            "AccessibilityService.getWindowUnderCursor: CopyElementAtPosition returned nil element");
        return nullptr;
    }
    return resolveWindowElement(std::move(found.element));
}

AccessibilityElementRef AccessibilityService::resolveWindowElement(AccessibilityElementRef element) {
    for (int step = 0; step < maxParentSteps && element; ++step) {
        if (AccessibilityElementRef window = elementOf(platform_->copyAttributeValue(element, "AXWindow"))) {
            return window;
        }
        element = elementOf(platform_->copyAttributeValue(element, "AXParent"));
    }
    return nullptr;
}

std::optional<Point> AccessibilityService::getPointAttribute(const AccessibilityElementRef& window,
                                                             std::string_view name) {
    return valueOf<Point>(platform_->copyAttributeValue(window, name));
}

std::optional<Size> AccessibilityService::getSizeAttribute(const AccessibilityElementRef& window,
                                                           std::string_view name) {
    return valueOf<Size>(platform_->copyAttributeValue(window, name));
}

void AccessibilityService::setPosition(const AccessibilityElementRef& window, Point origin) {
    write(window, "AXPosition", platform_->makePointValue(origin), "setPosition");
}

void AccessibilityService::setSize(const AccessibilityElementRef& window, Size size) {
    write(window, "AXSize", platform_->makeSizeValue(size), "setSize");
}

void AccessibilityService::write(const AccessibilityElementRef& window, std::string_view attribute,
                                 const std::optional<AccessibilityValue>& value, std::string_view operation) {
    if (!value) {
        return;
    }
    const std::int32_t error = platform_->setAttributeValue(window, attribute, *value);
    if (error != 0) {
        log_->systemLog("AccessibilityService." + std::string(operation) + ": failed (" +
                        std::to_string(error) + ")");
    }
}

Point AccessibilityService::convertToAccessibilityPoint(Point point) {
    return {point.x, desktopTop() - point.y};
}

Point AccessibilityService::convertToAccessibilityOrigin(const Rect& frame) {
    return {frame.minX(), desktopTop() - frame.maxY()};
}

Point AccessibilityService::convertToCocoaOrigin(Point origin, Size size) {
    return {origin.x, desktopTop() - origin.y - size.height};
}

// The tallest-reaching screen counts, not the primary one: accessibility space covers the whole desktop.
double AccessibilityService::desktopTop() {
    const std::vector<Screen> screens = screens_->screens();
    if (screens.empty()) {
        return 0;
    }
    double top = std::numeric_limits<double>::lowest();
    for (const Screen& screen : screens) {
        top = std::max(top, screen.frame.maxY());
    }
    return top;
}

} // namespace tarvex
