#include "Core/Grid/CellFrameCalculator.h"

#include "Core/Grid/GridCalculator.h"
#include "Tests/Support/RandomSource.h"

#include <gtest/gtest.h>

#include <vector>

namespace tarvex {

namespace {

constexpr double tolerance = 1e-9;

std::vector<GridCell> cellsOf(std::vector<double> vertical, std::vector<double> horizontal) {
    return GridCalculator(GridSplitNormalizer(GridSplitNormalizer::standardEpsilon))
        .getCells(GridDefinition("g", "G", std::move(vertical), std::move(horizontal)));
}

CellFrameMap framesOf(const std::vector<GridCell>& cells, const Rect& visibleFrame, double margin) {
    return CellFrameCalculator(CoordinateTransformer()).getCellFrames(cells, visibleFrame, margin);
}

TEST(CellFrameCalculatorTest, NoCellsGiveNoFrames) {
    EXPECT_TRUE(framesOf({}, {0, 0, 1000, 800}, 10).empty());
}

TEST(CellFrameCalculatorTest, TwoSideBySideCellsAreOneMarginApart) {
    const CellFrameMap frames = framesOf(cellsOf({0.5}, {}), {0, 0, 1000, 800}, 10);
    EXPECT_EQ(frames, (CellFrameMap{{"r0-c0", {10, 10, 485, 780}}, {"r0-c1", {505, 10, 485, 780}}}));
    EXPECT_EQ(frames.at("r0-c1").minX() - frames.at("r0-c0").maxX(), 10);
}

TEST(CellFrameCalculatorTest, ASingleCellKeepsTheMarginOnAllSides) {
    EXPECT_EQ(framesOf(cellsOf({}, {}), {-100, 50, 400, 300}, 8),
              (CellFrameMap{{"r0-c0", {-92, 58, 384, 284}}}));
}

TEST(CellFrameCalculatorTest, AMarginOfZeroGivesTheExactCells) {
    const CellFrameMap frames = framesOf(cellsOf({0.25}, {0.5}), {0, 25, 1000, 800}, 0);
    EXPECT_EQ(frames, (CellFrameMap{{"r0-c0", {0, 425, 250, 400}},
                                    {"r0-c1", {250, 425, 750, 400}},
                                    {"r1-c0", {0, 25, 250, 400}},
                                    {"r1-c1", {250, 25, 750, 400}}}));
}

TEST(CellFrameCalculatorTest, ANegativeMarginLetsTheCellsReachOverTheirEdges) {
    EXPECT_EQ(framesOf(cellsOf({0.5}, {}), {0, 0, 1000, 800}, -10),
              (CellFrameMap{{"r0-c0", {-10, -10, 515, 820}}, {"r0-c1", {495, -10, 515, 820}}}));
}

TEST(CellFrameCalculatorTest, AnInnerCellKeepsHalfTheMarginOnAllSides) {
    const CellFrameMap frames = framesOf(cellsOf({0.25, 0.75}, {0.25, 0.75}), {0, 0, 1000, 800}, 10);
    EXPECT_EQ(frames.at("r1-c1"), (Rect{255, 205, 490, 390}));
}

TEST(CellFrameCalculatorTest, TheTopInsetShortensAndTheBottomInsetMoves) {
    const CellFrameMap frames = framesOf(cellsOf({}, {0.5}), {0, 0, 1000, 800}, 10);
    EXPECT_EQ(frames.at("r0-c0"), (Rect{10, 405, 980, 385})) << "half a margin below, a whole one above";
    EXPECT_EQ(frames.at("r1-c0"), (Rect{10, 10, 980, 385})) << "a whole margin below, half a one above";
}

TEST(CellFrameCalculatorTest, ACellNarrowerThanItsInsetsHasNoWidth) {
    const CellFrameMap frames = framesOf(cellsOf({0.01}, {}), {0, 0, 1000, 800}, 20);
    EXPECT_EQ(frames.at("r0-c0"), (Rect{20, 20, 0, 760})) << "the origin is where the insets put it";
}

TEST(CellFrameCalculatorTest, ACellLowerThanItsInsetsHasNoHeight) {
    const CellFrameMap frames = framesOf(cellsOf({}, {0.01}), {0, 0, 1000, 800}, 20);
    EXPECT_EQ(frames.at("r0-c0"), (Rect{20, 802, 960, 0}));
}

TEST(CellFrameCalculatorTest, OuterEdgesAreThoseOfTheListNotOfTheGrid) {
    const std::vector<GridCell> all = cellsOf({0.25, 0.75}, {0.25, 0.75});
    const CellFrameMap frames = framesOf({all[4]}, {0, 0, 1000, 800}, 10);
    EXPECT_EQ(frames, (CellFrameMap{{"r1-c1", {255, 210, 485, 385}}}))
        << "full margins at the right and the bottom, half ones at the left and the top";
}

TEST(CellFrameCalculatorTest, TheLastOfTwoCellsWithOneKeyWins) {
    const std::vector<GridCell> cells{GridCell(0, 0, {0, 0, 1, 1}), GridCell(0, 0, {0.5, 0, 0.5, 1})};
    EXPECT_EQ(framesOf(cells, {0, 0, 1000, 800}, 0), (CellFrameMap{{"r0-c0", {500, 0, 500, 800}}}));
}

TEST(CellFrameCalculatorTest, KeysHaveNoPadding) {
    const CellFrameMap frames = framesOf({GridCell(10, 3, {0, 0, 1, 1})}, {0, 0, 10, 10}, 0);
    EXPECT_TRUE(frames.contains("r10-c3"));
}

bool overlap(const Rect& first, const Rect& second) {
    return std::min(first.maxX(), second.maxX()) - std::max(first.minX(), second.minX()) > tolerance &&
           std::min(first.maxY(), second.maxY()) - std::max(first.minY(), second.minY()) > tolerance;
}

TEST(CellFrameCalculatorTest, RandomFramesNeverOverlapAndStayInsideTheVisibleFrame) {
    for (std::uint32_t seed = 1; seed <= 1000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomSource random(seed);
        const std::vector<GridCell> cells = cellsOf(random.splits(6), random.splits(6));
        const Rect visible{random.between(-4000, 4000), random.between(-4000, 4000), random.between(1, 8000),
                           random.between(1, 8000)};
        const double margin = random.coin() ? random.between(0, 40) : 0;
        const CellFrameMap frames = framesOf(cells, visible, margin);
        ASSERT_EQ(frames.size(), cells.size());
        std::vector<Rect> filled;
        for (const auto& [key, frame] : frames) {
            ASSERT_GE(frame.width, 0) << key;
            ASSERT_GE(frame.height, 0) << key;
            if (frame.isEmpty()) {
                continue;
            }
            ASSERT_GE(frame.minX(), visible.minX() - tolerance) << key;
            ASSERT_GE(frame.minY(), visible.minY() - tolerance) << key;
            ASSERT_LE(frame.maxX(), visible.maxX() + tolerance) << key;
            ASSERT_LE(frame.maxY(), visible.maxY() + tolerance) << key;
            filled.push_back(frame);
        }
        for (std::size_t first = 0; first < filled.size(); ++first) {
            for (std::size_t second = first + 1; second < filled.size(); ++second) {
                ASSERT_FALSE(overlap(filled[first], filled[second]));
            }
        }
    }
}

TEST(CellFrameCalculatorTest, RandomNeighboursAreExactlyOneMarginApart) {
    for (std::uint32_t seed = 1; seed <= 1000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        RandomSource random(seed);
        const std::vector<GridCell> cells = cellsOf(random.splits(6), random.splits(6));
        const double margin = random.between(0, 20);
        const CellFrameMap frames = framesOf(cells, {0, 0, 1920, 1080}, margin);
        for (const GridCell& cell : cells) {
            const Rect& frame = frames.at(makeCellKey(cell));
            const auto right =
                frames.find(makeCellKey({cell.rowIndex(), cell.columnIndex() + 1, cell.rect()}));
            if (right != frames.end() && frame.width > 0) {
                ASSERT_NEAR(right->second.minX() - frame.maxX(), margin, tolerance) << right->first;
            }
            const auto below =
                frames.find(makeCellKey({cell.rowIndex() + 1, cell.columnIndex(), cell.rect()}));
            if (below != frames.end() && below->second.height > 0) {
                ASSERT_NEAR(frame.minY() - below->second.maxY(), margin, tolerance) << below->first;
            }
        }
    }
}

} // namespace

} // namespace tarvex
