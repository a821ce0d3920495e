#include "Platform/Linux/X11/XWindowGeometry.h"

#include <algorithm>
#include <limits>
#include <optional>

namespace tarvex {

namespace {

constexpr int maxDepth = 64;
constexpr std::int32_t badWindow = 3;

/// A property of four widths in the order left, right, top, bottom. Nothing a client writes there may carry
/// the arithmetic beyond what X can express.
std::optional<XBorders> bordersOf(const XPropertyWords& property) {
    if (property.words.size() < 4) {
        return std::nullopt;
    }
    const auto width = [&](std::size_t index) {
        constexpr std::uint32_t widest = std::numeric_limits<std::int16_t>::max();
        return static_cast<int>(std::min(property.words[index], widest));
    };
    return XBorders{width(0), width(1), width(2), width(3)};
}

} // namespace

PixelRect XWindowGeometry::visibleFrame() const {
    const int left = client.x - decoration.left + invisible.left;
    const int top = client.y - decoration.top + invisible.top;
    const int right = client.right() + decoration.right - invisible.right;
    const int bottom = client.bottom() + decoration.bottom - invisible.bottom;
    return {left, top, right - left, bottom - top};
}

int XWindowGeometry::clientWidthFor(int visibleWidth) const {
    return std::max(1, visibleWidth + invisible.left + invisible.right - decoration.left - decoration.right);
}

int XWindowGeometry::clientHeightFor(int visibleHeight) const {
    return std::max(1, visibleHeight + invisible.top + invisible.bottom - decoration.top - decoration.bottom);
}

XWindowGeometryRequest::XWindowGeometryRequest(XConnection& connection, xcb_window_t window)
    : connection_(&connection),
      window_(window),
      origin_(xcb_translate_coordinates(connection.get(), window, connection.root(), 0, 0)),
      geometry_(xcb_get_geometry(connection.get(), window)),
      tree_(xcb_query_tree(connection.get(), window)),
      decoration_(requestPropertyWords(connection, window, connection.atom("_NET_FRAME_EXTENTS"))),
      invisible_(requestPropertyWords(connection, window, connection.atom("_GTK_FRAME_EXTENTS"))) {}

XWindowGeometry XWindowGeometryRequest::take() {
    const auto origin = connection_->take(xcb_translate_coordinates_reply, origin_);
    const auto geometry = connection_->take(xcb_get_geometry_reply, geometry_);
    const auto tree = connection_->take(xcb_query_tree_reply, tree_);
    const XPropertyWords decoration = takePropertyWords(*connection_, decoration_);
    const XPropertyWords invisible = takePropertyWords(*connection_, invisible_);
    XWindowGeometry result;
    if (!origin || !geometry || !tree) {
        // A missing window is an error of another name for the request that takes pixmaps, too.
        result.error = connection_->isBroken() ? XConnection::connectionLost : badWindow;
        return result;
    }
    result.client = {origin->dst_x, origin->dst_y, geometry->width, geometry->height};
    result.invisible = bordersOf(invisible).value_or(XBorders{});
    const std::optional<XBorders> announced = bordersOf(decoration);
    result.decoration =
        announced ? *announced : measureDecoration(result.client, geometry->border_width, tree->parent);
    return result;
}

XBorders XWindowGeometryRequest::measureDecoration(const PixelRect& client, int border,
                                                   xcb_window_t parent) const {
    xcb_window_t frame = window_;
    for (int depth = 0; depth < maxDepth && parent != connection_->root(); ++depth) {
        frame = parent;
        const auto tree = connection_->take(xcb_query_tree_reply, xcb_query_tree(connection_->get(), frame));
        if (!tree) {
            return {border, border, border, border};
        }
        parent = tree->parent;
    }
    if (frame == window_) {
        return {border, border, border, border};
    }
    const auto geometry =
        connection_->take(xcb_get_geometry_reply, xcb_get_geometry(connection_->get(), frame));
    if (!geometry) {
        return {border, border, border, border};
    }
    const int right = geometry->x + geometry->width + 2 * geometry->border_width;
    const int bottom = geometry->y + geometry->height + 2 * geometry->border_width;
    return {client.x - geometry->x, right - client.right(), client.y - geometry->y, bottom - client.bottom()};
}

} // namespace tarvex
