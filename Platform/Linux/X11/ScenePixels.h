#pragma once

#include "App/Toolkit/Scene.h"
#include "Platform/Linux/X11/DesktopLayout.h"
#include "Platform/Linux/X11/SceneColors.h"

#include <cstdint>
#include <vector>

namespace tarvex {

/// A rectangle of pixels in one colour, in window coordinates.
struct PixelFill {
    PixelRect rect;
    PixelColor color = 0;

    bool operator==(const PixelFill&) const = default;
};

/// How a window lets the desktop through.
enum class OverlayStyle : std::uint8_t {
    /// By alpha: a compositing manager blends it with what is below.
    blended,
    /// By its shape: it is opaque where it is, and is only where there is something to see.
    shaped,
};

/// Where a view lies on the root window, and the colours that belong to the system.
struct ScenePlacement {
    /// The view, in screen space.
    Rect viewFrame;
    DesktopLayout layout;
    /// 0xRRGGBB.
    std::uint32_t accentColor = 0;
};

/// The scene as fills in drawing order, each composited over the ones before it and clipped to the view. A
/// rectangle covers exactly the pixels that a window placed on it covers. A stroke of one point is one pixel
/// wide and runs just inside the edge, so that all zones look alike. Rectangles that are not finite, and what
/// cannot be seen, are left out.
[[nodiscard]] std::vector<PixelFill> pixelFillsOfScene(const Scene& scene, const ScenePlacement& placement,
                                                       OverlayStyle style);

} // namespace tarvex
