#pragma once

#include "Core/Grid/GridModel.h"

#include <optional>
#include <vector>

namespace tarvex {

/// Finds the cell under a point.
class GridHitTester {
public:
    /// The first cell of the list that holds the point, all four edges included; none when no cell does. In a
    /// row-major list a shared edge therefore belongs to the cell on its left or above it.
    [[nodiscard]] std::optional<GridCell> getCell(const std::vector<GridCell>& cells,
                                                  NormalizedPoint point) const;
};

} // namespace tarvex
