#include "Core/Grid/GridCalculator.h"

#include "Tests/Support/EvenSplits.h"
#include "Tests/Support/RandomSource.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <vector>

namespace tarvex {

namespace {

constexpr double tolerance = 1e-12;

class GridCalculatorTest : public testing::Test {
protected:
    [[nodiscard]] std::vector<GridCell> cells(std::vector<double> vertical,
                                              std::vector<double> horizontal) const {
        return calculator_.getCells(GridDefinition("g", "G", std::move(vertical), std::move(horizontal)));
    }

    [[nodiscard]] const GridCalculator& calculator() const { return calculator_; }

private:
    GridCalculator calculator_{GridSplitNormalizer(GridSplitNormalizer::standardEpsilon)};
};

TEST_F(GridCalculatorTest, AGridWithoutSplitsIsOneCell) {
    EXPECT_EQ(cells({}, {}), std::vector{GridCell(0, 0, {0, 0, 1, 1})});
}

TEST_F(GridCalculatorTest, OneVerticalSplitGivesTwoColumns) {
    EXPECT_EQ(cells({0.5}, {}),
              (std::vector{GridCell(0, 0, {0, 0, 0.5, 1}), GridCell(0, 1, {0.5, 0, 0.5, 1})}));
}

TEST_F(GridCalculatorTest, OneHorizontalSplitGivesTwoRows) {
    EXPECT_EQ(cells({}, {0.25}),
              (std::vector{GridCell(0, 0, {0, 0, 1, 0.25}), GridCell(1, 0, {0, 0.25, 1, 0.75})}));
}

TEST_F(GridCalculatorTest, OneSplitEachWayGivesFourCellsInRowMajorOrder) {
    EXPECT_EQ(cells({0.5}, {0.5}),
              (std::vector{GridCell(0, 0, {0, 0, 0.5, 0.5}), GridCell(0, 1, {0.5, 0, 0.5, 0.5}),
                           GridCell(1, 0, {0, 0.5, 0.5, 0.5}), GridCell(1, 1, {0.5, 0.5, 0.5, 0.5})}));
}

TEST_F(GridCalculatorTest, CellsAreNumberedRowByRow) {
    const std::vector<GridCell> all = cells({0.25, 0.5, 0.75}, {0.5, 0.75});
    ASSERT_EQ(all.size(), 12U);
    for (std::size_t index = 0; index < all.size(); ++index) {
        EXPECT_EQ(all[index].rowIndex(), static_cast<std::int64_t>(index / 4));
        EXPECT_EQ(all[index].columnIndex(), static_cast<std::int64_t>(index % 4));
    }
}

TEST_F(GridCalculatorTest, UnsortedAndDuplicatedSplitsGiveTheCellsOfTheCleanedForm) {
    EXPECT_EQ(cells({0.75, 0.25, 0.75, 1.5, 0}, {0.5, 0.50001}), cells({0.25, 0.75}, {0.5}));
}

TEST_F(GridCalculatorTest, AnyGridHasACell) {
    EXPECT_EQ(cells({0, 1, -3}, {std::nan(""), 2}).size(), 1U);
}

TEST_F(GridCalculatorTest, TenThousandSplits) {
    const std::vector<GridCell> all = cells(evenSplits(10'000), {});
    ASSERT_GT(all.size(), 4'900U);
    ASSERT_LE(all.size(), 10'001U);
    EXPECT_EQ(all.front().rect().x(), 0);
    EXPECT_EQ(all.back().rect().maxX(), 1);
    EXPECT_EQ(all.back().columnIndex(), static_cast<std::int64_t>(all.size()) - 1);
}

TEST_F(GridCalculatorTest, CellsAreCountedAsTheSplitsStand) {
    const auto hasMoreThan = [](std::uint64_t limit, std::size_t vertical, std::size_t horizontal) {
        const GridDefinition grid("g", "G", std::vector<double>(vertical, 0.5),
                                  std::vector<double>(horizontal, 2));
        return GridCalculator::hasMoreCellsThan(limit, grid);
    };
    EXPECT_FALSE(hasMoreThan(1, 0, 0));
    EXPECT_TRUE(hasMoreThan(0, 0, 0));
    EXPECT_FALSE(hasMoreThan(12, 2, 3));
    EXPECT_FALSE(hasMoreThan(13, 2, 3));
    EXPECT_TRUE(hasMoreThan(11, 2, 3));
    EXPECT_TRUE(hasMoreThan(12, 12, 0));
    EXPECT_TRUE(hasMoreThan(12, 0, 12));
    EXPECT_FALSE(hasMoreThan(~std::uint64_t{0}, 1000, 1000));
}

TEST_F(GridCalculatorTest, UnionOfNothingIsNone) {
    EXPECT_EQ(calculator().unionRect({}), std::nullopt);
}

TEST_F(GridCalculatorTest, UnionOfOneCellIsItsRect) {
    EXPECT_EQ(calculator().unionRect({GridCell(3, 3, {0.25, 0.5, 0.25, 0.125})}),
              NormalizedRect(0.25, 0.5, 0.25, 0.125));
}

TEST_F(GridCalculatorTest, UnionOfTheDiagonalIsTheWholeUnitSquare) {
    const std::vector<GridCell> all = cells({0.5}, {0.5});
    EXPECT_EQ(calculator().unionRect({all[0], all[3]}), NormalizedRect(0, 0, 1, 1));
    EXPECT_EQ(calculator().unionRect({all[2], all[1]}), NormalizedRect(0, 0, 1, 1));
}

TEST_F(GridCalculatorTest, UnionOfNeighboursIsTheRowThatTheyForm) {
    const std::vector<GridCell> all = cells({0.25, 0.5}, {0.5});
    EXPECT_EQ(calculator().unionRect({all[3], all[4]}), NormalizedRect(0, 0.5, 0.5, 0.5));
}

// Rows and columns meet exactly: each starts where the one before it ends, the first at 0, the last ends
// at 1.
void expectNoGapAndNoOverlap(const std::vector<GridCell>& cells) {
    const auto columns = static_cast<std::size_t>(cells.back().columnIndex() + 1);
    const auto rows = static_cast<std::size_t>(cells.back().rowIndex() + 1);
    ASSERT_EQ(cells.size(), rows * columns);
    for (std::size_t index = 0; index < cells.size(); ++index) {
        const NormalizedRect& rect = cells[index].rect();
        const std::size_t column = index % columns;
        const std::size_t row = index / columns;
        ASSERT_GT(rect.width(), 0);
        ASSERT_GT(rect.height(), 0);
        ASSERT_NEAR(rect.x(), column == 0 ? 0 : cells[index - 1].rect().maxX(), tolerance);
        ASSERT_NEAR(rect.y(), row == 0 ? 0 : cells[index - columns].rect().maxY(), tolerance);
        if (column + 1 == columns) {
            ASSERT_EQ(rect.maxX(), 1);
        }
        if (row + 1 == rows) {
            ASSERT_EQ(rect.maxY(), 1);
        }
        ASSERT_EQ(rect.x(), cells[column].rect().x()) << "a column is as wide in every row";
        ASSERT_EQ(rect.width(), cells[column].rect().width());
        ASSERT_EQ(rect.y(), cells[row * columns].rect().y()) << "a row is as high in every column";
        ASSERT_EQ(rect.height(), cells[row * columns].rect().height());
    }
}

TEST_F(GridCalculatorTest, RandomCellsCoverTheUnitSquareWithoutGapOrOverlap) {
    for (std::uint32_t seed = 1; seed <= 1000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomSource random(seed);
        expectNoGapAndNoOverlap(cells(random.splits(12), random.splits(12)));
        ASSERT_FALSE(HasFatalFailure());
    }
}

TEST_F(GridCalculatorTest, RandomUnionsContainTheirMembersAndTouchThemOnEverySide) {
    for (std::uint32_t seed = 1; seed <= 1000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomSource random(seed);
        const std::vector<GridCell> all = cells(random.splits(8), random.splits(8));
        std::vector<GridCell> members;
        for (std::size_t count = random.integer(std::size_t{1}, all.size()); count > 0; --count) {
            members.push_back(all[random.integer(std::size_t{0}, all.size() - 1)]);
        }
        const std::optional<NormalizedRect> bounds = calculator().unionRect(members);
        ASSERT_TRUE(bounds);
        double left = 2;
        double top = 2;
        double right = -1;
        double bottom = -1;
        for (const GridCell& member : members) {
            left = std::min(left, member.rect().x());
            top = std::min(top, member.rect().y());
            right = std::max(right, member.rect().maxX());
            bottom = std::max(bottom, member.rect().maxY());
        }
        ASSERT_EQ(bounds->x(), left);
        ASSERT_EQ(bounds->y(), top);
        ASSERT_NEAR(bounds->maxX(), right, tolerance);
        ASSERT_NEAR(bounds->maxY(), bottom, tolerance);
    }
}

} // namespace

} // namespace tarvex
