#include "Platform/Linux/X11/XAccessibilityPlatform.h"

#include <cmath>
#include <memory>
#include <utility>

namespace tarvex {

class XWindowElement final : public AccessibilityElement {
public:
    XWindowElement(xcb_window_t window, bool isManaged, std::weak_ptr<XWindowSighting> sighting = {})
        : path_{window}, isManaged_(isManaged), sighting_(std::move(sighting)) {}

    /// One that is part of no managed window yet.
    XWindowElement(std::vector<xcb_window_t> path, std::weak_ptr<XWindowSighting> sighting)
        : path_(std::move(path)), isManaged_(false), sighting_(std::move(sighting)) {}

    [[nodiscard]] xcb_window_t window() const { return path_.back(); }

    /// The window, last, and what it was found in. Parts of a window come and go while it stays.
    [[nodiscard]] const std::vector<xcb_window_t>& path() const { return path_; }

    /// A window in the user's sense, with a frame that can be read and written.
    [[nodiscard]] bool isManaged() const { return isManaged_; }

    /// What its frame was, and in which states, when somebody first asked for it. A frame that was read says
    /// nothing of the states, so that whoever writes it later could not bring them back.
    [[nodiscard]] const std::optional<XWindowRecord>& atFirst() const { return atFirst_; }

    /// How the desktop was laid out then.
    [[nodiscard]] const DesktopLayout& layoutAtFirst() const { return layoutAtFirst_; }

    void record(const XWindowGeometry& geometry, const DesktopLayout& layout) {
        if (!atFirst_) {
            atFirst_ = XWindowRecord{geometry.visibleFrame(), geometry.states};
            layoutAtFirst_ = layout;
        }
    }

    /// The window at the press by which it was found, while that press is delivered.
    [[nodiscard]] const std::weak_ptr<XWindowSighting>& sighting() const { return sighting_; }

    void forgetSighting() { sighting_.reset(); }

private:
    std::vector<xcb_window_t> path_;
    bool isManaged_;
    std::weak_ptr<XWindowSighting> sighting_;
    std::optional<XWindowRecord> atFirst_;
    DesktopLayout layoutAtFirst_;
};

namespace {

constexpr std::string_view windowAttribute = "AXWindow";
constexpr std::string_view parentAttribute = "AXParent";
constexpr std::string_view positionAttribute = "AXPosition";
constexpr std::string_view sizeAttribute = "AXSize";

/// Coordinates and extents of X are 16 bits wide.
constexpr double farthest = 32767;

AccessibilityValueResult elementResult(const XWindowFinder::Result& found, bool isManaged,
                                       const std::weak_ptr<XWindowSighting>& sighting = {}) {
    if (found.error != 0) {
        return {found.error, std::nullopt};
    }
    if (found.window == XCB_WINDOW_NONE) {
        return {x_accessibility_error::noValue, std::nullopt};
    }
    return {0, AccessibilityElementRef(std::make_shared<XWindowElement>(found.window, isManaged, sighting))};
}

bool isExpressible(double first, double second) {
    return std::abs(first) <= farthest && std::abs(second) <= farthest;
}

} // namespace

XAccessibilityPlatform::XAccessibilityPlatform(XConnection& connection, XEventPump& pump,
                                               DesktopLayoutProvider& layout,
                                               std::vector<XClientResources> ownClients, MainLoop* mainLoop,
                                               const XPointer* pointer)
    : connection_(&connection),
      layout_(&layout),
      pointer_(pointer),
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
    const int left = static_cast<int>(std::floor(x)) + layout.primaryLeft;
    const int top = static_cast<int>(std::floor(y)) + layout.top;
    auto sighting = sightingAt(left, top);
    auto found = sighting ? finder_.deepestWindowIn(sighting->outermost(), left, top)
                          : finder_.deepestWindowAt(left, top);
    if (sighting && found.error == XCB_WINDOW) {
        // It has closed since.
        found = finder_.deepestWindowAt(left, top);
        if (found.windows.size() < 2 || found.windows[1] != sighting->outermost()) {
            sighting = nullptr;
        }
    }
    if (found.windows.empty()) {
        return {found.error, nullptr};
    }
    return {0, std::make_shared<XWindowElement>(std::move(found.windows), sighting)};
}

