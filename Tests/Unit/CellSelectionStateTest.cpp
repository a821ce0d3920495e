#include "Core/Grid/CellSelectionState.h"

#include "Core/Grid/GridCalculator.h"
#include "Tests/Support/RandomSource.h"

#include <gtest/gtest.h>

#include <set>
#include <vector>

namespace tarvex {

namespace {

std::vector<GridCell> cellsOf(std::vector<double> vertical, std::vector<double> horizontal) {
    return GridCalculator(GridSplitNormalizer(GridSplitNormalizer::standardEpsilon))
        .getCells(GridDefinition("g", "G", std::move(vertical), std::move(horizontal)));
}

TEST(CellSelectionStateTest, StartsEmpty) {
    const CellSelectionState state;
    EXPECT_TRUE(state.selectedKeys().empty());
    EXPECT_TRUE(state.getSelectedCells(cellsOf({0.5}, {0.5})).empty());
}

TEST(CellSelectionStateTest, ACellIsKnownByItsRowAndColumnAlone) {
    CellSelectionState state;
    state.add(GridCell(1, 2, {0, 0, 1, 1}));
    EXPECT_TRUE(state.isSelected(GridCell(1, 2, {0.5, 0.5, 0.25, 0.25})));
    EXPECT_FALSE(state.isSelected(GridCell(2, 1, {0, 0, 1, 1})));
    EXPECT_FALSE(state.isSelected(GridCell(12, 0, {0, 0, 1, 1})));
}

TEST(CellSelectionStateTest, SelectedCellsComeInTheOrderOfTheListNotOfAdding) {
    const std::vector<GridCell> cells = cellsOf({0.5}, {0.5});
    CellSelectionState state;
    state.add(cells[3]);
    state.add(cells[0]);
    EXPECT_EQ(state.getSelectedCells(cells), (std::vector{cells[0], cells[3]}));
}

TEST(CellSelectionStateTest, AddingTwiceChangesNothing) {
    const std::vector<GridCell> cells = cellsOf({0.5}, {});
    CellSelectionState state;
    state.add(cells[1]);
    state.add(cells[1]);
    EXPECT_EQ(state.selectedKeys().size(), 1U);
    EXPECT_EQ(state.getSelectedCells(cells), std::vector{cells[1]});
}

TEST(CellSelectionStateTest, ClearingForgetsEverything) {
    const std::vector<GridCell> cells = cellsOf({0.5}, {});
    CellSelectionState state;
    state.add(cells[0]);
    state.clear();
    EXPECT_FALSE(state.isSelected(cells[0]));
    EXPECT_TRUE(state.getSelectedCells(cells).empty());
}

TEST(CellSelectionStateTest, ClearingAnEmptyStateIsHarmless) {
    CellSelectionState state;
    state.clear();
    EXPECT_TRUE(state.selectedKeys().empty());
}

TEST(CellSelectionStateTest, SurvivesARecomputationOfTheCells) {
    CellSelectionState state;
    state.add(cellsOf({0.5}, {})[1]);
    const std::vector<GridCell> moved = cellsOf({0.75}, {});
    EXPECT_EQ(state.getSelectedCells(moved), std::vector{moved[1]});
}

TEST(CellSelectionStateTest, KeysWithoutACellArePassedOver) {
    CellSelectionState state;
    state.add(GridCell(7, 7, {0, 0, 1, 1}));
    EXPECT_TRUE(state.getSelectedCells(cellsOf({0.5}, {0.5})).empty());
    EXPECT_EQ(state.selectedKeys().size(), 1U);
}

TEST(CellSelectionStateTest, ACellThatOccursTwiceIsReturnedTwice) {
    const GridCell cell(0, 0, {0, 0, 1, 1});
    CellSelectionState state;
    state.add(cell);
    EXPECT_EQ(state.getSelectedCells({cell, GridCell(0, 1, {0, 0, 1, 1}), cell}), (std::vector{cell, cell}));
}

TEST(CellSelectionStateTest, RandomSelectionsAreTheSetOfWhatWasAdded) {
    for (std::uint32_t seed = 1; seed <= 500; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomSource random(seed);
        const std::vector<GridCell> cells = cellsOf(random.splits(8), random.splits(8));
        CellSelectionState state;
        std::set<std::size_t> added;
        for (int count = random.integer(0, 30); count > 0; --count) {
            const auto index = random.integer(std::size_t{0}, cells.size() - 1);
            state.add(cells[index]);
            added.insert(index);
        }
        std::vector<GridCell> expected;
        for (const std::size_t index : added) {
            expected.push_back(cells[index]);
        }
        ASSERT_EQ(state.getSelectedCells(cells), expected);
    }
}

} // namespace

} // namespace tarvex
