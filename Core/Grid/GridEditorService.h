#pragma once

#include "Core/Grid/GridModel.h"
#include "Core/Grid/GridSplitNormalizer.h"

#include <optional>

namespace tarvex {

/// The dividing line closest to a point, in normalized coordinates.
struct NearestSplit {
    GridLineOrientation orientation = GridLineOrientation::horizontal;
    /// The line's position as stored in the grid: the y of a horizontal line, the x of a vertical one.
    double value = 0;
    /// How far the point is from it, along the line's normal.
    double distance = 0;
    /// How near to value other splits count as this line.
    double epsilon = 0;

    bool operator==(const NearestSplit&) const = default;
};

/// Of all splits of the grid, as stored, the closest to the point; of equally close ones the horizontal, then
/// the first. None for a grid without splits. Its tolerance is the standard one, whoever asks.
[[nodiscard]] std::optional<NearestSplit> findNearestSplit(const GridDefinition& grid,
                                                           const NormalizedPoint& point);

/// The values that are farther than the split's tolerance from it, in their order.
[[nodiscard]] std::vector<double> splitsWithout(const std::vector<double>& splits, const NearestSplit& split);

/// Adds dividing lines to grids and takes them away. A result is a new grid of the same id and name with both
/// lists normalized; grids that were handed in stay as they are. Nothing fails.
class GridEditorService {
public:
    explicit GridEditorService(GridSplitNormalizer splitNormalizer) : splitNormalizer_(splitNormalizer) {}

    /// A line near an outer edge or outside is dropped; of one near another the smaller value stands.
    [[nodiscard]] GridDefinitionRef addHorizontalLine(const GridDefinitionRef& grid, double atY) const;
    [[nodiscard]] GridDefinitionRef addVerticalLine(const GridDefinitionRef& grid, double atX) const;

    /// Takes away the line nearest to the point, with all that count as the same line. The very grid that was
    /// handed in when none is within the threshold (normalized units, inclusive).
    [[nodiscard]] GridDefinitionRef removeLineNear(const GridDefinitionRef& grid,
                                                   const NormalizedPoint& point, double threshold) const;

private:
    [[nodiscard]] GridDefinitionRef removeSplit(const GridDefinition& grid,
                                                const NearestSplit& nearest) const;
    [[nodiscard]] GridDefinitionRef makeNormalized(const GridDefinition& grid,
                                                   const std::vector<double>& verticals,
                                                   const std::vector<double>& horizontals) const;

    GridSplitNormalizer splitNormalizer_;
};

} // namespace tarvex
