#include "Core/Grid/CellSelectionState.h"

#include <algorithm>
#include <iterator>

namespace tarvex {

void CellSelectionState::add(const GridCell& cell) {
    selectedKeys_.insert(makeCellKey(cell));
}

bool CellSelectionState::isSelected(const GridCell& cell) const {
    return selectedKeys_.contains(makeCellKey(cell));
}

std::vector<GridCell> CellSelectionState::getSelectedCells(const std::vector<GridCell>& allCells) const {
    std::vector<GridCell> selected;
    if (selectedKeys_.empty()) {
        return selected;
    }
    std::copy_if(allCells.begin(), allCells.end(), std::back_inserter(selected),
                 [this](const GridCell& cell) { return isSelected(cell); });
    return selected;
}

} // namespace tarvex
