#include "Core/Grid/GridCalculator.h"

#include <algorithm>

namespace tarvex {

std::vector<GridCell> GridCalculator::getCells(const GridDefinition& grid) const {
    return buildCells(getSegments(grid.horizontalSplits()), getSegments(grid.verticalSplits()));
}

bool GridCalculator::hasMoreCellsThan(std::uint64_t limit, const GridDefinition& grid) {
    const std::uint64_t columns = std::uint64_t{grid.verticalSplits().size()} + 1;
    const std::uint64_t rows = std::uint64_t{grid.horizontalSplits().size()} + 1;
    // The product may be too large for any number.
    return columns > limit / rows;
}

std::optional<NormalizedRect> GridCalculator::unionRect(const std::vector<GridCell>& cells) const {
    if (cells.empty()) {
        return std::nullopt;
    }
    return reduceUnion(cells.front(), cells);
}

std::vector<GridCalculator::Segment> GridCalculator::getSegments(const std::vector<double>& splits) const {
    const std::vector<double> inner = splitNormalizer_.normalizeSplits(splits);
    std::vector<Segment> segments;
    segments.reserve(inner.size() + 1);
    double start = 0;
    for (const double boundary : inner) {
        segments.push_back({start, boundary});
        start = boundary;
    }
    segments.push_back({start, 1});
    return segments;
}

std::vector<GridCell> GridCalculator::buildCells(const std::vector<Segment>& rows,
                                                 const std::vector<Segment>& columns) {
    std::vector<GridCell> cells;
    cells.reserve(rows.size() * columns.size());
    std::int64_t rowIndex = 0;
    for (const Segment& row : rows) {
        std::int64_t columnIndex = 0;
        for (const Segment& column : columns) {
            cells.emplace_back(
                rowIndex, columnIndex,
                NormalizedRect(column.start, row.start, column.end - column.start, row.end - row.start));
            ++columnIndex;
        }
        ++rowIndex;
    }
    return cells;
}

NormalizedRect GridCalculator::reduceUnion(const GridCell& first, const std::vector<GridCell>& cells) {
    double minX = first.rect().x();
    double minY = first.rect().y();
    double maxX = first.rect().maxX();
    double maxY = first.rect().maxY();
    for (const GridCell& cell : cells) {
        minX = std::min(minX, cell.rect().x());
        minY = std::min(minY, cell.rect().y());
        maxX = std::max(maxX, cell.rect().maxX());
        maxY = std::max(maxY, cell.rect().maxY());
    }
    return {minX, minY, maxX - minX, maxY - minY};
}

} // namespace tarvex
