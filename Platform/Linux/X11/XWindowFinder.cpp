#include "Platform/Linux/X11/XWindowFinder.h"

#include "Platform/Linux/X11/WindowManagerProtocol.h"
#include "Platform/Linux/X11/XAtoms.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>
#include <utility>

namespace tarvex {

namespace {

constexpr std::string_view windowStateName = "WM_STATE";
constexpr std::string_view windowTypeName = "_NET_WM_WINDOW_TYPE";
constexpr std::string_view sizeStateName = "_NET_WM_STATE";

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

template <typename Search>
XWindowFinder::Path repeatWhileWindowsClose(const Search& search) {
    XWindowFinder::Path path = search();
    for (int attempt = 1; path.error == XCB_WINDOW && attempt < maxAttempts; ++attempt) {
        path = search();
    }
    return path;
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

} // namespace

XWindowFinder::XWindowFinder(XConnection& connection, std::vector<XClientResources> ownClients)
    : connection_(&connection), outermost_(connection), ownClients_(std::move(ownClients)) {
    ownClients_.emplace_back(connection.get());
    connection.internAtoms({windowStateName, windowTypeName, sizeStateName});
    windowState_ = connection.atom(windowStateName);
    windowType_ = connection.atom(windowTypeName);
    sizeState_ = connection.atom(sizeStateName);
    movableTypes_ = atomsOf(connection, movableTypeNames);
    fixedTypes_ = atomsOf(connection, fixedTypeNames);
}

XWindowFinder::Path XWindowFinder::deepestWindowAt(int x, int y) {
    return repeatWhileWindowsClose([&] { return descendTo(x, y); });
}

XWindowFinder::Path XWindowFinder::deepestWindowIn(xcb_window_t outermost, int x, int y) {
    return repeatWhileWindowsClose([&] { return descendIn(outermost, x, y); });
}

XWindowFinder::Path XWindowFinder::descendIn(xcb_window_t outermost, int x, int y) {
    if (isOwn(outermost)) {
        return {};
    }
    Path path{0, {connection_->root(), outermost}};
    while (static_cast<int>(path.windows.size()) <= maxDepth) {
        const auto reply = childAt(path.windows.back(), x, y);
        if (!reply) {
            return {reply.error, {}};
        }
        if (reply->child == XCB_WINDOW_NONE) {
            break;
        }
        if (isOwn(reply->child)) {
            return {};
        }
        path.windows.push_back(reply->child);
    }
    return path;
}

XWindowFinder::Path XWindowFinder::descendTo(int x, int y) {
    const auto reply = childAt(connection_->root(), x, y);
    if (!reply) {
        return {reply.error, {}};
    }
    const xcb_window_t child = isOwn(reply->child) ? reply->child : outermost_.behind(reply->child, x, y);
    return child == XCB_WINDOW_NONE ? Path{0, {connection_->root()}} : descendIn(child, x, y);
}

// The server itself looks for the child, and respects the shapes of windows in that.
XReply<xcb_translate_coordinates_reply_t> XWindowFinder::childAt(xcb_window_t window, int x, int y) {
    return connection_->take(xcb_translate_coordinates_reply,
                             xcb_translate_coordinates(connection_->get(), connection_->root(), window,
                                                       clampToCoordinate(x), clampToCoordinate(y)));
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
    const auto managedCookie = requestPropertyWords(*connection_, window, windowState_);
    const auto sizeCookie = requestPropertyWords(*connection_, window, sizeState_);
    const auto attributes = connection_->take(xcb_get_window_attributes_reply, attributesCookie);
    const XPropertyWords types = takePropertyWords(*connection_, typeCookie);
    const XPropertyWords managed = takePropertyWords(*connection_, managedCookie);
    const XPropertyWords size = takePropertyWords(*connection_, sizeCookie);
    if (!attributes) {
        return {attributes.error};
    }
    // One that is put away but mapped lies below a window that keeps the pointer off it.
    const bool isHidden = isPutAway(*connection_, managed.words, size.words).value_or(false);
    if (isHidden || attributes->override_redirect != 0 || !isMovableType(types.words)) {
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
