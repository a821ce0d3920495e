#pragma once

#include "App/Toolkit/MainLoop.h"
#include "App/Toolkit/TextMeasurer.h"
#include "App/Toolkit/View.h"
#include "Core/Grid/CellFrameCalculator.h"
#include "Core/Grid/CoordinateTransformer.h"
#include "Core/Grid/GridCalculator.h"
#include "Core/Grid/GridEditorService.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace tarvex {

/// A line that is being placed.
struct PendingSplit {
    GridLineOrientation orientation = GridLineOrientation::horizontal;
    /// Normalized: the x of a vertical line, the y of a horizontal one.
    double value = 0;

    bool operator==(const PendingSplit&) const = default;
};

/// How a dividing line is drawn.
struct LineStyle;

/// What a zone editor needs of its surroundings; all must outlive it.
struct GridEditorSurroundings {
    MainLoop& mainLoop;
    TextMeasurer& textMeasurer;
};

/// The zone editor of one display: the grid over the darkened screen, to be changed with the mouse. A press
/// on free space adds a horizontal line, with Shift a vertical one; a press on a line picks it up; the right
/// button deletes. It closes nothing itself: Escape and Cancel, Return and OK are told to the callbacks,
/// which may destroy the view.
class GridEditorOverlayView final : public View {
public:
    using CancelCallback = std::function<void()>;
    using OkCallback = std::function<void(const GridDefinitionRef&)>;

    /// Identities of the controls.
    static constexpr const char* cancelButtonId = "cancel";
    static constexpr const char* okButtonId = "ok";

    /// @param visibleFrame what the view covers, in screen space
    /// @param cellMarginPoints the margin between zones, in points
    GridEditorOverlayView(GridDefinitionRef grid, const Rect& visibleFrame, double cellMarginPoints,
                          CancelCallback onCancel, OkCallback onOk,
                          const GridEditorSurroundings& surroundings);

    /// Called whenever the picture changes.
    void setRedrawHandler(std::function<void()> needsDisplay) { needsDisplay_ = std::move(needsDisplay); }

    /// The grid as edited so far, without a line that is still being placed.
    [[nodiscard]] const GridDefinitionRef& grid() const { return grid_; }

    /// The frame that the view covers, in screen space.
    [[nodiscard]] const Rect& visibleFrame() const { return visibleFrame_; }

    /// The line that the release will add.
    [[nodiscard]] const std::optional<PendingSplit>& pendingSplit() const { return pendingSplit_; }

    /// The line under the pointer.
    [[nodiscard]] const std::optional<NearestSplit>& hoveredSplit() const { return hoveredSplit_; }

    /// The line that was clicked with the right button a moment ago.
    [[nodiscard]] const std::optional<NearestSplit>& flashSplit() const { return flashSplit_; }

    /// The line that the press picked up.
    [[nodiscard]] const std::optional<NearestSplit>& draggedSplit() const { return draggedSplit_; }

    /// What the press works with before Shift turns it; none while there is no press.
    [[nodiscard]] std::optional<GridLineOrientation> dragBaseOrientation() const {
        return dragBaseOrientation_;
    }

    [[nodiscard]] Scene draw() override;
    [[nodiscard]] Form form() override;
    void mouseMoved(const MouseEvent& event) override;
    void mouseDown(const MouseEvent& event) override;
    void mouseDragged(const MouseEvent& event) override;
    void mouseUp(const MouseEvent& event) override;
    void rightMouseDown(const MouseEvent& event) override;
    bool keyDown(const KeyEvent& event) override;
    void controlActivated(const std::string& id) override;
    void screensChanged() override;

private:
    void cancelTapped();
    void okTapped();
    void startPrimaryDrag(const NormalizedPoint& point, bool isShift);
    void finishPrimaryDrag();
    void handleSecondaryClick(const NormalizedPoint& point);

    [[nodiscard]] std::optional<NormalizedPoint> toNormalizedPoint(const MouseEvent& event) const;
    [[nodiscard]] std::optional<NearestSplit> getNearestSplit(const NormalizedPoint& point,
                                                              double threshold) const;
    [[nodiscard]] static std::optional<PendingSplit>
    makePendingSplit(const NormalizedPoint& point, std::optional<GridLineOrientation> base, bool isShift);
    [[nodiscard]] std::optional<PendingSplit> updatePendingSplit(const NormalizedPoint& point,
                                                                 bool isShift) const;
    [[nodiscard]] GridDefinitionRef removeFromVertical(const NearestSplit& split) const;
    [[nodiscard]] GridDefinitionRef removeFromHorizontal(const NearestSplit& split) const;
    [[nodiscard]] GridDefinitionRef makePreviewGrid() const;
    void scheduleFlashClear();
    void clearFlash();
    void redraw() const;

    void drawBackdrop(Scene& scene) const;
    void drawCellBorders(Scene& scene, const CellFrameMap& frames) const;
    void drawCellSizes(Scene& scene, const CellFrameMap& frames) const;
    void drawSizeText(Scene& scene, const Rect& frame) const;
    void drawSplitLines(Scene& scene) const;
    void drawHoveredBand(Scene& scene) const;
    void drawVerticalLine(Scene& scene, double x, const LineStyle& style) const;
    void drawHorizontalLine(Scene& scene, double y, const LineStyle& style) const;
    void drawPendingSplit(Scene& scene) const;
    void drawHoveredMarkers(Scene& scene) const;
    [[nodiscard]] const LineStyle& getStyle(GridLineOrientation orientation, double value) const;

    [[nodiscard]] double viewX(double x) const { return bounds_.minX() + bounds_.width * x; }

    [[nodiscard]] double viewY(double y) const { return bounds_.maxY() - bounds_.height * y; }

    GridDefinitionRef grid_;
    Rect visibleFrame_;
    double cellMarginPoints_;
    CancelCallback onCancel_;
    OkCallback onOk_;
    std::optional<PendingSplit> pendingSplit_;
    std::optional<NearestSplit> hoveredSplit_;
    std::optional<NearestSplit> flashSplit_;
    std::unique_ptr<Timer> flashTimer_;
    std::optional<NearestSplit> draggedSplit_;
    std::optional<GridLineOrientation> dragBaseOrientation_;
    GridEditorService editorService_;
    GridCalculator calculator_;
    CoordinateTransformer transformer_;
    CellFrameCalculator frameCalculator_;
    Rect bounds_;
    MainLoop* mainLoop_;
    TextMeasurer* textMeasurer_;
    std::function<void()> needsDisplay_;
};

} // namespace tarvex
