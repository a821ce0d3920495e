#include "Core/Grid/GridEditorService.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace tarvex {

namespace {

std::optional<NearestSplit> nearestOf(GridLineOrientation orientation, const std::vector<double>& splits,
                                      double coordinate) {
    std::optional<NearestSplit> best;
    for (const double value : splits) {
        const double distance = std::abs(coordinate - value);
        if (!best || distance < best->distance) {
            best = NearestSplit{orientation, value, distance, GridSplitNormalizer::standardEpsilon};
        }
    }
    return best;
}

std::vector<double> with(std::vector<double> splits, double value) {
    splits.push_back(value);
    return splits;
}

} // namespace

std::optional<NearestSplit> findNearestSplit(const GridDefinition& grid, const NormalizedPoint& point) {
    const auto horizontal = nearestOf(GridLineOrientation::horizontal, grid.horizontalSplits(), point.y());
    const auto vertical = nearestOf(GridLineOrientation::vertical, grid.verticalSplits(), point.x());
    if (horizontal && vertical) {
        return horizontal->distance <= vertical->distance ? horizontal : vertical;
    }
    return horizontal ? horizontal : vertical;
}

std::vector<double> splitsWithout(const std::vector<double>& splits, const NearestSplit& split) {
    std::vector<double> kept;
    std::copy_if(splits.begin(), splits.end(), std::back_inserter(kept),
                 [&](double value) { return std::abs(value - split.value) > split.epsilon; });
    return kept;
}

GridDefinitionRef GridEditorService::addHorizontalLine(const GridDefinitionRef& grid, double atY) const {
    return makeNormalized(*grid, grid->verticalSplits(), with(grid->horizontalSplits(), atY));
}

GridDefinitionRef GridEditorService::addVerticalLine(const GridDefinitionRef& grid, double atX) const {
    return makeNormalized(*grid, with(grid->verticalSplits(), atX), grid->horizontalSplits());
}

GridDefinitionRef GridEditorService::removeLineNear(const GridDefinitionRef& grid,
                                                    const NormalizedPoint& point, double threshold) const {
    const auto nearest = findNearestSplit(*grid, point);
    return nearest && nearest->distance <= threshold ? removeSplit(*grid, *nearest) : grid;
}

GridDefinitionRef GridEditorService::removeSplit(const GridDefinition& grid,
                                                 const NearestSplit& nearest) const {
    if (nearest.orientation == GridLineOrientation::horizontal) {
        return makeNormalized(grid, grid.verticalSplits(), splitsWithout(grid.horizontalSplits(), nearest));
    }
    return makeNormalized(grid, splitsWithout(grid.verticalSplits(), nearest), grid.horizontalSplits());
}

GridDefinitionRef GridEditorService::makeNormalized(const GridDefinition& grid,
                                                    const std::vector<double>& verticals,
                                                    const std::vector<double>& horizontals) const {
    return std::make_shared<const GridDefinition>(grid.id(), grid.name(),
                                                  splitNormalizer_.normalizeSplits(verticals),
                                                  splitNormalizer_.normalizeSplits(horizontals));
}

} // namespace tarvex
