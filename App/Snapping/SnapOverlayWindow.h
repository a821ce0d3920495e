#pragma once

#include "App/Snapping/SnapOverlayView.h"
#include "App/Toolkit/Window.h"

#include <memory>
#include <vector>

namespace tarvex {

/// The click-through window that covers a display's visible frame while zones are shown. Made hidden;
/// destroying it closes it.
class SnapOverlayWindow {
public:
    /// @param visibleFrame what it covers, in screen space (points, y up)
    SnapOverlayWindow(WindowPlatform& windows, const Rect& visibleFrame);

    /// Replaces what is shown. Rectangles are in screen space.
    void update(GridDefinitionRef grid, const std::vector<Rect>& cellFrames,
                const std::vector<Rect>& selectionFrames);

    /// Shows the window in front of others without giving it the keyboard.
    void orderFront() { window_->orderFront(); }

    /// Hides the window and keeps it for the next time.
    void orderOut() { window_->orderOut(); }

    /// The frame in screen space.
    [[nodiscard]] Rect frame() const { return window_->frame(); }

    [[nodiscard]] const SnapOverlayView& overlayView() const { return overlayView_; }

private:
    SnapOverlayView overlayView_;
    std::unique_ptr<Window> window_;
};

} // namespace tarvex
