#include "Platform/Linux/X11/ClientSearch.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <ranges>
#include <span>
#include <utility>

namespace tarvex {

namespace {

constexpr int looksAtEach = 2;
/// Thousands of windows are the work of a program that forgets its own; no answer may wait for them all.
constexpr std::size_t maxLooksPerCall = 1000;

struct Look {
    xcb_window_t window;
    xcb_query_tree_cookie_t tree;
};

std::span<const xcb_window_t> childrenOf(const xcb_query_tree_reply_t& tree) {
    return {xcb_query_tree_children(&tree), static_cast<std::size_t>(xcb_query_tree_children_length(&tree))};
}

} // namespace

std::vector<xcb_window_t> ClientSearch::findNew() {
    const auto root =
        connection_->take(xcb_query_tree_reply, xcb_query_tree(connection_->get(), connection_->root()));
    if (!root) {
        return {};
    }
    std::vector<Look> looks;
    std::unordered_map<xcb_window_t, int> counts;
    // From the top, where panels are.
    for (const xcb_window_t child : std::views::reverse(childrenOf(*root))) {
        if (own_.contains(child)) {
            continue;
        }
        const auto known = looks_.find(child);
        int& count = counts[child];
        count = known == looks_.end() ? 0 : known->second;
        if (count < looksAtEach && looks.size() < maxLooksPerCall) {
            ++count;
            looks.push_back({child, xcb_query_tree(connection_->get(), child)});
        }
    }
    looks_ = std::move(counts);
    std::vector<xcb_window_t> found;
    for (const Look& look : looks) {
        found.push_back(look.window);
        if (const auto tree = connection_->take(xcb_query_tree_reply, look.tree)) {
            // A frame's other children, its title and its buttons, are the window manager's own.
            std::ranges::copy_if(childrenOf(*tree), std::back_inserter(found),
                                 [&](xcb_window_t child) { return !own_.isSameClient(child, look.window); });
        }
    }
    return found;
}

} // namespace tarvex
