// The part of SnapController that finds the zones under a point and shows them.

#include "App/Snapping/SnapController.h"

#include <algorithm>

namespace tarvex {

namespace {

using ModifierSetting = std::optional<ModifierDefinition> (TarvexConfig::*)() const;

std::uint32_t effectiveMask(const TarvexConfig& config, ModifierSetting setting) {
    auto definition = (config.*setting)();
    if (!definition) {
        definition = (*TarvexConfig::makeDefault().*setting)();
    }
    return definition.value_or(ModifierDefinition{}).modifiers;
}

} // namespace

bool SnapController::matches(std::uint32_t modifiers, const TarvexConfig& config) {
    return modifiers == effectiveMask(config, &TarvexConfig::singleSnapModifiers) ||
           isMulti(modifiers, config);
}

bool SnapController::isMulti(std::uint32_t modifiers, const TarvexConfig& config) {
    return modifiers == effectiveMask(config, &TarvexConfig::multiSnapModifiers);
}

std::string_view SnapController::modeName(std::uint32_t modifiers, const TarvexConfig& config) {
    return isMulti(modifiers, config) ? "multi" : "single";
}

GridDefinitionRef SnapController::resolveGrid(const TarvexConfig& config, Point point) {
    const auto fallback = [&config] {
        return config.grids().empty() ? TarvexConfig::makeDefault()->grids().front() : config.grids().front();
    };
    const auto displayId = getDisplayId(point);
    if (!displayId) {
        return fallback();
    }
    const auto& assignments = config.defaultGridByDisplayId();
    const auto assigned = assignments.find(services_.displayService->getIdentifier(*displayId).stableId());
    if (assigned == assignments.end()) {
        return fallback();
    }
    const auto grid =
        std::find_if(config.grids().begin(), config.grids().end(),
                     [&](const GridDefinitionRef& candidate) { return candidate->id() == assigned->second; });
    return grid == config.grids().end() ? fallback() : *grid;
}

void SnapController::refuseZones() {
    // Those of another display's grid would snap the window on this one.
    activeCells_.clear();
    if (!hasLoggedTooManyZones_) {
        platform_.log.systemLog("SnapController.updateSelection: too many zones");
        hasLoggedTooManyZones_ = true;
    }
}

std::optional<Screen> SnapController::screenUnder(Point point) {
    for (Screen& screen : platform_.screens.screens()) {
        if (screen.frame.contains(point)) {
            return std::move(screen);
        }
    }
    return std::nullopt;
}

std::optional<Rect> SnapController::getVisibleFrame(Point point) {
    const std::optional<Screen> screen = screenUnder(point);
    return screen ? std::optional<Rect>(screen->visibleFrame) : std::nullopt;
}

std::optional<std::uint32_t> SnapController::getDisplayId(Point point) {
    const std::optional<Screen> screen = screenUnder(point);
    return screen ? screen->displayNumber : std::nullopt;
}

void SnapController::updateOverlay(const TarvexConfig& config, const Rect& visibleFrame, Point point) {
    const GridDefinitionRef grid = activeGrid_ ? activeGrid_ : resolveGrid(config, point);
    const CellFrameMap frames =
        services_.cellFrameCalculator.getCellFrames(activeCells_, visibleFrame, config.cellMarginPoints());
    std::vector<Rect> selectionFrames;
    for (const GridCell& cell : selectionState_.getSelectedCells(activeCells_)) {
        const auto frame = frames.find(makeCellKey(cell));
        if (frame != frames.end() && !frame->second.isEmpty()) {
            selectionFrames.push_back(frame->second);
        }
    }
    std::vector<Rect> cellFrames;
    cellFrames.reserve(frames.size());
    for (const auto& [key, frame] : frames) {
        cellFrames.push_back(frame);
    }
    if (overlayWindow_) {
        overlayWindow_->update(grid, cellFrames, selectionFrames);
    }
}

void SnapController::ensureOverlay(const Rect& visibleFrame) {
    if (!overlayWindow_ || overlayWindow_->frame() != visibleFrame) {
        // The old window goes first: two overlays must never be seen together.
        overlayWindow_.reset();
        overlayWindow_ = std::make_unique<SnapOverlayWindow>(platform_.windows, visibleFrame);
    }
    overlayWindow_->orderFront();
}

std::optional<Rect> SnapController::unionFrames(const CellFrameMap& framesMap,
                                                const std::vector<GridCell>& selection) {
    std::optional<Rect> joined;
    for (const GridCell& cell : selection) {
        const auto frame = framesMap.find(makeCellKey(cell));
        if (frame != framesMap.end()) {
            joined = joined ? joined->unionWith(frame->second) : frame->second;
        }
    }
    return joined;
}

} // namespace tarvex
