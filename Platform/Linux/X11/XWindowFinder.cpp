#include "Platform/Linux/X11/XWindowFinder.h"

#include "Platform/Linux/X11/WindowManagerProtocol.h"
#include "Platform/Linux/X11/XAtoms.h"

#include <xcb/shape.h>

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>
#include <utility>

namespace tarvex {

namespace {

constexpr std::string_view windowStateName = "WM_STATE";
constexpr std::string_view windowTypeName = "_NET_WM_WINDOW_TYPE";

constexpr std::array<std::string_view, 4> movableTypeNames{
    "_NET_WM_WINDOW_TYPE_NORMAL", "_NET_WM_WINDOW_TYPE_DIALOG", "_NET_WM_WINDOW_TYPE_UTILITY",
    "_NET_WM_WINDOW_TYPE_TOOLBAR"};

constexpr std::array<std::string_view, 10> fixedTypeNames{
    "_NET_WM_WINDOW_TYPE_DESKTOP",       "_NET_WM_WINDOW_TYPE_DOCK",       "_NET_WM_WINDOW_TYPE_MENU",
    "_NET_WM_WINDOW_TYPE_DROPDOWN_MENU", "_NET_WM_WINDOW_TYPE_POPUP_MENU", "_NET_WM_WINDOW_TYPE_TOOLTIP",
    "_NET_WM_WINDOW_TYPE_NOTIFICATION",  "_NET_WM_WINDOW_TYPE_COMBO",      "_NET_WM_WINDOW_TYPE_DND",
    "_NET_WM_WINDOW_TYPE_SPLASH"};

// Window trees are shallow. The bounds keep a broken client from making a press of the button dear.
constexpr int maxDepth = 64;
constexpr int maxFrameDepth = 6;
constexpr std::size_t maxWindowsPerLevel = 512;
constexpr int maxAttempts = 4;

std::int16_t clampToCoordinate(int value) {
    using Limits = std::numeric_limits<std::int16_t>;
    return static_cast<std::int16_t>(std::clamp<int>(value, Limits::min(), Limits::max()));
}

template <std::size_t count>
std::vector<xcb_atom_t> atomsOf(XConnection& connection, const std::array<std::string_view, count>& names) {
    connection.internAtoms({names.begin(), names.end()});
    std::vector<xcb_atom_t> atoms;
    atoms.reserve(count);
    for (const std::string_view name : names) {
        atoms.push_back(connection.atom(name));
    }
    return atoms;
}

/// Whether the window's input shape has the pixel, which is counted from its top-left corner.
bool takesPointer(XConnection& connection, xcb_window_t window, int x, int y) {
    const auto shape =
        connection.take(xcb_shape_get_rectangles_reply,
                        xcb_shape_get_rectangles(connection.get(), window, XCB_SHAPE_SK_INPUT));
    if (!shape) {
        return false;
    }
    const xcb_rectangle_t* const first = xcb_shape_get_rectangles_rectangles(shape.get());
    return std::any_of(first, first + xcb_shape_get_rectangles_rectangles_length(shape.get()),
                       [=](const xcb_rectangle_t& rect) {
                           return x >= rect.x && y >= rect.y && x < rect.x + rect.width &&
                                  y < rect.y + rect.height;
                       });
}

} // namespace

XWindowFinder::XWindowFinder(XConnection& connection, std::vector<XClientResources> ownClients)
    : connection_(&connection), ownClients_(std::move(ownClients)) {
    ownClients_.emplace_back(connection.get());
    connection.internAtoms({windowStateName, windowTypeName});
    windowState_ = connection.atom(windowStateName);
    windowType_ = connection.atom(windowTypeName);
    movableTypes_ = atomsOf(connection, movableTypeNames);
    fixedTypes_ = atomsOf(connection, fixedTypeNames);
}

XWindowFinder::Path XWindowFinder::deepestWindowAt(int x, int y) {
    Path path = descendTo(x, y);
    for (int attempt = 1; path.error == XCB_WINDOW && attempt < maxAttempts; ++attempt) {
        path = descendTo(x, y);
    }
    return path;
}

XWindowFinder::Path XWindowFinder::descendTo(int x, int y) {
    const xcb_window_t root = connection_->root();
    Path path{0, {root}};
    for (int depth = 0; depth < maxDepth; ++depth) {
        // The server itself looks for the child, and respects the shapes of windows in that.
        const auto reply =
            connection_->take(xcb_translate_coordinates_reply,
                              xcb_translate_coordinates(connection_->get(), root, path.windows.back(),
                                                        clampToCoordinate(x), clampToCoordinate(y)));
        if (!reply) {
            return {reply.error, {}};
        }
        const xcb_window_t child = depth == 0 ? behindShield(reply->child, x, y) : reply->child;
        if (child == XCB_WINDOW_NONE) {
            break;
        }
        if (isOwn(child)) {
            return {};
        }
        path.windows.push_back(child);
    }
    return path;
}

xcb_window_t XWindowFinder::behindShield(xcb_window_t child, int x, int y) {
    if (child == XCB_WINDOW_NONE || isOwn(child) || !isShield(child)) {
        return child;
    }
    std::vector<xcb_window_t> windows = childrenOf({connection_->root()});
    // They come from the bottom up.
    windows.erase(std::find(windows.begin(), windows.end(), child), windows.end());
    const bool hasShapes = connection_->extension(xcb_shape_id) != nullptr;
    for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
        xcb_connection_t* const server = connection_->get();
        const auto attributesCookie = xcb_get_window_attributes(server, *window);
        const auto geometryCookie = xcb_get_geometry(server, *window);
        const auto attributes = connection_->take(xcb_get_window_attributes_reply, attributesCookie);
        const auto geometry = connection_->take(xcb_get_geometry_reply, geometryCookie);
        if (!attributes || !geometry || attributes->map_state != XCB_MAP_STATE_VIEWABLE ||
            attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT) {
            continue;
        }
        const int left = x - geometry->x - geometry->border_width;
        const int top = y - geometry->y - geometry->border_width;
        if (left < 0 || top < 0 || left >= geometry->width || top >= geometry->height) {
            continue;
        }
        if (!hasShapes || takesPointer(*connection_, *window, left, top)) {
            return *window;
        }
    }
    return XCB_WINDOW_NONE;
}

