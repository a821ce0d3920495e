#pragma once

#include "Platform/Linux/X11/ScenePixels.h"

#include <vector>

namespace tarvex {

/// The pixels whose colour differs between two pictures, with the colour that they have in the second:
/// rectangles that do not overlap, those of one colour in a row. A picture is a list of fills, each
/// composited over the ones before it on a see-through ground. Only pixels within the area are looked at.
///
/// Writing each of these pixels once, straight to its final colour, turns one picture into the other without
/// ever showing a state between the two.
[[nodiscard]] std::vector<PixelFill> changedPixels(const std::vector<PixelFill>& before,
                                                   const std::vector<PixelFill>& after,
                                                   const PixelRect& area);

/// All pixels of a picture that are not see-through, likewise.
[[nodiscard]] std::vector<PixelFill> visiblePixels(const std::vector<PixelFill>& picture,
                                                   const PixelRect& area);

} // namespace tarvex
