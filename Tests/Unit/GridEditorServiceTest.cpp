#include "Core/Grid/GridEditorService.h"

#include <gtest/gtest.h>

#include <vector>

namespace tarvex {

namespace {

using Splits = std::vector<double>;

GridDefinitionRef makeGrid(Splits vertical, Splits horizontal) {
    return std::make_shared<const GridDefinition>("id", "Name", std::move(vertical), std::move(horizontal));
}

const GridEditorService service{GridSplitNormalizer(GridSplitNormalizer::standardEpsilon)};

TEST(GridEditorServiceTest, AddedLineJoinsItsListInOrder) {
    const auto grid = makeGrid({0.25, 0.75}, {0.5});
    EXPECT_EQ(service.addVerticalLine(grid, 0.4)->verticalSplits(), (Splits{0.25, 0.4, 0.75}));
    EXPECT_EQ(service.addHorizontalLine(grid, 0.1)->horizontalSplits(), (Splits{0.1, 0.5}));
}

TEST(GridEditorServiceTest, ResultIsANewGridOfTheSameIdAndName) {
    const auto grid = makeGrid({0.25}, {0.5});
    for (const auto& result : {service.addVerticalLine(grid, 0.4), service.addHorizontalLine(grid, 0.4),
                               service.removeLineNear(grid, {0.25, 0.9}, 0.01)}) {
        EXPECT_NE(result, grid);
        EXPECT_EQ(result->id(), "id");
        EXPECT_EQ(result->name(), "Name");
    }
    EXPECT_EQ(grid->verticalSplits(), Splits{0.25});
    EXPECT_EQ(grid->horizontalSplits(), Splits{0.5});
}

TEST(GridEditorServiceTest, LineOnAnExistingOneIsTheSameLine) {
    const auto grid = makeGrid({}, {0.5});
    EXPECT_EQ(service.addHorizontalLine(grid, 0.5)->horizontalSplits(), Splits{0.5});
    EXPECT_EQ(service.addHorizontalLine(grid, 0.49995)->horizontalSplits(), Splits{0.49995});
    EXPECT_EQ(service.addHorizontalLine(grid, 0.50005)->horizontalSplits(), Splits{0.5});
    const auto columns = makeGrid({0.5}, {});
    EXPECT_EQ(service.addVerticalLine(columns, 0.49995)->verticalSplits(), Splits{0.49995});
    EXPECT_EQ(service.addVerticalLine(columns, 0.50005)->verticalSplits(), Splits{0.5});
}

TEST(GridEditorServiceTest, LineAtOrBeyondAnOuterEdgeIsDroppedFromANewObject) {
    const auto grid = makeGrid({0.5}, {0.5});
    for (const double position : {0.0, 0.0001, -3.0, 0.9999, 1.0, 1.2}) {
        const auto rows = service.addHorizontalLine(grid, position);
        EXPECT_NE(rows, grid);
        EXPECT_EQ(rows->horizontalSplits(), Splits{0.5}) << position;
        EXPECT_EQ(service.addVerticalLine(grid, position)->verticalSplits(), Splits{0.5}) << position;
    }
}

TEST(GridEditorServiceTest, BothListsAreCleanedByEveryEdit) {
    const auto grid = makeGrid({0.7, 0.2, 2}, {0.9, 0.1, 0.1});
    const Splits verticals{0.2, 0.7};
    const Splits horizontals{0.1, 0.9};
    EXPECT_EQ(service.addVerticalLine(grid, 0.5)->horizontalSplits(), horizontals);
    EXPECT_EQ(service.addHorizontalLine(grid, 0.5)->verticalSplits(), verticals);
    const auto withoutColumn = service.removeLineNear(grid, {0.7, 0.5}, 0.01);
    EXPECT_EQ(withoutColumn->verticalSplits(), Splits{0.2});
    EXPECT_EQ(withoutColumn->horizontalSplits(), horizontals);
    const auto withoutRow = service.removeLineNear(grid, {0.5, 0.9}, 0.01);
    EXPECT_EQ(withoutRow->horizontalSplits(), Splits{0.1});
    EXPECT_EQ(withoutRow->verticalSplits(), verticals);
}

TEST(GridEditorServiceTest, OfEquallyNearLinesTheHorizontalOneIsRemoved) {
    const auto grid = makeGrid({0.5}, {0.5});
    const auto result = service.removeLineNear(grid, {0.625, 0.625}, 0.125);
    EXPECT_TRUE(result->horizontalSplits().empty());
    EXPECT_EQ(result->verticalSplits(), Splits{0.5});
}

TEST(GridEditorServiceTest, NothingWithinTheThresholdGivesTheVerySameGrid) {
    const auto grid = makeGrid({0.5}, {0.5});
    EXPECT_EQ(service.removeLineNear(grid, {0.625, 0.625}, 0.1249), grid);
    EXPECT_NE(service.removeLineNear(grid, {0.625, 0.625}, 0.125), grid);
    const auto empty = makeGrid({}, {});
    EXPECT_EQ(service.removeLineNear(empty, {0.5, 0.5}, 1), empty);
}

TEST(GridEditorServiceTest, NearDuplicatesGoTogether) {
    EXPECT_TRUE(
        service.removeLineNear(makeGrid({0.3, 0.30005}, {}), {0.301, 0.5}, 0.01)->verticalSplits().empty());
    EXPECT_EQ(service.removeLineNear(makeGrid({0.3, 0.3002}, {}), {0.3, 0.5}, 0.01)->verticalSplits(),
              Splits{0.3002});
    EXPECT_TRUE(
        service.removeLineNear(makeGrid({}, {0.3, 0.30005}), {0.5, 0.301}, 0.01)->horizontalSplits().empty());
}

TEST(GridEditorServiceTest, NearestLineIsTheFirstOfTheClosest) {
    const auto nearest = findNearestSplit(*makeGrid({0.75, 0.25}, {}), {0.5, 0.5});
    ASSERT_TRUE(nearest.has_value());
    EXPECT_EQ(*nearest, (NearestSplit{GridLineOrientation::vertical, 0.75, 0.25, 0.0001}));
    const auto row = findNearestSplit(*makeGrid({0.9}, {0.75, 0.25}), {0.5, 0.5});
    ASSERT_TRUE(row.has_value());
    EXPECT_EQ(*row, (NearestSplit{GridLineOrientation::horizontal, 0.75, 0.25, 0.0001}));
    const auto column = findNearestSplit(*makeGrid({0.4375}, {0.25}), {0.5, 0.5});
    ASSERT_TRUE(column.has_value());
    EXPECT_EQ(*column, (NearestSplit{GridLineOrientation::vertical, 0.4375, 0.0625, 0.0001}));
    EXPECT_FALSE(findNearestSplit(*makeGrid({}, {}), {0.5, 0.5}).has_value());
}

TEST(GridEditorServiceTest, ToleranceOfARemovalIsNotTheServicesOwn) {
    const GridEditorService coarse{GridSplitNormalizer(0.1)};
    const auto grid = makeGrid({0.3, 0.5}, {});
    EXPECT_EQ(coarse.removeLineNear(grid, {0.3, 0.5}, 0.01)->verticalSplits(), Splits{0.5});
    EXPECT_EQ(coarse.removeLineNear(makeGrid({0.3, 0.35}, {}), {0.3, 0.5}, 0.01)->verticalSplits(),
              Splits{0.35});
}

} // namespace

} // namespace tarvex