std::shared_ptr<XWindowSighting> XAccessibilityPlatform::sightingAt(int x, int y) const {
    const bool isPressed = pointer_ != nullptr && pointer_->snapshot().x == x && pointer_->snapshot().y == y;
    return isPressed ? pointer_->sighting() : nullptr;
}

AccessibilityValueResult XAccessibilityPlatform::copyAttributeValue(const AccessibilityElementRef& element,
                                                                    std::string_view name) {
    auto* node = dynamic_cast<XWindowElement*>(element.get());
    if (node == nullptr) {
        return {x_accessibility_error::invalidElement, std::nullopt};
    }
    if (name == windowAttribute) {
        return elementResult(finder_.managedWindowOf(node->path()), true, node->sighting());
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
    const auto sighting = element.sighting().lock();
    const XWindowGeometry geometry = sighting ? sighting->geometryOf(element.window())
                                              : XWindowGeometryRequest(*connection_, element.window()).take();
    if (geometry.error != 0) {
        return {geometry.error, std::nullopt};
    }
    const DesktopLayout& layout = layout_->layout();
    element.record(geometry, layout);
    const PixelRect frame = geometry.visibleFrame();
    if (wantsPosition) {
        return {0, layout.accessibilityPointOfPixel(frame.x, frame.y)};
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
    auto* node = dynamic_cast<XWindowElement*>(element.get());
    if (node == nullptr) {
        return x_accessibility_error::invalidElement;
    }
    if (!node->isManaged() || (name != positionAttribute && name != sizeAttribute)) {
        return x_accessibility_error::attributeUnsupported;
    }
    node->forgetSighting();
    if (name == positionAttribute) {
        const auto* position = std::get_if<Point>(&value);
        const bool isLegal = position != nullptr && isExpressible(position->x, position->y);
        return isLegal ? placer_.setPosition(node->window(), translated(*node, *position), node->atFirst())
                       : x_accessibility_error::illegalValue;
    }
    const auto* size = std::get_if<Size>(&value);
    const bool isLegal = size != nullptr && isExpressible(size->width, size->height);
    return isLegal ? placer_.setSize(node->window(), *size, node->atFirst())
                   : x_accessibility_error::illegalValue;
}

Point XAccessibilityPlatform::translated(const XWindowElement& element, Point position) {
    const bool isHeld = pointer_ != nullptr && (pointer_->snapshot().mask & XCB_KEY_BUT_MASK_BUTTON_1) != 0;
    const DesktopLayout& now = layout_->layout();
    // One that was dropped goes where the user sees his zones now, though that be where it was in the old
    // layout.
    if (!isHeld || !element.atFirst() || element.layoutAtFirst() == now) {
        return position;
    }
    // Frames are kept in screen space, whose origin goes with the primary monitor.
    const PixelRect& frame = element.atFirst()->frame;
    const Rect kept = element.layoutAtFirst().screenRectOfPixels(frame);
    const Point keptOrigin{kept.minX(), now.primaryBottom - now.top - kept.maxY()};
    return position == keptOrigin && isOnRoot(frame) ? now.accessibilityPointOfPixel(frame.x, frame.y)
                                                     : position;
}

bool XAccessibilityPlatform::isOnRoot(const PixelRect& frame) {
    const auto root =
        connection_->take(xcb_get_geometry_reply, xcb_get_geometry(connection_->get(), connection_->root()));
    // By the middle of its title.
    const int middle = frame.x + frame.width / 2;
    return root && middle >= 0 && middle < root->width && frame.y >= 0 && frame.y < root->height;
}

} // namespace tarvex