bool XWindowFinder::isShield(xcb_window_t child) {
    const auto attributesCookie = xcb_get_window_attributes(connection_->get(), child);
    const auto geometryCookie = xcb_get_geometry(connection_->get(), child);
    const auto attributes = connection_->take(xcb_get_window_attributes_reply, attributesCookie);
    const auto geometry = connection_->take(xcb_get_geometry_reply, geometryCookie);
    // Smaller ones are parts of windows, such as the borders that they are resized by.
    return attributes && geometry && attributes->_class == XCB_WINDOW_CLASS_INPUT_ONLY && geometry->x <= 0 &&
           geometry->y <= 0 && geometry->x + geometry->width >= connection_->screen().width_in_pixels &&
           geometry->y + geometry->height >= connection_->screen().height_in_pixels;
}

XWindowFinder::Result XWindowFinder::managedWindowOf(xcb_window_t window) {
    const xcb_window_t root = connection_->root();
    for (int depth = 0; depth < maxDepth && window != root && window != XCB_WINDOW_NONE; ++depth) {
        const auto treeCookie = xcb_query_tree(connection_->get(), window);
        const auto stateCookie = requestPropertyWords(*connection_, window, windowState_);
        const auto tree = connection_->take(xcb_query_tree_reply, treeCookie);
        const XPropertyWords state = takePropertyWords(*connection_, stateCookie);
        if (!tree || state.error != 0) {
            return {tree ? state.error : tree.error};
        }
        if (isManaged(state.words)) {
            return acceptIfMovable(window);
        }
        if (tree->parent == root) {
            const xcb_window_t framed = managedWindowBelow(window);
            return framed == XCB_WINDOW_NONE ? Result{} : acceptIfMovable(framed);
        }
        window = tree->parent;
    }
    return {};
}

