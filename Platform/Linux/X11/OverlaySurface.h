#pragma once

#include "Platform/Linux/X11/OverlayVisual.h"
#include "Platform/Linux/X11/ScenePixels.h"
#include "Platform/Linux/X11/UnmanagedWindow.h"
#include "Platform/Linux/X11/XConnection.h"

#include <cstdint>
#include <vector>

namespace tarvex {

/// What an overlay window shows, and where on the root window.
struct OverlayImage {
    PixelRect frame;
    std::vector<PixelFill> fills;

    bool operator==(const OverlayImage&) const = default;
};

/// A native window for overlays, which no window manager touches. Its requests wait for nothing and are not
/// flushed.
///
/// It is mapped once, when it is made. While hidden it is one pixel off the screen, below all windows: a
/// compositing manager then keeps no picture of it and draws nothing, nobody animates or delays it when it
/// comes, and it does not stand between a full-screen program and the screen. Growing it to its place shows
/// it within the compositing manager's next frame, and never with an old picture, since its pixels are new.
class OverlaySurface {
public:
    /// The connection and the visual must outlive it. The server must have the SHAPE extension.
    /// @param visual one chosen for the style
    OverlaySurface(XConnection& connection, const OverlayVisual& visual, OverlayStyle style);

    OverlaySurface(const OverlaySurface&) = delete;
    OverlaySurface& operator=(const OverlaySurface&) = delete;
    OverlaySurface(OverlaySurface&&) = delete;
    OverlaySurface& operator=(OverlaySurface&&) = delete;
    ~OverlaySurface() = default;

    [[nodiscard]] xcb_window_t window() const { return window_.id(); }

    [[nodiscard]] OverlayStyle style() const { return window_.style(); }

    [[nodiscard]] bool isShown() const { return isShown_; }

    /// What it shows, or showed last.
    [[nodiscard]] const OverlayImage& image() const { return image_; }

    /// Whether clicks reach the windows below it.
    void setClickThrough(bool isClickThrough);

    /// Shows the image, drawing only what differs from what it shows.
    /// @param raise brings it above all other windows
    void show(OverlayImage image, bool raise);

    /// Parks the window until it is shown again.
    void hide();

    /// Takes note of lost pixels, if the loss is not older than the last drawing.
    /// @param sequence the request that the server had last handled when it sent the event
    void noteExposure(const xcb_expose_event_t& event, std::uint32_t sequence);

    /// Whether there are lost pixels.
    [[nodiscard]] bool hasExposure() const { return !exposed_.isEmpty(); }

    /// Draws the lost pixels again.
    void repairExposure();

private:
    void place(const PixelRect& frame, bool raise);
    void setShape();
    void draw(const std::vector<PixelFill>& tiles);

    [[nodiscard]] PixelRect area() const { return {0, 0, image_.frame.width, image_.frame.height}; }

    XConnection* connection_;
    const OverlayVisual* visual_;
    UnmanagedWindow window_;
    OverlayImage image_;
    bool isShown_ = false;
    bool isClickThrough_ = false;
    std::uint32_t lastDrawing_ = 0;
    PixelRect exposed_;
};

} // namespace tarvex
