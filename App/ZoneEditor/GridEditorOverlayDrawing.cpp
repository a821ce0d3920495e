// The part of GridEditorOverlayView that draws: the picture as a scene, and the two buttons as a form.

#include "App/ZoneEditor/GridEditorOverlayView.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace tarvex {

struct LineStyle {
    /// In points.
    double width = 0;
    Color color;
};

namespace {

constexpr LineStyle normalStyle{2, {ColorName::white, 0.85}};
constexpr LineStyle dimStyle{2, {ColorName::white, 0.4}};
constexpr LineStyle hoverStyle{7, {ColorName::blue, 0.95}};
constexpr LineStyle flashStyle{5, {ColorName::red, 0.95}};
constexpr LineStyle activeStyle{6, {ColorName::blue, 0.95}};

constexpr Color backdropColor{ColorName::black, 0.45};
constexpr Color outlineColor{ColorName::white, 0.4};
constexpr double bandAlpha = 0.35;
constexpr double bandWidth = 14;
constexpr double markerFillAlpha = 0.55;
constexpr double markerDiameter = 12;
/// From the end of the line to the centre of its marker.
constexpr double markerInset = 10;
constexpr Font labelFont{12, 500, true};
constexpr Color labelColor{ColorName::black, 0.85};
constexpr Color labelBackground{ColorName::white, 0.72};
constexpr Size labelPadding{6, 3};
constexpr Size labelRadii{6, 6};

/// Beyond this many zones none of them could be told from its neighbours, while drawing them all would hold
/// the program up; the dividing lines remain.
constexpr std::uint64_t maxZonesDrawn = 10'000;

constexpr Size buttonSize{96, 32};
constexpr double buttonMargin = 16;
constexpr double buttonGap = 10;
constexpr Font buttonFont{14, 600, false};
constexpr Color opaqueBlue{ColorName::blue, 1};

constexpr Color opaqueGray(double lightness) {
    return {ColorName::gray, 1, lightness};
}

Color withAlpha(Color color, double alpha) {
    color.alpha = alpha;
    return color;
}

// Truncated, so that a zone never claims a point that it does not have.
std::string wholePoints(double length) {
    constexpr double longest = 1e15;
    return std::to_string(static_cast<std::int64_t>(std::clamp(length, -longest, longest)));
}

void drawMarker(Scene& scene, Point center, const LineStyle& style) {
    constexpr double radius = markerDiameter / 2;
    const Rect circle{center.x - radius, center.y - radius, markerDiameter, markerDiameter};
    scene.primitives.emplace_back(FillEllipse{circle, withAlpha(style.color, markerFillAlpha)});
    scene.primitives.emplace_back(StrokeEllipse{circle, style.color, 1});
}

ButtonStyle styleCommonButton() {
    ButtonStyle style;
    style.bezelStyle = 1;
    style.alpha = 1;
    style.cornerRadius = 8;
    style.shadow = ControlShadow{{ColorName::black, 0.5}, 0.5, 5, {0, -2}};
    return style;
}

ButtonStyle styleSecondaryButton(ButtonStyle style) {
    style.bezelColor = opaqueGray(0.2);
    style.backgroundColor = opaqueGray(0.2);
    style.titleColor = Color{ColorName::white, 1};
    style.borderWidth = 2.5;
    style.borderColor = opaqueGray(0.4);
    return style;
}

ButtonStyle stylePrimaryButton(ButtonStyle style) {
    style.bezelColor = opaqueBlue;
    style.contentTintColor = Color{ColorName::black, 1};
    style.backgroundColor = opaqueBlue;
    return style;
}

Control makeButton(const char* id, const char* title, Point origin, ButtonStyle style) {
    Control button;
    button.kind = ControlKind::pushButton;
    button.id = id;
    button.frame = {origin.x, origin.y, buttonSize.width, buttonSize.height};
    button.text = title;
    button.font = buttonFont;
    button.buttonStyle = style;
    return button;
}

} // namespace

Scene GridEditorOverlayView::draw() {
    Scene scene;
    drawBackdrop(scene);
    const GridDefinitionRef preview = makePreviewGrid();
    if (!GridCalculator::hasMoreCellsThan(maxZonesDrawn, *preview)) {
        const std::vector<GridCell> cells = calculator_.getCells(*preview);
        const CellFrameMap frames = frameCalculator_.getCellFrames(cells, bounds_, cellMarginPoints_);
        drawCellBorders(scene, frames);
        drawCellSizes(scene, frames);
    }
    drawSplitLines(scene);
    return scene;
}

Form GridEditorOverlayView::form() {
    const Point okOrigin{bounds_.maxX() - buttonMargin - buttonSize.width, bounds_.minY() + buttonMargin};
    const Point cancelOrigin{okOrigin.x - buttonGap - buttonSize.width, okOrigin.y};
    return {{makeButton(cancelButtonId, "Cancel", cancelOrigin, styleSecondaryButton(styleCommonButton())),
             makeButton(okButtonId, "OK", okOrigin, stylePrimaryButton(styleCommonButton()))}};
}

