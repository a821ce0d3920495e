#include "App/Snapping/SnapOverlayView.h"

#include <utility>

namespace tarvex {

namespace {

constexpr Color outlineColor{ColorName::white, 0.22};
constexpr Color selectionColor{ColorName::accent, 0.5};

} // namespace

bool SnapOverlayView::update(GridDefinitionRef grid, std::vector<Rect> cellFrames,
                             std::vector<Rect> selectionFrames) {
    const bool changes = cellFrames != cellFrames_ || selectionFrames != selectionFrames_;
    grid_ = std::move(grid);
    cellFrames_ = std::move(cellFrames);
    selectionFrames_ = std::move(selectionFrames);
    return changes;
}

Scene SnapOverlayView::draw() const {
    Scene scene;
    scene.primitives.reserve(1 + cellFrames_.size() + selectionFrames_.size());
    drawBackdrop(scene);
    drawCells(scene);
    drawSelection(scene);
    return scene;
}

void SnapOverlayView::drawBackdrop(Scene& scene) const {
    scene.primitives.emplace_back(FillRect{bounds_, Color{ColorName::clear, 0}});
}

void SnapOverlayView::drawCells(Scene& scene) const {
    for (const Rect& frame : cellFrames_) {
        scene.primitives.emplace_back(StrokeRect{frame, outlineColor});
    }
}

void SnapOverlayView::drawSelection(Scene& scene) const {
    for (const Rect& frame : selectionFrames_) {
        scene.primitives.emplace_back(FillRect{frame, selectionColor});
    }
}

} // namespace tarvex
