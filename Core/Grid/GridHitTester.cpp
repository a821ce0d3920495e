#include "Core/Grid/GridHitTester.h"

#include <algorithm>

namespace tarvex {

std::optional<GridCell> GridHitTester::getCell(const std::vector<GridCell>& cells,
                                               NormalizedPoint point) const {
    const auto holdsPoint = [point](const GridCell& cell) {
        const NormalizedRect& rect = cell.rect();
        return rect.x() <= point.x() && point.x() <= rect.maxX() && rect.y() <= point.y() &&
               point.y() <= rect.maxY();
    };
    const auto found = std::find_if(cells.begin(), cells.end(), holdsPoint);
    return found == cells.end() ? std::nullopt : std::optional<GridCell>(*found);
}

} // namespace tarvex
