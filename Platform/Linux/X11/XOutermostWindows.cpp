#include "Platform/Linux/X11/XOutermostWindows.h"

#include "Platform/Linux/X11/WindowManagerProtocol.h"
#include "Platform/Linux/X11/XClientResources.h"
#include "Platform/Linux/X11/XWindowTree.h"

#include <xcb/shape.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <ranges>
#include <span>

namespace tarvex {

namespace {

/// Window trees are shallow.
constexpr int maxDepth = 64;

constexpr xcb_window_t none = XCB_WINDOW_NONE;

bool contains(const PixelRect& rect, int x, int y) {
    return x >= rect.x && y >= rect.y && x < rect.right() && y < rect.bottom();
}

} // namespace

xcb_window_t XOutermostWindows::behind(xcb_window_t child, int x, int y) {
    const auto shape = child == none ? std::nullopt : shapeOf(child);
    if (!shape || !shape->isInputOnly) {
        return child;
    }
    if (isShield(*shape)) {
        return belowShield(child, x, y);
    }
    const xcb_window_t frame = frameInside(child, *shape);
    return frame == none ? child : frame;
}

xcb_window_t XOutermostWindows::pressedOf(const Look& atPress, const Look& now) {
    const xcb_window_t pressed = behind(atPress.child, atPress.place.x, atPress.place.y);
    const xcb_window_t below = behind(now.child, now.place.x, now.place.y);
    if (pressed == below && pressed != none) {
        return pressed;
    }
    // A window manager that moves or resizes a window already has made it the active one before. The window
    // follows the pointer, and something else may have come to light where it was pressed.
    const std::vector<xcb_window_t> active = activeWindows();
    if (std::ranges::find(active, below) != active.end()) {
        return below;
    }
    if (pressed != none) {
        return pressed;
    }
    // By a corner, it may have left the one place and not yet have come to the other.
    const PixelRect way{std::min(atPress.place.x, now.place.x), std::min(atPress.place.y, now.place.y),
                        std::abs(now.place.x - atPress.place.x) + 1,
                        std::abs(now.place.y - atPress.place.y) + 1};
    const auto onItsWay = std::ranges::find_if(active, [&](xcb_window_t window) {
        const auto shape = shapeOf(window);
        return shape && intersect(shape->outline, way);
    });
    return onItsWay == active.end() ? none : *onItsWay;
}

std::optional<XOutermostWindows::Shape> XOutermostWindows::shapeOf(xcb_window_t window) {
    const auto attributesCookie = xcb_get_window_attributes(connection_->get(), window);
    const auto geometryCookie = xcb_get_geometry(connection_->get(), window);
    const auto attributes = connection_->take(xcb_get_window_attributes_reply, attributesCookie);
    const auto geometry = connection_->take(xcb_get_geometry_reply, geometryCookie);
    if (!attributes || !geometry) {
        return std::nullopt;
    }
    const int border = geometry->border_width;
    return Shape{{geometry->x, geometry->y, geometry->width + 2 * border, geometry->height + 2 * border},
                 {geometry->x + border, geometry->y + border, geometry->width, geometry->height},
                 attributes->_class == XCB_WINDOW_CLASS_INPUT_ONLY,
                 attributes->map_state == XCB_MAP_STATE_VIEWABLE};
}

bool XOutermostWindows::isShield(const Shape& shape) const {
    // Smaller ones are parts of windows, such as the borders that they are resized by.
    const xcb_screen_t& screen = connection_->screen();
    return shape.isInputOnly && shape.outline.x <= 0 && shape.outline.y <= 0 &&
           shape.outline.right() >= screen.width_in_pixels &&
           shape.outline.bottom() >= screen.height_in_pixels;
}

bool XOutermostWindows::takesPointer(xcb_window_t window, const Shape& shape, int x, int y) {
    if (!shape.isViewable || !contains(shape.inside, x, y)) {
        return false;
    }
    if (connection_->extension(xcb_shape_id) == nullptr) {
        return true;
    }
    const auto reply =
        connection_->take(xcb_shape_get_rectangles_reply,
                          xcb_shape_get_rectangles(connection_->get(), window, XCB_SHAPE_SK_INPUT));
    if (!reply) {
        return false;
    }
    const std::span rects(xcb_shape_get_rectangles_rectangles(reply.get()),
                          static_cast<std::size_t>(xcb_shape_get_rectangles_rectangles_length(reply.get())));
    return std::ranges::any_of(rects, [&](const xcb_rectangle_t& rect) {
        return contains({shape.inside.x + rect.x, shape.inside.y + rect.y, rect.width, rect.height}, x, y);
    });
}

std::vector<xcb_window_t> XOutermostWindows::childrenBelow(xcb_window_t child) {
    // They come from the bottom up.
    const std::vector<xcb_window_t> all = readChildren(*connection_, connection_->root());
    const auto self = std::ranges::find(all, child);
    std::vector<xcb_window_t> below(all.begin(), self);
    std::ranges::reverse(below);
    return below;
}

xcb_window_t XOutermostWindows::belowShield(xcb_window_t shield, int x, int y) {
    for (const xcb_window_t window : childrenBelow(shield)) {
        const auto shape = shapeOf(window);
        if (!shape || !takesPointer(window, *shape, x, y) || isOutOfSight(window)) {
            continue;
        }
        const xcb_window_t found = shape->isInputOnly ? frameInside(window, *shape) : window;
        if (found != none) {
            return found;
        }
    }
    return none;
}

bool XOutermostWindows::isOutOfSight(xcb_window_t window) {
    if (const auto isAway = isPutAway(*connection_, window)) {
        return *isAway;
    }
    // Of several windows in one frame, as tabs, at most one is in sight.
    bool isAway = false;
    for (const xcb_window_t child : readChildren(*connection_, window)) {
        const auto isChildAway = isPutAway(*connection_, child);
        if (isChildAway == false) {
            return false;
        }
        isAway = isAway || isChildAway.has_value();
    }
    return isAway;
}

xcb_window_t XOutermostWindows::frameInside(xcb_window_t border, const Shape& shape) {
    const XClientResources resources(connection_->get());
    for (const xcb_window_t window : childrenBelow(border)) {
        if (!resources.isSameClient(window, border)) {
            continue;
        }
        const auto next = shapeOf(window);
        if (!next || !next->isViewable) {
            continue;
        }
        // The border lies right above its frame, and around it. Its size may lag behind that of the frame.
        const PixelRect& frame = next->outline;
        const bool isAround = contains(shape.outline, frame.x + frame.width / 2, frame.y + frame.height / 2);
        return !next->isInputOnly && isAround ? window : none;
    }
    return none;
}

std::vector<xcb_window_t> XOutermostWindows::activeWindows() {
    const auto activeCookie =
        requestPropertyWords(*connection_, connection_->root(), connection_->atom("_NET_ACTIVE_WINDOW"));
    const auto focusCookie = xcb_get_input_focus(connection_->get());
    const XPropertyWords active = takePropertyWords(*connection_, activeCookie);
    const auto focus = connection_->take(xcb_get_input_focus_reply, focusCookie);
    // The announcement comes after the keyboard, and programs that take that themselves come later still.
    std::vector<xcb_window_t> windows{focus ? outermostOf(focus->focus) : none,
                                      active.words.empty() ? none : outermostOf(active.words.front())};
    std::erase(windows, none);
    return windows;
}

xcb_window_t XOutermostWindows::outermostOf(xcb_window_t window) {
    // The focus may also be on nothing, or on the root window.
    for (int depth = 0; depth < maxDepth && window > XCB_INPUT_FOCUS_POINTER_ROOT; ++depth) {
        const auto tree = connection_->take(xcb_query_tree_reply, xcb_query_tree(connection_->get(), window));
        if (!tree) {
            break;
        }
        if (tree->parent == connection_->root()) {
            return window;
        }
        window = tree->parent;
    }
    return none;
}

} // namespace tarvex
