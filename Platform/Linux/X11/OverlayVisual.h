#pragma once

#include "Platform/Linux/X11/ScenePixels.h"
#include "Platform/Linux/X11/XConnection.h"

#include <cstdint>
#include <memory>

namespace tarvex {

/// A visual that overlay windows are made with, and its colormap.
class OverlayVisual {
public:
    /// The visual with alpha for windows that are blended. For shaped ones that of the root window: the
    /// server draws windows of any other to a place of their own and copies them to the screen. Null when the
    /// server has no such visual with true colours. The connection must outlive the visual.
    [[nodiscard]] static std::unique_ptr<OverlayVisual> choose(XConnection& connection, OverlayStyle style);

    OverlayVisual(const OverlayVisual&) = delete;
    OverlayVisual& operator=(const OverlayVisual&) = delete;
    OverlayVisual(OverlayVisual&&) = delete;
    OverlayVisual& operator=(OverlayVisual&&) = delete;
    ~OverlayVisual();

    [[nodiscard]] std::uint8_t depth() const { return depth_; }

    [[nodiscard]] xcb_visualid_t id() const { return type_.visual_id; }

    [[nodiscard]] xcb_colormap_t colormap() const { return colormap_; }

    /// The pixel value of a colour.
    [[nodiscard]] std::uint32_t pixelOf(PixelColor color) const;

private:
    OverlayVisual(XConnection& connection, std::uint8_t depth, const xcb_visualtype_t& type);

    XConnection* connection_;
    std::uint8_t depth_;
    xcb_visualtype_t type_;
    xcb_colormap_t colormap_;
};

} // namespace tarvex
