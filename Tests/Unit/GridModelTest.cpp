#include "Core/Grid/GridModel.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <vector>

namespace tarvex {

namespace {

TEST(NormalizedPointTest, EqualityIsExact) {
    EXPECT_EQ(NormalizedPoint(0.25, 0.5), NormalizedPoint(0.25, 0.5));
    EXPECT_NE(NormalizedPoint(0.25, 0.5), NormalizedPoint(0.25, std::nextafter(0.5, 1.0)));
    EXPECT_NE(NormalizedPoint(std::nextafter(0.25, 0.0), 0.5), NormalizedPoint(0.25, 0.5));
}

TEST(NormalizedPointTest, KeepsValuesOutsideTheUnitSquare) {
    const NormalizedPoint point(-3, 17.5);
    EXPECT_EQ(point.x(), -3);
    EXPECT_EQ(point.y(), 17.5);
}

TEST(NormalizedRectTest, MaximaAreOriginPlusExtent) {
    const NormalizedRect rect(0.25, 0.5, 0.125, 0.375);
    EXPECT_EQ(rect.maxX(), 0.375);
    EXPECT_EQ(rect.maxY(), 0.875);
}

TEST(NormalizedRectTest, EqualityHasNoTolerance) {
    const NormalizedRect sum(0, 0, 0.1 + 0.2, 1);
    EXPECT_FALSE(sum == NormalizedRect(0, 0, 0.3, 1));
    EXPECT_EQ(sum, NormalizedRect(0, 0, 0.1 + 0.2, 1));
}

TEST(NormalizedRectTest, EqualityLooksAtEveryField) {
    const NormalizedRect rect(0.1, 0.2, 0.3, 0.4);
    EXPECT_NE(rect, NormalizedRect(0.5, 0.2, 0.3, 0.4));
    EXPECT_NE(rect, NormalizedRect(0.1, 0.5, 0.3, 0.4));
    EXPECT_NE(rect, NormalizedRect(0.1, 0.2, 0.5, 0.4));
    EXPECT_NE(rect, NormalizedRect(0.1, 0.2, 0.3, 0.5));
}

TEST(NormalizedRectTest, AnUndefinedNumberEqualsNothing) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const NormalizedRect rect(nan, 0, 1, 1);
    EXPECT_FALSE(rect == rect);
}

TEST(GridCellTest, EqualityLooksAtIndicesAndRect) {
    const NormalizedRect rect(0, 0, 0.5, 1);
    const GridCell cell(1, 2, rect);
    EXPECT_EQ(cell, GridCell(1, 2, NormalizedRect(0, 0, 0.5, 1)));
    EXPECT_NE(cell, GridCell(2, 2, rect));
    EXPECT_NE(cell, GridCell(1, 1, rect));
    EXPECT_NE(cell, GridCell(1, 2, NormalizedRect(0, 0, 0.5, 0.9)));
}

TEST(GridCellTest, IndicesHave64Bits) {
    const GridCell cell(std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min(),
                        NormalizedRect(0, 0, 1, 1));
    EXPECT_EQ(cell.rowIndex(), 9223372036854775807);
    EXPECT_EQ(cell.columnIndex(), std::numeric_limits<std::int64_t>::min());
}

TEST(MakeCellKeyTest, IsPlainDecimal) {
    const NormalizedRect rect(0, 0, 1, 1);
    EXPECT_EQ(makeCellKey(GridCell(0, 2, rect)), "r0-c2");
    EXPECT_EQ(makeCellKey(GridCell(10, 3, rect)), "r10-c3");
    EXPECT_EQ(makeCellKey(GridCell(0, 0, rect)), "r0-c0");
}

TEST(MakeCellKeyTest, HoldsTheLargestAndSmallestIndices) {
    const GridCell cell(std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min(),
                        NormalizedRect(0, 0, 1, 1));
    EXPECT_EQ(makeCellKey(cell), "r9223372036854775807-c-9223372036854775808");
}

TEST(GridDefinitionTest, SameIdIsEqualWhateverElseDiffers) {
    const GridDefinition grid("work", "Work", {0.5}, {});
    EXPECT_EQ(grid, GridDefinition("work", "Other", {0.5}, {}));
    EXPECT_EQ(grid, GridDefinition("work", "Work", {0.25, 0.75}, {0.5}));
}

TEST(GridDefinitionTest, DifferentIdIsUnequalThoughAllElseMatches) {
    EXPECT_NE(GridDefinition("work", "Work", {0.5}, {}), GridDefinition("Work", "Work", {0.5}, {}));
}

TEST(GridDefinitionTest, KeepsSplitsExactlyAsGiven) {
    const GridDefinition grid("g", "G", {1.5, -2, 0.5, 0.5}, {0.9, 0.1});
    EXPECT_EQ(grid.verticalSplits(), (std::vector{1.5, -2.0, 0.5, 0.5}));
    EXPECT_EQ(grid.horizontalSplits(), (std::vector{0.9, 0.1}));
}

TEST(GridDefinitionTest, AnEditIsANewObjectThatEqualsTheOld) {
    const GridDefinitionRef grid =
        std::make_shared<const GridDefinition>("g", "G", std::vector{0.5}, std::vector{0.5});
    const GridDefinitionRef edited = std::make_shared<const GridDefinition>(
        grid->id(), grid->name(), std::vector{0.25}, grid->horizontalSplits());
    EXPECT_EQ(*grid, *edited);
    EXPECT_NE(grid, edited);
    EXPECT_EQ(grid->verticalSplits(), std::vector{0.5});
}

TEST(GridLineOrientationTest, RawValues) {
    EXPECT_EQ(rawValue(GridLineOrientation::horizontal), "horizontal");
    EXPECT_EQ(rawValue(GridLineOrientation::vertical), "vertical");
}

TEST(GridLineOrientationTest, ComesFromItsExactNameOnly) {
    EXPECT_EQ(makeGridLineOrientation("horizontal"), GridLineOrientation::horizontal);
    EXPECT_EQ(makeGridLineOrientation("vertical"), GridLineOrientation::vertical);
    for (const char* name : {"Horizontal", "VERTICAL", "", "horizontal ", "diagonal", "vert"}) {
        EXPECT_FALSE(makeGridLineOrientation(name)) << name;
    }
}

} // namespace

} // namespace tarvex
