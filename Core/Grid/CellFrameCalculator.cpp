#include "Core/Grid/CellFrameCalculator.h"

#include <algorithm>
#include <cstdint>

namespace tarvex {

CellFrameMap CellFrameCalculator::getCellFrames(const std::vector<GridCell>& cells, const Rect& visibleFrame,
                                                double cellMarginPoints) const {
    std::int64_t maxRow = 0;
    std::int64_t maxColumn = 0;
    for (const GridCell& cell : cells) {
        maxRow = std::max(maxRow, cell.rowIndex());
        maxColumn = std::max(maxColumn, cell.columnIndex());
    }

    const double full = cellMarginPoints;
    const double half = cellMarginPoints * 0.5;
    CellFrameMap frames;
    frames.reserve(cells.size());
    for (const GridCell& cell : cells) {
        const Rect base = transformer_.toFrame(cell.rect(), visibleFrame);
        const double left = cell.columnIndex() == 0 ? full : half;
        const double right = cell.columnIndex() == maxColumn ? full : half;
        const double top = cell.rowIndex() == 0 ? full : half;
        const double bottom = cell.rowIndex() == maxRow ? full : half;
        frames.insert_or_assign(makeCellKey(cell), Rect{base.minX() + left, base.minY() + bottom,
                                                        std::max(0.0, base.width - left - right),
                                                        std::max(0.0, base.height - top - bottom)});
    }
    return frames;
}

} // namespace tarvex