void GridEditorOverlayView::drawBackdrop(Scene& scene) const {
    scene.primitives.emplace_back(FillRect{bounds_, backdropColor});
}

void GridEditorOverlayView::drawCellBorders(Scene& scene, const CellFrameMap& frames) const {
    for (const auto& [key, frame] : frames) {
        scene.primitives.emplace_back(StrokeRect{frame, outlineColor, 1});
    }
}

void GridEditorOverlayView::drawCellSizes(Scene& scene, const CellFrameMap& frames) const {
    for (const auto& [key, frame] : frames) {
        drawSizeText(scene, frame);
    }
}

void GridEditorOverlayView::drawSizeText(Scene& scene, const Rect& frame) const {
    const std::string text = wholePoints(frame.width) + "\u00D7" + wholePoints(frame.height);
    const Size size = textMeasurer_->sizeOfText(text, labelFont);
    const Point origin{frame.x + frame.width / 2 - size.width / 2,
                       frame.y + frame.height / 2 - size.height / 2};
    const Rect background{origin.x - labelPadding.width, origin.y - labelPadding.height,
                          size.width + 2 * labelPadding.width, size.height + 2 * labelPadding.height};
    scene.primitives.emplace_back(FillRoundedRect{background, labelRadii, labelBackground});
    scene.primitives.emplace_back(TextLabel{origin, text, labelFont, labelColor});
}

void GridEditorOverlayView::drawSplitLines(Scene& scene) const {
    drawHoveredBand(scene);
    for (const double x : grid_->verticalSplits()) {
        drawVerticalLine(scene, x, getStyle(GridLineOrientation::vertical, x));
    }
    for (const double y : grid_->horizontalSplits()) {
        drawHorizontalLine(scene, y, getStyle(GridLineOrientation::horizontal, y));
    }
    drawPendingSplit(scene);
    drawHoveredMarkers(scene);
}

void GridEditorOverlayView::drawHoveredBand(Scene& scene) const {
    if (!hoveredSplit_) {
        return;
    }
    const Rect band =
        hoveredSplit_->orientation == GridLineOrientation::vertical
            ? Rect{viewX(hoveredSplit_->value) - bandWidth / 2, bounds_.minY(), bandWidth, bounds_.height}
            : Rect{bounds_.minX(), viewY(hoveredSplit_->value) - bandWidth / 2, bounds_.width, bandWidth};
    scene.primitives.emplace_back(FillRect{band, withAlpha(hoverStyle.color, bandAlpha)});
}

void GridEditorOverlayView::drawVerticalLine(Scene& scene, double x, const LineStyle& style) const {
    scene.primitives.emplace_back(
        StrokeLine{{viewX(x), bounds_.minY()}, {viewX(x), bounds_.maxY()}, style.color, style.width});
}

void GridEditorOverlayView::drawHorizontalLine(Scene& scene, double y, const LineStyle& style) const {
    scene.primitives.emplace_back(
        StrokeLine{{bounds_.minX(), viewY(y)}, {bounds_.maxX(), viewY(y)}, style.color, style.width});
}

void GridEditorOverlayView::drawPendingSplit(Scene& scene) const {
    if (!pendingSplit_) {
        return;
    }
    if (pendingSplit_->orientation == GridLineOrientation::vertical) {
        drawVerticalLine(scene, pendingSplit_->value, activeStyle);
    } else {
        drawHorizontalLine(scene, pendingSplit_->value, activeStyle);
    }
}

void GridEditorOverlayView::drawHoveredMarkers(Scene& scene) const {
    if (!hoveredSplit_) {
        return;
    }
    if (hoveredSplit_->orientation == GridLineOrientation::vertical) {
        const double x = viewX(hoveredSplit_->value);
        drawMarker(scene, {x, bounds_.minY() + markerInset}, hoverStyle);
        drawMarker(scene, {x, bounds_.maxY() - markerInset}, hoverStyle);
    } else {
        const double y = viewY(hoveredSplit_->value);
        drawMarker(scene, {bounds_.minX() + markerInset, y}, hoverStyle);
        drawMarker(scene, {bounds_.maxX() - markerInset, y}, hoverStyle);
    }
}

const LineStyle& GridEditorOverlayView::getStyle(GridLineOrientation orientation, double value) const {
    const auto isThis = [&](const std::optional<NearestSplit>& split) {
        return split && split->orientation == orientation && std::abs(split->value - value) < split->epsilon;
    };
    if (isThis(flashSplit_)) {
        return flashStyle;
    }
    if (isThis(hoveredSplit_)) {
        return hoverStyle;
    }
    return hoveredSplit_ ? dimStyle : normalStyle;
}

} // namespace tarvex
