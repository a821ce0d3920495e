#include "Core/Grid/GridSplitNormalizer.h"

#include "Tests/Support/RandomSource.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace tarvex {

namespace {

using Splits = std::vector<double>;

class GridSplitNormalizerTest : public testing::Test {
protected:
    [[nodiscard]] Splits normalize(const Splits& splits) const { return normalizer_.normalizeSplits(splits); }

private:
    GridSplitNormalizer normalizer_{GridSplitNormalizer::standardEpsilon};
};

TEST_F(GridSplitNormalizerTest, TheToleranceOfTheProgram) {
    EXPECT_EQ(GridSplitNormalizer::standardEpsilon, 0.0001);
    EXPECT_EQ(GridSplitNormalizer(0.25).epsilon(), 0.25);
}

TEST_F(GridSplitNormalizerTest, NothingGivesNothing) {
    EXPECT_EQ(normalize({}), Splits());
}

TEST_F(GridSplitNormalizerTest, OuterEdgesAndTheirNeighboursAreDropped) {
    EXPECT_EQ(normalize({0, 1, 0.00005, 0.99995}), Splits());
}

TEST_F(GridSplitNormalizerTest, TheLowerBoundIsStrict) {
    EXPECT_EQ(normalize({0.0001}), Splits());
    EXPECT_EQ(normalize({0.00011}), Splits({0.00011}));
    const double next = std::nextafter(0.0001, 1.0);
    EXPECT_EQ(normalize({next}), Splits({next}));
}

TEST_F(GridSplitNormalizerTest, TheUpperBoundIsStrict) {
    const double bound = 1 - 0.0001;
    EXPECT_EQ(normalize({bound}), Splits());
    const double before = std::nextafter(bound, 0.0);
    EXPECT_EQ(normalize({before}), Splits({before}));
}

TEST_F(GridSplitNormalizerTest, SortsAndMergesEqualValues) {
    EXPECT_EQ(normalize({0.7, 0.3, 0.7}), Splits({0.3, 0.7}));
}

TEST_F(GridSplitNormalizerTest, ValuesOutsideTheUnitIntervalAreDropped) {
    EXPECT_EQ(normalize({2.0, -1.0, 0.25}), Splits({0.25}));
}

TEST_F(GridSplitNormalizerTest, NegativeZeroIsAnEdge) {
    EXPECT_EQ(normalize({-0.0}), Splits());
}

TEST_F(GridSplitNormalizerTest, UndefinedAndInfiniteNumbersAreDropped) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(normalize({nan, 0.75, infinity, nan, 0.25, -infinity}), Splits({0.25, 0.75}));
}

TEST_F(GridSplitNormalizerTest, ComparesWithTheLastKeptValueNotThePreviousOne) {
    EXPECT_EQ(normalize({0.5, 0.50008, 0.50016}), Splits({0.5, 0.50016}));
}

TEST_F(GridSplitNormalizerTest, OfAClusterTheSmallestValueSurvives) {
    EXPECT_EQ(normalize({0.50009, 0.50003, 0.5}), Splits({0.5}));
}

TEST_F(GridSplitNormalizerTest, ADistanceOfExactlyTheToleranceMerges) {
    const GridSplitNormalizer normalizer(0.125);
    EXPECT_EQ(normalizer.normalizeSplits({0.25, 0.375}), Splits({0.25}));
    const double beyond = std::nextafter(0.375, 1.0);
    EXPECT_EQ(normalizer.normalizeSplits({0.25, beyond}), Splits({0.25, beyond}));
}

TEST_F(GridSplitNormalizerTest, LeavesItsInputAlone) {
    const Splits splits{0.9, -1, 0.1, 0.1};
    static_cast<void>(normalize(splits));
    EXPECT_EQ(splits, Splits({0.9, -1, 0.1, 0.1}));
}

TEST_F(GridSplitNormalizerTest, RandomLists) {
    const double epsilon = GridSplitNormalizer::standardEpsilon;
    for (std::uint32_t seed = 1; seed <= 2000; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const Splits splits = RandomSource(seed).splits(40);
        const Splits normalized = normalize(splits);

        ASSERT_EQ(normalize(normalized), normalized) << "normalising twice is normalising once";
        for (std::size_t index = 0; index < normalized.size(); ++index) {
            ASSERT_GT(normalized[index], epsilon);
            ASSERT_LT(normalized[index], 1 - epsilon);
            ASSERT_NE(std::find(splits.begin(), splits.end(), normalized[index]), splits.end());
            if (index > 0) {
                ASSERT_GT(normalized[index] - normalized[index - 1], epsilon);
            }
        }
        for (const double split : splits) {
            const auto isNear = [&](double kept) { return kept <= split && split - kept <= epsilon; };
            const bool isInner = epsilon < split && split < 1 - epsilon;
            ASSERT_TRUE(!isInner || std::any_of(normalized.begin(), normalized.end(), isNear))
                << split << " is neither kept nor merged into a smaller one";
        }
    }
}

TEST_F(GridSplitNormalizerTest, TheOrderOfTheInputDoesNotMatter) {
    for (std::uint32_t seed = 1; seed <= 500; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Splits splits = RandomSource(seed).splits(20);
        const Splits normalized = normalize(splits);
        std::reverse(splits.begin(), splits.end());
        ASSERT_EQ(normalize(splits), normalized);
    }
}

} // namespace

} // namespace tarvex
