#include "Core/Grid/GridHitTester.h"

#include "Core/Grid/GridCalculator.h"
#include "Tests/Support/RandomSource.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace tarvex {

namespace {

std::vector<GridCell> cellsOf(std::vector<double> vertical, std::vector<double> horizontal) {
    return GridCalculator(GridSplitNormalizer(GridSplitNormalizer::standardEpsilon))
        .getCells(GridDefinition("g", "G", std::move(vertical), std::move(horizontal)));
}

// The key of the cell that is hit; empty when none is.
std::string hit(const std::vector<GridCell>& cells, double x, double y) {
    const std::optional<GridCell> cell = GridHitTester().getCell(cells, {x, y});
    return cell ? makeCellKey(*cell) : "";
}

TEST(GridHitTesterTest, AnEmptyListIsHitNowhere) {
    EXPECT_EQ(hit({}, 0.5, 0.5), "");
}

TEST(GridHitTesterTest, ASharedVerticalEdgeBelongsToTheLeftCell) {
    const std::vector<GridCell> cells = cellsOf({0.5}, {});
    EXPECT_EQ(hit(cells, 0.5, 0.3), "r0-c0");
    EXPECT_EQ(hit(cells, 0.50001, 0.3), "r0-c1");
}

TEST(GridHitTesterTest, TheOuterEdgesBelongToTheirCells) {
    const std::vector<GridCell> cells = cellsOf({0.5}, {});
    EXPECT_EQ(hit(cells, 1, 1), "r0-c1");
    EXPECT_EQ(hit(cells, 1, 0), "r0-c1");
    EXPECT_EQ(hit(cells, 0, 0), "r0-c0");
    EXPECT_EQ(hit(cells, 0, 1), "r0-c0");
}

TEST(GridHitTesterTest, ASharedHorizontalEdgeBelongsToTheUpperCell) {
    const std::vector<GridCell> cells = cellsOf({}, {0.5});
    EXPECT_EQ(hit(cells, 0.3, 0.5), "r0-c0");
    EXPECT_EQ(hit(cells, 0.3, std::nextafter(0.5, 1.0)), "r1-c0");
}

TEST(GridHitTesterTest, ACornerOfFourBelongsToTheUpperLeftCell) {
    EXPECT_EQ(hit(cellsOf({0.5}, {0.5}), 0.5, 0.5), "r0-c0");
}

TEST(GridHitTesterTest, TheFirstOfTheListWinsWhateverItsPlace) {
    std::vector<GridCell> cells = cellsOf({0.5}, {});
    std::swap(cells[0], cells[1]);
    EXPECT_EQ(hit(cells, 0.5, 0.5), "r0-c1");
}

TEST(GridHitTesterTest, PointsOutsideTheUnitSquareHitNothing) {
    const std::vector<GridCell> cells = cellsOf({0.5}, {0.5});
    EXPECT_EQ(hit(cells, -0.001, 0.5), "");
    EXPECT_EQ(hit(cells, 1.001, 0.5), "");
    EXPECT_EQ(hit(cells, 0.5, -0.001), "");
    EXPECT_EQ(hit(cells, 0.5, 1.001), "");
    EXPECT_EQ(hit(cells, std::nan(""), 0.5), "");
}

TEST(GridHitTesterTest, ReturnsTheWholeCell) {
    const std::vector<GridCell> cells = cellsOf({0.5}, {0.5});
    EXPECT_EQ(GridHitTester().getCell(cells, {0.75, 0.75}), cells[3]);
}

TEST(GridHitTesterTest, RandomPointsHitTheCellThatHoldsThem) {
    for (std::uint32_t seed = 1; seed <= 1000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomSource random(seed);
        const std::vector<GridCell> cells = cellsOf(random.splits(10), random.splits(10));
        for (int attempt = 0; attempt < 20; ++attempt) {
            const NormalizedPoint point(random.unit(), random.unit());
            const std::optional<GridCell> found = GridHitTester().getCell(cells, point);
            ASSERT_TRUE(found) << point.x() << ", " << point.y();
            ASSERT_LE(found->rect().x(), point.x());
            ASSERT_GE(found->rect().maxX(), point.x());
            ASSERT_LE(found->rect().y(), point.y());
            ASSERT_GE(found->rect().maxY(), point.y());
        }
    }
}

TEST(GridHitTesterTest, RandomEdgesBelongToTheCellBeforeThemAndLeaveNoHole) {
    for (std::uint32_t seed = 1; seed <= 1000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomSource random(seed);
        const std::vector<GridCell> cells = cellsOf(random.splits(10), random.splits(10));
        for (const GridCell& cell : cells) {
            const double middle = cell.rect().y() + cell.rect().height() / 2;
            const double edge = cell.rect().x();
            for (const double x : {std::nextafter(edge, 0.0), edge, std::nextafter(edge, 1.0)}) {
                const std::optional<GridCell> found = GridHitTester().getCell(cells, {x, middle});
                ASSERT_TRUE(found) << x;
                ASSERT_EQ(found->rowIndex(), cell.rowIndex());
                ASSERT_LE(found->columnIndex(), cell.columnIndex());
                ASSERT_GE(found->columnIndex(), cell.columnIndex() - 1);
            }
        }
    }
}

} // namespace

} // namespace tarvex
