#pragma once

#include "App/Toolkit/Scene.h"
#include "Core/Grid/GridModel.h"

#include <vector>

namespace tarvex {

/// Draws the zones of a display and the zones that the window will cover. Rectangles are in the view's own
/// coordinates (points, origin at its bottom-left, y up).
class SnapOverlayView {
public:
    /// @param frame the view's frame; its bounds start at the origin
    explicit SnapOverlayView(const Rect& frame) : bounds_{0, 0, frame.width, frame.height} {}

    /// Replaces what is shown. Returns false when the picture is the same as before.
    bool update(GridDefinitionRef grid, std::vector<Rect> cellFrames, std::vector<Rect> selectionFrames);

    /// The grid being shown, for reference; drawing does not read it.
    [[nodiscard]] const GridDefinitionRef& grid() const { return grid_; }

    [[nodiscard]] const std::vector<Rect>& cellFrames() const { return cellFrames_; }

    [[nodiscard]] const std::vector<Rect>& selectionFrames() const { return selectionFrames_; }

    /// The picture: a see-through backdrop, the outline of every zone, and the selected zones over them.
    [[nodiscard]] Scene draw() const;

private:
    void drawBackdrop(Scene& scene) const;
    void drawCells(Scene& scene) const;
    void drawSelection(Scene& scene) const;

    Rect bounds_;
    GridDefinitionRef grid_;
    std::vector<Rect> cellFrames_;
    std::vector<Rect> selectionFrames_;
};

} // namespace tarvex
