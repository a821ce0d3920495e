#include "App/ZoneEditor/GridEditorOverlayView.h"

#include "App/Input/EventTapPlatform.h"

#include <utility>

namespace tarvex {

namespace {

constexpr double hitThreshold = 0.015;
/// Less than the hit threshold: a click may be near enough to show which line is meant, and yet too far off
/// to delete it.
constexpr double removalThreshold = 0.01;
constexpr double flashSeconds = 0.15;

// Virtual key codes (Apple, HIToolbox Events.h).
constexpr std::uint16_t returnKey = 36;
constexpr std::uint16_t escapeKey = 53;
constexpr std::uint16_t keypadEnterKey = 76;

bool hasShift(const MouseEvent& event) {
    return (event.modifierFlags & event_flag::shift) != 0;
}

PendingSplit pendingAt(const NormalizedPoint& point, GridLineOrientation orientation) {
    return {orientation, orientation == GridLineOrientation::vertical ? point.x() : point.y()};
}

GridLineOrientation flipped(GridLineOrientation orientation) {
    return orientation == GridLineOrientation::vertical ? GridLineOrientation::horizontal
                                                        : GridLineOrientation::vertical;
}

} // namespace

GridEditorOverlayView::GridEditorOverlayView(GridDefinitionRef grid, const Rect& visibleFrame,
                                             double cellMarginPoints, CancelCallback onCancel,
                                             OkCallback onOk, const GridEditorSurroundings& surroundings)
    : grid_(std::move(grid)),
      visibleFrame_(visibleFrame),
      cellMarginPoints_(cellMarginPoints),
      onCancel_(std::move(onCancel)),
      onOk_(std::move(onOk)),
      editorService_(GridSplitNormalizer(GridSplitNormalizer::standardEpsilon)),
      calculator_(GridSplitNormalizer(GridSplitNormalizer::standardEpsilon)),
      frameCalculator_(CoordinateTransformer()),
      bounds_{0, 0, visibleFrame.width, visibleFrame.height},
      mainLoop_(&surroundings.mainLoop),
      textMeasurer_(&surroundings.textMeasurer) {}

void GridEditorOverlayView::mouseMoved(const MouseEvent& event) {
    const auto point = toNormalizedPoint(event);
    hoveredSplit_ = point ? getNearestSplit(*point, hitThreshold) : std::nullopt;
    redraw();
}

void GridEditorOverlayView::mouseDown(const MouseEvent& event) {
    if (const auto point = toNormalizedPoint(event)) {
        startPrimaryDrag(*point, hasShift(event));
    }
}

void GridEditorOverlayView::mouseDragged(const MouseEvent& event) {
    if (const auto point = toNormalizedPoint(event)) {
        pendingSplit_ = updatePendingSplit(*point, hasShift(event));
        redraw();
    }
}

void GridEditorOverlayView::mouseUp(const MouseEvent& event) {
    // A line that is let go of outside stays lifted: that is how a line is thrown away.
    if (toNormalizedPoint(event)) {
        finishPrimaryDrag();
    }
}

void GridEditorOverlayView::rightMouseDown(const MouseEvent& event) {
    if (const auto point = toNormalizedPoint(event)) {
        handleSecondaryClick(*point);
    }
}

bool GridEditorOverlayView::keyDown(const KeyEvent& event) {
    switch (event.keyCode) {
    case escapeKey:
        cancelTapped();
        return true;
    case returnKey:
    case keypadEnterKey:
        okTapped();
        return true;
    default:
        return false;
    }
}

void GridEditorOverlayView::controlActivated(const std::string& id) {
    if (id == cancelButtonId) {
        cancelTapped();
    } else if (id == okButtonId) {
        okTapped();
    }
}

void GridEditorOverlayView::screensChanged() {
    cancelTapped();
}

void GridEditorOverlayView::cancelTapped() {
    // A copy, since the callback may destroy this view.
    const CancelCallback callback = onCancel_;
    callback();
}

void GridEditorOverlayView::okTapped() {
    const OkCallback callback = onOk_;
    const GridDefinitionRef grid = grid_;
    callback(grid);
}

void GridEditorOverlayView::startPrimaryDrag(const NormalizedPoint& point, bool isShift) {
    auto base = GridLineOrientation::horizontal;
    if (const auto found = getNearestSplit(point, hitThreshold)) {
        draggedSplit_ = found;
        base = found->orientation;
        grid_ =
            base == GridLineOrientation::vertical ? removeFromVertical(*found) : removeFromHorizontal(*found);
    }
    dragBaseOrientation_ = base;
    pendingSplit_ = makePendingSplit(point, base, isShift);
    redraw();
}

void GridEditorOverlayView::finishPrimaryDrag() {
    grid_ = makePreviewGrid();
    pendingSplit_.reset();
    draggedSplit_.reset();
    dragBaseOrientation_.reset();
    redraw();
}

void GridEditorOverlayView::handleSecondaryClick(const NormalizedPoint& point) {
    flashSplit_ = getNearestSplit(point, hitThreshold);
    scheduleFlashClear();
    grid_ = editorService_.removeLineNear(grid_, point, removalThreshold);
    redraw();
}

std::optional<NormalizedPoint> GridEditorOverlayView::toNormalizedPoint(const MouseEvent& event) const {
    return transformer_.toNormalizedPoint(event.location, bounds_);
}

std::optional<NearestSplit> GridEditorOverlayView::getNearestSplit(const NormalizedPoint& point,
                                                                   double threshold) const {
    auto nearest = findNearestSplit(*grid_, point);
    return nearest && nearest->distance <= threshold ? nearest : std::nullopt;
}

std::optional<PendingSplit> GridEditorOverlayView::makePendingSplit(const NormalizedPoint& point,
                                                                    std::optional<GridLineOrientation> base,
                                                                    bool isShift) {
    if (!base) {
        return std::nullopt;
    }
    return pendingAt(point, isShift ? flipped(*base) : *base);
}

std::optional<PendingSplit> GridEditorOverlayView::updatePendingSplit(const NormalizedPoint& point,
                                                                      bool isShift) const {
    if (dragBaseOrientation_) {
        return makePendingSplit(point, dragBaseOrientation_, isShift);
    }
    return pendingSplit_ ? std::optional(pendingAt(point, pendingSplit_->orientation)) : std::nullopt;
}

GridDefinitionRef GridEditorOverlayView::removeFromVertical(const NearestSplit& split) const {
    return std::make_shared<const GridDefinition>(
        grid_->id(), grid_->name(), splitsWithout(grid_->verticalSplits(), split), grid_->horizontalSplits());
}

GridDefinitionRef GridEditorOverlayView::removeFromHorizontal(const NearestSplit& split) const {
    return std::make_shared<const GridDefinition>(grid_->id(), grid_->name(), grid_->verticalSplits(),
                                                  splitsWithout(grid_->horizontalSplits(), split));
}

GridDefinitionRef GridEditorOverlayView::makePreviewGrid() const {
    if (!pendingSplit_) {
        return grid_;
    }
    return pendingSplit_->orientation == GridLineOrientation::vertical
               ? editorService_.addVerticalLine(grid_, pendingSplit_->value)
               : editorService_.addHorizontalLine(grid_, pendingSplit_->value);
}

void GridEditorOverlayView::scheduleFlashClear() {
    flashTimer_ = mainLoop_->scheduleOnce(flashSeconds, [this] { clearFlash(); });
}

void GridEditorOverlayView::clearFlash() {
    flashSplit_.reset();
    redraw();
}

void GridEditorOverlayView::redraw() const {
    if (needsDisplay_) {
        needsDisplay_();
    }
}

} // namespace tarvex
