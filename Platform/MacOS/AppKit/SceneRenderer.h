#pragma once

#include "App/Toolkit/Scene.h"

namespace tarvex {

/// Draws the scene into the current graphics context, whose coordinates are those of the view. To be called
/// from within a view's drawing.
void drawScene(const Scene& scene);

} // namespace tarvex
