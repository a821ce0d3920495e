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

XBorders bordersBetween(const PixelRect& frame, const PixelRect& client) {
    return {client.x - frame.x, frame.right() - client.right(), client.y - frame.y,
            frame.bottom() - client.bottom()};
}

} // namespace

PixelRect XWindowGeometry::visibleFrame() const {
    const int left = client.x - decoration.left + invisible.left;
    const int top = client.y - decoration.top + invisible.top;
    const int right = client.right() + decoration.right - invisible.right;
    const int bottom = client.bottom() + decoration.bottom - invisible.bottom;
    return {left, top, right - left, bottom - top - rolledUp};
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
      invisible_(requestPropertyWords(connection, window, connection.atom("_GTK_FRAME_EXTENTS"))),
      states_(requestPropertyWords(connection, window, connection.atom("_NET_WM_STATE"))) {}

XWindowGeometry XWindowGeometryRequest::take(const std::optional<PixelRect>& known) {
    const auto origin = connection_->take(xcb_translate_coordinates_reply, origin_);
    const auto geometry = connection_->take(xcb_get_geometry_reply, geometry_);
    const auto tree = connection_->take(xcb_query_tree_reply, tree_);
    const XPropertyWords decoration = takePropertyWords(*connection_, decoration_);
    const XPropertyWords invisible = takePropertyWords(*connection_, invisible_);
    const XPropertyWords states = takePropertyWords(*connection_, states_);
    XWindowGeometry result;
    if (!origin || !geometry || !tree) {
        // A missing window is an error of another name for the request that takes pixmaps, too.
        result.error = connection_->isBroken() ? XConnection::connectionLost : badWindow;
        return result;
    }
    result.client = {origin->dst_x, origin->dst_y, geometry->width, geometry->height};
    result.parent = tree->parent;
    result.invisible = bordersOf(invisible).value_or(XBorders{});
    result.states = sizeStatesOf(*connection_, states.words);
    const std::optional<XBorders> announced = bordersOf(decoration);
    const bool needsFrame = !announced || result.states.shaded;
    const std::optional<PixelRect> frame = !needsFrame ? std::nullopt
                                           : known     ? known
                                                       : measureFrame(tree->parent);
    const int border = geometry->border_width;
    result.decoration = announced ? *announced
                        : frame   ? bordersBetween(*frame, result.client)
                                  : XBorders{border, border, border, border};
    if (frame && result.states.shaded) {
        // Window managers roll up the frame and leave the client as large as it was.
        result.rolledUp = std::max(0, result.visibleFrame().bottom() - frame->bottom());
    }
    return result;
}

std::optional<PixelRect> XWindowGeometryRequest::measureFrame(xcb_window_t parent) const {
    xcb_window_t frame = window_;
    for (int depth = 0; depth < maxDepth && parent != connection_->root(); ++depth) {
        frame = parent;
        const auto tree = connection_->take(xcb_query_tree_reply, xcb_query_tree(connection_->get(), frame));
        if (!tree) {
            return std::nullopt;
        }
        parent = tree->parent;
    }
    if (frame == window_) {
        return std::nullopt;
    }
    const auto geometry =
        connection_->take(xcb_get_geometry_reply, xcb_get_geometry(connection_->get(), frame));
    if (!geometry) {
        return std::nullopt;
    }
    return PixelRect{geometry->x, geometry->y, geometry->width + 2 * geometry->border_width,
                     geometry->height + 2 * geometry->border_width};
}

} // namespace tarvex
