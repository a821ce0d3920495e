#pragma once

#include "App/ZoneEditor/GridEditorOverlayView.h"

#include <memory>

namespace tarvex {

/// The see-through window that carries a zone editor over the visible frame of one display, and takes its
/// keys. Made hidden; destroying it closes it, also from within the callbacks.
class GridEditorOverlayWindow {
public:
    /// See GridEditorOverlayView for the parameters.
    GridEditorOverlayWindow(GridDefinitionRef grid, const Rect& visibleFrame, double cellMarginPoints,
                            GridEditorOverlayView::CancelCallback onCancel,
                            GridEditorOverlayView::OkCallback onOk,
                            const GridEditorSurroundings& surroundings, ViewWindowPlatform& windows);

    /// Shows the window in front and gives it the keyboard.
    void makeKeyAndOrderFront() { window_->makeKeyAndOrderFront(); }

    [[nodiscard]] GridEditorOverlayView& overlayView() { return overlayView_; }

private:
    GridEditorOverlayView overlayView_;
    std::unique_ptr<ViewWindow> window_;
};

} // namespace tarvex
