#include "App/Snapping/SnapOverlayWindow.h"

#include <utility>

namespace tarvex {

namespace {

WindowAttributes makeAttributes(const Rect& visibleFrame) {
    WindowAttributes attributes;
    attributes.contentRect = visibleFrame;
    attributes.collectionBehavior =
        collection_behavior::canJoinAllSpaces | collection_behavior::fullScreenAuxiliary;
    attributes.ignoresMouseEvents = true;
    return attributes;
}

std::vector<Rect> translated(const std::vector<Rect>& rects, Point origin) {
    std::vector<Rect> moved;
    moved.reserve(rects.size());
    for (const Rect& rect : rects) {
        moved.push_back(rect.translated(-origin.x, -origin.y));
    }
    return moved;
}

} // namespace

SnapOverlayWindow::SnapOverlayWindow(WindowPlatform& windows, const Rect& visibleFrame)
    : overlayView_(visibleFrame), window_(windows.makeWindow(makeAttributes(visibleFrame))) {}

void SnapOverlayWindow::update(GridDefinitionRef grid, const std::vector<Rect>& cellFrames,
                               const std::vector<Rect>& selectionFrames) {
    const Point origin = frame().origin();
    const bool changes = overlayView_.update(std::move(grid), translated(cellFrames, origin),
                                             translated(selectionFrames, origin));
    if (changes) {
        window_->setScene(overlayView_.draw());
    }
}

} // namespace tarvex
