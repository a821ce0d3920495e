#include "App/ZoneEditor/GridEditorOverlayWindow.h"

#include <utility>

namespace tarvex {

namespace {

WindowAttributes makeAttributes(const Rect& visibleFrame) {
    WindowAttributes attributes;
    attributes.contentRect = visibleFrame;
    attributes.collectionBehavior =
        collection_behavior::canJoinAllSpaces | collection_behavior::fullScreenAuxiliary;
    attributes.acceptsMouseMovedEvents = true;
    attributes.canBecomeKey = true;
    attributes.canBecomeMain = true;
    return attributes;
}

} // namespace

GridEditorOverlayWindow::GridEditorOverlayWindow(GridDefinitionRef grid, const Rect& visibleFrame,
                                                 double cellMarginPoints,
                                                 GridEditorOverlayView::CancelCallback onCancel,
                                                 GridEditorOverlayView::OkCallback onOk,
                                                 const GridEditorSurroundings& surroundings,
                                                 ViewWindowPlatform& windows)
    : overlayView_(std::move(grid), visibleFrame, cellMarginPoints, std::move(onCancel), std::move(onOk),
                   surroundings),
      window_(windows.makeViewWindow(makeAttributes(visibleFrame), overlayView_)) {
    overlayView_.setRedrawHandler([this] { window_->setNeedsDisplay(); });
}

} // namespace tarvex
