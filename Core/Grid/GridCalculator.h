#pragma once

#include "Core/Grid/GridModel.h"
#include "Core/Grid/GridSplitNormalizer.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace tarvex {

/// Turns a grid into its cells, and cells into the area that covers them. Normalized coordinates throughout.
class GridCalculator {
public:
    explicit GridCalculator(GridSplitNormalizer splitNormalizer) : splitNormalizer_(splitNormalizer) {}

    /// All cells in row-major order: the top row from left to right, then the next row. Never empty.
    [[nodiscard]] std::vector<GridCell> getCells(const GridDefinition& grid) const;

    /// Whether the split lists make more cells than that. They are counted as they stand: a split that
    /// coincides with another, or lies outside, counts too. Nothing is made for the answer, since a
    /// hand-written grid may have more cells than the memory holds.
    [[nodiscard]] static bool hasMoreCellsThan(std::uint64_t limit, const GridDefinition& grid);

    /// The bounding box of the cells; none for an empty list. The cells need not form a rectangle.
    [[nodiscard]] std::optional<NormalizedRect> unionRect(const std::vector<GridCell>& cells) const;

private:
    struct Segment {
        double start;
        double end;
    };

    [[nodiscard]] std::vector<Segment> getSegments(const std::vector<double>& splits) const;
    [[nodiscard]] static std::vector<GridCell> buildCells(const std::vector<Segment>& rows,
                                                          const std::vector<Segment>& columns);
    [[nodiscard]] static NormalizedRect reduceUnion(const GridCell& first,
                                                    const std::vector<GridCell>& cells);

    GridSplitNormalizer splitNormalizer_;
};

} // namespace tarvex
