#include "Platform/Linux/X11/XPlacement.h"

namespace tarvex {

bool isExactly(const XWindowTarget& target, const PixelRect& frame) {
    return target.x == frame.x && target.y == frame.y && target.width == frame.width &&
           target.height == frame.height;
}

XWindowTarget XPlacement::requestFor(const XWindowGeometry& geometry) const {
    XWindowTarget request = target_;
    if (target_.width && target_.height) {
        const XSizeLimits::Extent size = clientSizeFor(geometry);
        *request.width += size.width - geometry.clientWidthFor(*target_.width);
        *request.height += size.height - geometry.clientHeightFor(*target_.height);
    }
    if (isAimedWithClient_ && request.x && request.y) {
        *request.x += geometry.decoration.left;
        *request.y += geometry.decoration.top;
    }
    return request;
}

XSizeLimits::Extent XPlacement::clientSizeFor(const XWindowGeometry& geometry) const {
    return limits_.requestFor({geometry.clientWidthFor(target_.width.value_or(0)),
                               geometry.clientHeightFor(target_.height.value_or(0))});
}

void XPlacement::noteRequest(const XWindowGeometry& geometry) {
    assumed_ = geometry;
    asked_ = clientSizeFor(geometry);
    wasAsAsked_ = false;
}

bool XPlacement::noteConfiguration(const xcb_configure_notify_event_t& change) {
    const bool isAsBefore = change.width == assumed_.client.width && change.height == assumed_.client.height;
    const bool isAsAsked =
        target_.width && target_.height && XSizeLimits::Extent{change.width, change.height} == asked_;
    wasAsAsked_ = wasAsAsked_ || isAsAsked;
    // Only a sent event has coordinates on the root window (ICCCM 4.1.5).
    constexpr std::uint8_t sentBit = 0x80;
    const bool isSent = (change.response_type & sentBit) != 0;
    return (isAsBefore || isAsAsked) && !(isSent && isClientInCorner(change.x, change.y, assumed_));
}

bool XPlacement::isClientInCorner(int clientX, int clientY, const XWindowGeometry& geometry) const {
    const XBorders& decoration = geometry.decoration;
    return !isAimedWithClient_ && target_.x && target_.y && (decoration.left != 0 || decoration.top != 0) &&
           clientX == *target_.x - geometry.invisible.left && clientY == *target_.y - geometry.invisible.top;
}

XPlacement::Outcome XPlacement::outcomeFor(const XWindowGeometry& now) const {
    const PixelRect frame = now.visibleFrame();
    if (!target_.x || !target_.y || !target_.width || !target_.height || isExactly(target_, frame)) {
        return Outcome::landed;
    }
    const bool isKept = frame == assumed_.visibleFrame();
    if (!isKept && isClientInCorner(now.client.x, now.client.y, now)) {
        return Outcome::clientInCorner;
    }
    const bool isInPlace = frame.x == *target_.x && frame.y == *target_.y;
    const XSizeLimits::Extent asked = clientSizeFor(now);
    const XSizeLimits::Extent size{now.client.width, now.client.height};
    if (limits_.explain(size, asked)) {
        // One that cannot be made as small as it should be may have been moved so that all of it can be seen.
        const bool isTooLarge = size.width > asked.width || size.height > asked.height;
        return isInPlace || isTooLarge ? Outcome::landed : isKept ? Outcome::kept : Outcome::astray;
    }
    if (isInPlace || wasAsAsked_) {
        return Outcome::refused;
    }
    return isKept ? Outcome::kept : Outcome::astray;
}

} // namespace tarvex