XWindowFinder::Result XWindowFinder::managedWindowOf(const std::vector<xcb_window_t>& path) {
    Result result;
    for (auto window = path.rbegin(); window != path.rend(); ++window) {
        result = managedWindowOf(*window);
        if (result.error != XCB_WINDOW) {
            break;
        }
    }
    return result;
}

XWindowFinder::Result XWindowFinder::parentOf(xcb_window_t window) {
    const auto reply = connection_->take(xcb_query_tree_reply, xcb_query_tree(connection_->get(), window));
    return reply ? Result{0, reply->parent} : Result{reply.error};
}

bool XWindowFinder::isOwn(xcb_window_t window) const {
    return std::any_of(ownClients_.begin(), ownClients_.end(),
                       [=](const XClientResources& client) { return client.contains(window); });
}

xcb_window_t XWindowFinder::managedWindowBelow(xcb_window_t frame) {
    xcb_window_t hidden = XCB_WINDOW_NONE;
    std::vector<xcb_window_t> level{frame};
    for (int depth = 0; depth < maxFrameDepth && !level.empty(); ++depth) {
        level = childrenOf(level);
        std::vector<std::pair<xcb_get_window_attributes_cookie_t, xcb_get_property_cookie_t>> cookies;
        cookies.reserve(level.size());
        for (const xcb_window_t child : level) {
            cookies.emplace_back(xcb_get_window_attributes(connection_->get(), child),
                                 requestPropertyWords(*connection_, child, windowState_));
        }
        xcb_window_t shown = XCB_WINDOW_NONE;
        for (std::size_t index = 0; index < level.size(); ++index) {
            const auto attributes = connection_->take(xcb_get_window_attributes_reply, cookies[index].first);
            const XPropertyWords state = takePropertyWords(*connection_, cookies[index].second);
            if (!attributes || !isManaged(state.words)) {
                continue;
            }
            // Children come from the bottom up: the last one found is the one that the user sees.
            (attributes->map_state == XCB_MAP_STATE_VIEWABLE ? shown : hidden) = level[index];
        }
        if (shown != XCB_WINDOW_NONE) {
            return shown;
        }
    }
    return hidden;
}

std::vector<xcb_window_t> XWindowFinder::childrenOf(const std::vector<xcb_window_t>& windows) {
    std::vector<xcb_query_tree_cookie_t> cookies;
    cookies.reserve(windows.size());
    for (const xcb_window_t window : windows) {
        cookies.push_back(xcb_query_tree(connection_->get(), window));
    }
    std::vector<xcb_window_t> children;
    for (const xcb_query_tree_cookie_t cookie : cookies) {
        if (const auto tree = connection_->take(xcb_query_tree_reply, cookie)) {
            const xcb_window_t* first = xcb_query_tree_children(tree.get());
            children.insert(children.end(), first, first + xcb_query_tree_children_length(tree.get()));
        }
    }
    children.resize(std::min(children.size(), maxWindowsPerLevel));
    return children;
}

XWindowFinder::Result XWindowFinder::acceptIfMovable(xcb_window_t window) {
    if (isOwn(window)) {
        return {};
    }
    const auto attributesCookie = xcb_get_window_attributes(connection_->get(), window);
    const auto typeCookie = requestPropertyWords(*connection_, window, windowType_);
    const auto attributes = connection_->take(xcb_get_window_attributes_reply, attributesCookie);
    const XPropertyWords types = takePropertyWords(*connection_, typeCookie);
    if (!attributes) {
        return {attributes.error};
    }
    if (attributes->override_redirect != 0 || !isMovableType(types.words)) {
        return {};
    }
    return {0, window};
}

bool XWindowFinder::isMovableType(const std::vector<std::uint32_t>& types) const {
    // Types are listed by preference; those that nobody has heard of are passed over.
    for (const xcb_atom_t type : types) {
        if (isAmong(fixedTypes_, type)) {
            return false;
        }
        if (isAmong(movableTypes_, type)) {
            return true;
        }
    }
    return true;
}

} // namespace tarvex
