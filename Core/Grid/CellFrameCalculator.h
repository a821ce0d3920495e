#pragma once

#include "Core/Geometry.h"
#include "Core/Grid/CoordinateTransformer.h"
#include "Core/Grid/GridModel.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace tarvex {

/// Cell key (see makeCellKey) to the cell's inset frame in screen space. The order carries no meaning.
using CellFrameMap = std::unordered_map<std::string, Rect>;

/// Turns cells into the frames that windows snap to, margins included.
class CellFrameCalculator {
public:
    explicit CellFrameCalculator(CoordinateTransformer transformer) : transformer_(transformer) {}

    /// The frame of each cell on the given visible frame, in screen space and points. A cell keeps the full
    /// margin at an outer edge of the list and half of it at an edge shared with a neighbour, so that
    /// neighbouring zones are one margin apart. Outer edges are told by the largest indices in the list, not
    /// by the grid. Width and height never go below 0; the origin is not adjusted for that.
    [[nodiscard]] CellFrameMap getCellFrames(const std::vector<GridCell>& cells, const Rect& visibleFrame,
                                             double cellMarginPoints) const;

private:
    CoordinateTransformer transformer_;
};

} // namespace tarvex
