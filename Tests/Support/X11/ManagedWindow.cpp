#include "Tests/Support/X11/ManagedWindow.h"

#include <algorithm>
#include <stdexcept>

namespace tarvex::test {

PixelExtents ManagedWindow::extents(std::string_view property) const {
    const std::vector<std::uint32_t> values = client_->words(window_, property);
    if (values.size() < 4) {
        return {};
    }
    return {static_cast<int>(values[0]), static_cast<int>(values[1]), static_cast<int>(values[2]),
            static_cast<int>(values[3])};
}

std::optional<PixelRect> ManagedWindow::visibleFrame() const {
    const std::optional<PixelRect> geometry = clientGeometry();
    if (!geometry) {
        return std::nullopt;
    }
    return shrunk(grown(*geometry, frameExtents()), invisibleExtents());
}

PixelRect ManagedWindow::requireVisibleFrame() const {
    const std::optional<PixelRect> frame = visibleFrame();
    if (!frame) {
        throw std::runtime_error("the window is gone");
    }
    return *frame;
}

std::optional<PixelRect> ManagedWindow::frameWindowGeometry() const {
    const std::optional<xcb_window_t> frame = client_->topLevelOf(window_);
    if (!frame) {
        return std::nullopt;
    }
    const Owned<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(
        client_->connection(), xcb_get_geometry(client_->connection(), *frame), nullptr));
    if (!geometry) {
        return std::nullopt;
    }
    const int border = 2 * geometry->border_width;
    return PixelRect{geometry->x, geometry->y, geometry->width + border, geometry->height + border};
}

PixelPoint ManagedWindow::titleBarPoint() const {
    const PixelRect frame = requireVisibleFrame();
    // A client that decorates itself has its header bar inside its own window.
    constexpr int headerBarHeight = 40;
    const int decoration = frameExtents().top;
    const int top = decoration > 0 ? decoration : headerBarHeight;
    return {frame.x + frame.width / 2, frame.y + top / 2 + 1};
}

bool ManagedWindow::hasState(std::string_view state) const {
    const std::vector<std::uint32_t> states = client_->words(window_, "_NET_WM_STATE");
    return std::ranges::find(states, client_->atom(state)) != states.end();
}

bool ManagedWindow::isManagedAndViewable() const {
    const std::vector<xcb_window_t> managed = client_->managedWindows();
    const bool isListed = std::ranges::find(managed, window_) != managed.end();
    return (isListed || isHeldDock()) && client_->isViewable(window_);
}

// Not all window managers list them.
bool ManagedWindow::isHeldDock() const {
    const std::vector<std::uint32_t> types = client_->words(window_, "_NET_WM_WINDOW_TYPE");
    const std::vector<std::uint32_t> state = client_->words(window_, "WM_STATE");
    return std::ranges::find(types, client_->atom("_NET_WM_WINDOW_TYPE_DOCK")) != types.end() &&
           !state.empty() && state.front() != 0;
}

} // namespace tarvex::test
