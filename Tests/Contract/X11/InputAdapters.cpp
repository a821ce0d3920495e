#include "Tests/Contract/X11/InputAdapters.h"

#include <stdexcept>

namespace tarvex::contract {

namespace {

constexpr int rootHeight = 1024;

AccessibilityElementRef elementIn(const AccessibilityValueResult& result) {
    const auto* element = result.value ? std::get_if<AccessibilityElementRef>(&*result.value) : nullptr;
    return element == nullptr ? nullptr : *element;
}

} // namespace

XInputAdapters::XInputAdapters(const std::string& displayName)
    : PumpedConnection(displayName),
      pointer(*connection, layout),
      taps(*connection, pump, pointer, SessionKind{}),
      accessibility(*connection, pump, layout, {}, &mainLoop) {
    layout.value = {0, rootHeight, 0};
}

void XInputAdapters::catchUp() {
    awaitServer();
    pump.processPending();
    awaitServer();
    pump.processPending();
}

AccessibilityElementRef XInputAdapters::windowAt(test::PixelPoint point) {
    const DesktopLayout& desktop = layout.value;
    AccessibilityElementRef element =
        accessibility
            .copyElementAtPosition(static_cast<float>(point.x - desktop.primaryLeft) + 0.5F,
                                   static_cast<float>(point.y - desktop.top) + 0.5F)
            .element;
    for (int step = 0; step < 10 && element; ++step) {
        if (auto window = elementIn(accessibility.copyAttributeValue(element, "AXWindow"))) {
            return window;
        }
        element = elementIn(accessibility.copyAttributeValue(element, "AXParent"));
    }
    return nullptr;
}

test::PixelRect XInputAdapters::frameOf(const AccessibilityElementRef& window) {
    const auto position = accessibility.copyAttributeValue(window, "AXPosition");
    const auto size = accessibility.copyAttributeValue(window, "AXSize");
    if (!position.value || !size.value) {
        throw std::runtime_error("the window has no frame");
    }
    const auto& origin = std::get<Point>(*position.value);
    const auto& extent = std::get<Size>(*size.value);
    return {static_cast<int>(origin.x) + layout.value.primaryLeft,
            static_cast<int>(origin.y) + layout.value.top, static_cast<int>(extent.width),
            static_cast<int>(extent.height)};
}

std::int32_t XInputAdapters::place(const AccessibilityElementRef& window, const test::PixelRect& frame) {
    const Point origin = layout.value.accessibilityPointOfPixel(frame.x, frame.y);
    if (const std::int32_t error = accessibility.setAttributeValue(window, "AXPosition", origin);
        error != 0) {
        return error;
    }
    return accessibility.setAttributeValue(
        window, "AXSize", Size{static_cast<double>(frame.width), static_cast<double>(frame.height)});
}

} // namespace tarvex::contract
