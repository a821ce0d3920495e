#pragma once

#include "Core/Grid/GridModel.h"

#include <string>
#include <unordered_set>
#include <vector>

namespace tarvex {

/// The set of cells gathered during a drag. It holds keys, not cells, and so survives a recomputation of the
/// cells as long as their rows and columns exist. It carries no order.
class CellSelectionState {
public:
    void clear() { selectedKeys_.clear(); }

    /// Adds the cell; adding it again changes nothing.
    void add(const GridCell& cell);

    [[nodiscard]] bool isSelected(const GridCell& cell) const;

    /// The members of allCells that are selected, in the order of allCells. Selected keys that match none of
    /// them are passed over.
    [[nodiscard]] std::vector<GridCell> getSelectedCells(const std::vector<GridCell>& allCells) const;

    [[nodiscard]] const std::unordered_set<std::string>& selectedKeys() const { return selectedKeys_; }

private:
    std::unordered_set<std::string> selectedKeys_;
};

} // namespace tarvex
