#include "Platform/Linux/X11/XAccessibilityPlatform.h"

#include <cmath>
#include <memory>
#include <utility>

namespace tarvex {

class XWindowElement final : public AccessibilityElement {
public:
    XWindowElement(xcb_window_t window, bool isManaged) : path_{window}, isManaged_(isManaged) {}

    /// One that is part of no managed window yet.
    explicit XWindowElement(std::vector<xcb_window_t> path) : path_(std::move(path)), isManaged_(false) {}

    [[nodiscard]] xcb_window_t window() const { return path_.back(); }

    /// The window, last, and what it was found in. Parts of a window come and go while it stays.
    [[nodiscard]] const std::vector<xcb_window_t>& path() const { return path_; }

    /// A window in the user's sense, with a frame that can be read and written.
    [[nodiscard]] bool isManaged() const { return isManaged_; }

    /// What its frame was, and in which states, when somebody first asked for it. A frame that was read says
    /// nothing of the states, so that whoever writes it later could not bring them back.
    [[nodiscard]] const std::optional<XWindowRecord>& atFirst() const { return atFirst_; }

    void record(const XWindowGeometry& geometry) {
        if (!atFirst_) {
            atFirst_ = XWindowRecord{geometry.visibleFrame(), geometry.states};
        }
    }

private:
    std::vector<xcb_window_t> path_;
    bool isManaged_;
    std::optional<XWindowRecord> atFirst_;
};

namespace {

constexpr std::string_view windowAttribute = "AXWindow";
constexpr std::string_view parentAttribute = "AXParent";
constexpr std::string_view positionAttribute = "AXPosition";
constexpr std::string_view sizeAttribute = "AXSize";

/// Coordinates and extents of X are 16 bits wide.
constexpr double farthest = 32767;

AccessibilityValueResult elementResult(const XWindowFinder::Result& found, bool isManaged) {
    if (found.error != 0) {
        return {found.error, std::nullopt};
    }
    if (found.window == XCB_WINDOW_NONE) {
        return {x_accessibility_error::noValue, std::nullopt};
    }
    return {0, AccessibilityElementRef(std::make_shared<XWindowElement>(found.window, isManaged))};
}

bool isExpressible(double first, double second) {
    return std::abs(first) <= farthest && std::abs(second) <= farthest;
}

} // namespace

XAccessibilityPlatform::XAccessibilityPlatform(XConnection& connection, XEventPump& pump,
                                               DesktopLayoutProvider& layout,
                                               std::vector<XClientResources> ownClients, MainLoop* mainLoop)
    : connection_(&connection),
      layout_(&layout),
      finder_(connection, std::move(ownClients)),
      placer_(connection, pump, layout, {}, mainLoop) {}

bool XAccessibilityPlatform::isProcessTrusted(bool /*showsPrompt*/) {
    return true;
}

AccessibilityElementResult XAccessibilityPlatform::copyElementAtPosition(float x, float y) {
    // The user is about to take hold of a window; from here on it is his.
    placer_.stopSettling();
    if (!isExpressible(x, y)) {
        return {x_accessibility_error::illegalValue, nullptr};
    }
    const DesktopLayout& layout = layout_->layout();
    auto found = finder_.deepestWindowAt(static_cast<int>(std::floor(x)) + layout.primaryLeft,
                                         static_cast<int>(std::floor(y)) + layout.top);
    if (found.windows.empty()) {
        return {found.error, nullptr};
    }
    return {0, std::make_shared<XWindowElement>(std::move(found.windows))};
}

AccessibilityValueResult XAccessibilityPlatform::copyAttributeValue(const AccessibilityElementRef& element,
                                                                    std::string_view name) {
    auto* node = dynamic_cast<XWindowElement*>(element.get());
    if (node == nullptr) {
        return {x_accessibility_error::invalidElement, std::nullopt};
    }
    if (name == windowAttribute) {
        return elementResult(finder_.managedWindowOf(node->path()), true);
    }
    if (name == parentAttribute) {
        return elementResult(finder_.parentOf(node->window()), false);
    }
    if (node->isManaged() && (name == positionAttribute || name == sizeAttribute)) {
        return readFrame(*node, name == positionAttribute);
    }
    return {x_accessibility_error::attributeUnsupported, std::nullopt};
}

AccessibilityValueResult XAccessibilityPlatform::readFrame(XWindowElement& element, bool wantsPosition) {
    placer_.sendPending();
    const XWindowGeometry geometry = XWindowGeometryRequest(*connection_, element.window()).take();
    if (geometry.error != 0) {
        return {geometry.error, std::nullopt};
    }
    element.record(geometry);
    const PixelRect frame = geometry.visibleFrame();
    if (wantsPosition) {
        return {0, layout_->layout().accessibilityPointOfPixel(frame.x, frame.y)};
    }
    return {0, Size{static_cast<double>(frame.width), static_cast<double>(frame.height)}};
}

std::optional<AccessibilityValue> XAccessibilityPlatform::makePointValue(Point point) {
    return point;
}

std::optional<AccessibilityValue> XAccessibilityPlatform::makeSizeValue(Size size) {
    return size;
}

std::int32_t XAccessibilityPlatform::setAttributeValue(const AccessibilityElementRef& element,
                                                       std::string_view name,
                                                       const AccessibilityValue& value) {
    const auto* node = dynamic_cast<const XWindowElement*>(element.get());
    if (node == nullptr) {
        return x_accessibility_error::invalidElement;
    }
    if (!node->isManaged() || (name != positionAttribute && name != sizeAttribute)) {
        return x_accessibility_error::attributeUnsupported;
    }
    if (name == positionAttribute) {
        const auto* position = std::get_if<Point>(&value);
        const bool isLegal = position != nullptr && isExpressible(position->x, position->y);
        return isLegal ? placer_.setPosition(node->window(), *position, node->atFirst())
                       : x_accessibility_error::illegalValue;
    }
    const auto* size = std::get_if<Size>(&value);
    const bool isLegal = size != nullptr && isExpressible(size->width, size->height);
    return isLegal ? placer_.setSize(node->window(), *size, node->atFirst())
                   : x_accessibility_error::illegalValue;
}

} // namespace tarvex
