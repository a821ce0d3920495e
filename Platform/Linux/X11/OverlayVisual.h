#pragma once

#include "Platform/Linux/X11/ScenePixels.h"
#include "Platform/Linux/X11/XConnection.h"

#include <cstdint>
#include <memory>

namespace tarvex {

/// The visual that overlay windows are made with, and its colormap. One with alpha where the server has it.
class OverlayVisual {
public:
    /// Null when the server has no true-colour visual at all. The connection must outlive the visual.
    [[nodiscard]] static std::unique_ptr<OverlayVisual> choose(XConnection& connection);

    OverlayVisual(const OverlayVisual&) = delete;
    OverlayVisual& operator=(const OverlayVisual&) = delete;
    OverlayVisual(OverlayVisual&&) = delete;
    OverlayVisual& operator=(OverlayVisual&&) = delete;
    ~OverlayVisual();

    [[nodiscard]] bool hasAlpha() const { return hasAlpha_; }

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
    bool hasAlpha_;
    xcb_colormap_t colormap_;
};

} // namespace tarvex
