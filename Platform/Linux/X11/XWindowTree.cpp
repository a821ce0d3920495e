#include "Platform/Linux/X11/XWindowTree.h"

namespace tarvex {

std::vector<xcb_window_t> readChildren(XConnection& connection, xcb_window_t window) {
    const auto tree = connection.take(xcb_query_tree_reply, xcb_query_tree(connection.get(), window));
    if (!tree) {
        return {};
    }
    const xcb_window_t* const children = xcb_query_tree_children(tree.get());
    return {children, children + xcb_query_tree_children_length(tree.get())};
}

} // namespace tarvex
