#pragma once

#include "Tests/Support/X11/XClient.h"

#include <optional>

namespace tarvex::test {

/// Looks at any program's window as a person and its window manager see it. It owns nothing.
class ManagedWindow {
public:
    /// The client must outlive it.
    ManagedWindow(XClient& client, xcb_window_t window) : client_{&client}, window_{window} {}

    [[nodiscard]] xcb_window_t id() const { return window_; }

    /// The client's own rectangle in root pixels; none when it is gone.
    [[nodiscard]] std::optional<PixelRect> clientGeometry() const { return client_->geometryInRoot(window_); }

    /// _NET_FRAME_EXTENTS, the decorations that the window manager adds.
    [[nodiscard]] PixelExtents frameExtents() const { return extents("_NET_FRAME_EXTENTS"); }

    /// _GTK_FRAME_EXTENTS, the invisible borders that belong to the client.
    [[nodiscard]] PixelExtents invisibleExtents() const { return extents("_GTK_FRAME_EXTENTS"); }

    /// The frame that a person sees: decorations included, invisible borders not.
    [[nodiscard]] std::optional<PixelRect> visibleFrame() const;

    /// The same; throws std::runtime_error when the window is gone.
    [[nodiscard]] PixelRect requireVisibleFrame() const;

    /// The rectangle of the window manager's own frame window, as the X server has it.
    [[nodiscard]] std::optional<PixelRect> frameWindowGeometry() const;

    /// A point of the title bar where a press starts a move.
    [[nodiscard]] PixelPoint titleBarPoint() const;

    /// Whether the atom stands in _NET_WM_STATE.
    [[nodiscard]] bool hasState(std::string_view state) const;

    /// Whether the window manager manages it and shows it.
    [[nodiscard]] bool isManagedAndViewable() const;

private:
    [[nodiscard]] PixelExtents extents(std::string_view property) const;
    [[nodiscard]] bool isHeldDock() const;

    XClient* client_;
    xcb_window_t window_;
};

} // namespace tarvex::test
