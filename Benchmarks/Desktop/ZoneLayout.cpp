#include "Benchmarks/Desktop/ZoneLayout.h"

#include "Core/Configuration/JsonCoding.h"
#include "Core/Grid/CellFrameCalculator.h"
#include "Core/Grid/GridCalculator.h"

#include <memory>
#include <utility>

namespace tarvex::benchmark {

namespace {

constexpr double margin = 8;

} // namespace

test::PixelRect ZoneLayout::zone(int column, int row) const {
    const GridDefinition grid("grid", "Grid", verticalSplits, horizontalSplits);
    const GridCalculator calculator(GridSplitNormalizer(GridSplitNormalizer::standardEpsilon));
    const Rect screen{0, 0, static_cast<double>(width), static_cast<double>(height)};
    const CellFrameMap frames =
        CellFrameCalculator(CoordinateTransformer()).getCellFrames(calculator.getCells(grid), screen, margin);
    const Rect frame = frames.at("r" + std::to_string(row) + "-c" + std::to_string(column));
    return test::roundedEdges({frame.x, height - frame.maxY(), frame.width, frame.height});
}

test::PixelRect ZoneLayout::corner(int column, int row) const {
    constexpr int side = 16;
    const test::PixelRect frame = zone(column, row);
    return {frame.x, frame.y + frame.height - side, side, side};
}

std::string ZoneLayout::settings() const {
    TarvexConfigFields fields = TarvexConfig::makeDefault()->fields();
    fields.grids = {std::make_shared<const GridDefinition>("grid", "Grid", verticalSplits, horizontalSplits)};
    fields.cellMarginPoints = margin;
    // A window that jumps back when the keys go up would disturb the next run.
    fields.restoreWindowSizeOnUnsnap = false;
    return encodeTarvexConfig(TarvexConfig(std::move(fields)));
}

} // namespace tarvex::benchmark
