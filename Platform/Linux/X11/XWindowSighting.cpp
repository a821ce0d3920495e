#include "Platform/Linux/X11/XWindowSighting.h"

#include "Platform/Linux/X11/XClientResources.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <span>

namespace tarvex {

namespace {

/// More windows of other programs stand in no frame that is not broken.
constexpr std::size_t mostLookedAt = 4;

std::optional<PixelRect> outlineOf(const XReply<xcb_get_geometry_reply_t>& geometry) {
    if (!geometry) {
        return std::nullopt;
    }
    return PixelRect{geometry->x, geometry->y, geometry->width + 2 * geometry->border_width,
                     geometry->height + 2 * geometry->border_width};
}

} // namespace

XWindowSighting::XWindowSighting(XConnection& connection, xcb_window_t outermost)
    : connection_(&connection), outermost_(outermost) {
    const auto frameCookie = xcb_get_geometry(connection.get(), outermost);
    XWindowGeometryRequest request(connection, outermost);
    const auto treeCookie = xcb_query_tree(connection.get(), outermost);
    const auto attributesCookie = xcb_get_window_attributes(connection.get(), outermost);
    frame_ = outlineOf(connection.take(xcb_get_geometry_reply, frameCookie));
    seen_.emplace(outermost, request.take());
    const auto tree = connection.take(xcb_query_tree_reply, treeCookie);
    const auto attributes = connection.take(xcb_get_window_attributes_reply, attributesCookie);
    isInputOnly_ = attributes && attributes->_class == XCB_WINDOW_CLASS_INPUT_ONLY;
    if (!frame_ || !tree) {
        return;
    }
    const std::span children(xcb_query_tree_children(tree.get()),
                             static_cast<std::size_t>(xcb_query_tree_children_length(tree.get())));
    // A frame's other children, its title and its buttons, are the window manager's own.
    const XClientResources resources(connection.get());
    std::vector<xcb_window_t> framed;
    std::ranges::copy_if(children, std::back_inserter(framed), [&](xcb_window_t child) {
        return framed.size() < mostLookedAt && !resources.isSameClient(child, outermost);
    });
    look(framed);
}

XWindowGeometry XWindowSighting::geometryOf(xcb_window_t window) {
    if (!seen_.contains(window)) {
        look({window});
    }
    return seen_.at(window);
}

void XWindowSighting::look(const std::vector<xcb_window_t>& windows) {
    if (windows.empty()) {
        return;
    }
    const auto frameCookie = xcb_get_geometry(connection_->get(), outermost_);
    std::vector<XWindowGeometryRequest> requests;
    requests.reserve(windows.size());
    for (const xcb_window_t window : windows) {
        requests.emplace_back(*connection_, window);
    }
    const std::optional<PixelRect> now = outlineOf(connection_->take(xcb_get_geometry_reply, frameCookie));
    for (std::size_t index = 0; index < windows.size(); ++index) {
        XWindowGeometry geometry = requests[index].take(now);
        // One that has another size by now was not moved merely.
        if (frame_ && now && frame_->width == now->width && frame_->height == now->height) {
            geometry.client.x += frame_->x - now->x;
            geometry.client.y += frame_->y - now->y;
        }
        seen_.emplace(windows[index], geometry);
    }
}

} // namespace tarvex
