#pragma once

#include "App/Toolkit/Scene.h"

#include <string>
#include <vector>

namespace tarvex {

/// A picture as text, one line for each primitive in drawing order: what is drawn, the exact rectangle, the
/// colour and its alpha, and for an outline its width. "fill 0,0 100x50 accent 0.5".
[[nodiscard]] std::vector<std::string> describe(const Scene& scene);

/// The same with the outlines among themselves in the order of their text, since zones have no order.
[[nodiscard]] std::vector<std::string> describeUnordered(const Scene& scene);

/// The lines that a zone picture must consist of: the backdrop, the outline of each zone, the selected zones.
/// Rectangles are in view coordinates.
[[nodiscard]] std::vector<std::string> zonePicture(Size view, const std::vector<Rect>& zones,
                                                   const std::vector<Rect>& selection);

} // namespace tarvex
