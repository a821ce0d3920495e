#include "Platform/Linux/X11/XSizeLimits.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <initializer_list>
#include <utility>
#include <vector>

namespace tarvex::contract {

namespace {

using Extent = XSizeLimits::Extent;

// Flags and words of WM_NORMAL_HINTS.
constexpr std::uint32_t smallest = 1U << 4;
constexpr std::uint32_t largest = 1U << 5;
constexpr std::uint32_t increment = 1U << 6;
constexpr std::uint32_t ratio = 1U << 7;
constexpr std::uint32_t base = 1U << 8;

XSizeLimits limitsOf(std::initializer_list<std::pair<std::uint32_t, std::vector<std::uint32_t>>> hints,
                     std::size_t length = 18) {
    std::vector<std::uint32_t> words(18, 0);
    for (const auto& [flag, values] : hints) {
        words[0] |= flag;
        const std::size_t index = flag == smallest    ? 5
                                  : flag == largest   ? 7
                                  : flag == increment ? 9
                                  : flag == ratio     ? 11
                                                      : 15;
        for (std::size_t offset = 0; offset < values.size(); ++offset) {
            words[index + offset] = values[offset];
        }
    }
    words.resize(length);
    return XSizeLimits(words);
}

TEST(XSizeLimits, WithoutHintsOnlyTheSizeAskedForIsExplained) {
    for (const XSizeLimits& limits :
         {XSizeLimits(), limitsOf({}), limitsOf({{smallest, {500, 400}}}, 14), XSizeLimits({1U << 4})}) {
        EXPECT_TRUE(limits.explain({300, 200}, {300, 200}));
        EXPECT_FALSE(limits.explain({299, 200}, {300, 200}));
        EXPECT_FALSE(limits.explain({300, 201}, {300, 200}));
        EXPECT_EQ(limits.steps(), (Extent{1, 1}));
    }
}

TEST(XSizeLimits, SmallestAndLargestSizesExplainThemselves) {
    const XSizeLimits limits = limitsOf({{smallest, {200, 100}}, {largest, {400, 300}}});
    EXPECT_TRUE(limits.explain({200, 100}, {50, 60}));
    EXPECT_TRUE(limits.explain({400, 300}, {900, 800}));
    EXPECT_FALSE(limits.explain({400, 300}, {390, 300}));
}

TEST(XSizeLimits, BaseSizeAndSmallestSizeStandInForEachOther) {
    EXPECT_TRUE(limitsOf({{base, {800, 400}}}).explain({800, 400}, {620, 300}));
    EXPECT_FALSE(limitsOf({{base, {800, 400}}, {smallest, {100, 100}}}).explain({800, 400}, {620, 300}));
    const auto narrowed = [](const XSizeLimits& limits) { return limits.requestFor({101, 1000}); };
    // Steps of 7 from 4, and from 6, to what the ratio leaves.
    EXPECT_EQ(narrowed(limitsOf({{base, {4, 4}}, {increment, {7, 7}}, {ratio, {1, 100, 100, 1}}})),
              (Extent{95, 998}));
    EXPECT_EQ(narrowed(limitsOf({{smallest, {6, 6}}, {increment, {7, 7}}, {ratio, {1, 100, 100, 1}}})),
              (Extent{97, 1000}));
    EXPECT_EQ(narrowed(limitsOf(
                  {{base, {4, 4}}, {smallest, {6, 6}}, {increment, {7, 7}}, {ratio, {1, 100, 100, 1}}})),
              (Extent{95, 998}));
}

TEST(XSizeLimits, HintsOfOldHaveNoBaseSize) {
    EXPECT_FALSE(limitsOf({{base, {800, 400}}}, 15).explain({800, 400}, {620, 300}));
}

TEST(XSizeLimits, LessThanAStepTooSmallIsExplained) {
    const XSizeLimits limits = limitsOf({{increment, {7, 13}}});
    EXPECT_TRUE(limits.explain({294, 188}, {300, 200}));
    EXPECT_FALSE(limits.explain({293, 188}, {300, 200}));
    EXPECT_FALSE(limits.explain({301, 200}, {300, 200}));
}

TEST(XSizeLimits, OnlyARatioChangesTheRequest) {
    const XSizeLimits limits =
        limitsOf({{smallest, {200, 100}}, {largest, {400, 300}}, {increment, {7, 13}}, {base, {3, 3}}});
    EXPECT_EQ(limits.requestFor({500, 50}), (Extent{500, 50}));
}

TEST(XSizeLimits, RequestHasTheRatioAndFitsIn) {
    const XSizeLimits limits = limitsOf({{ratio, {4, 3, 4, 3}}});
    EXPECT_EQ(limits.requestFor({640, 900}), (Extent{640, 480}));
    EXPECT_EQ(limits.requestFor({1000, 480}), (Extent{640, 480}));
    EXPECT_EQ(limits.requestFor({626, 983}), (Extent{626, 469}));
    const XSizeLimits range = limitsOf({{ratio, {1, 2, 2, 1}}});
    EXPECT_EQ(range.requestFor({300, 400}), (Extent{300, 400}));
    EXPECT_EQ(range.requestFor({300, 700}), (Extent{300, 600}));
    EXPECT_EQ(range.requestFor({900, 400}), (Extent{800, 400}));
}

TEST(XSizeLimits, RatioIsThatOfWhatTheBaseSizeLeaves) {
    // A picture of 4:3 below a bar of 30.
    EXPECT_EQ(limitsOf({{base, {0, 30}}, {ratio, {4, 3, 4, 3}}}).requestFor({640, 900}), (Extent{640, 510}));
    EXPECT_EQ(limitsOf({{smallest, {0, 30}}, {ratio, {4, 3, 4, 3}}}).requestFor({640, 900}),
              (Extent{640, 480}));
}

TEST(XSizeLimits, SmallestSizeWinsOverTheZone) {
    EXPECT_EQ(limitsOf({{smallest, {800, 600}}, {ratio, {4, 3, 4, 3}}}).requestFor({626, 983}),
              (Extent{800, 600}));
    EXPECT_EQ(limitsOf({{largest, {400, 900}}, {ratio, {4, 3, 4, 3}}}).requestFor({626, 983}),
              (Extent{400, 300}));
}

TEST(XSizeLimits, RatiosThatMakeNoSenseAreNone) {
    for (const std::vector<std::uint32_t>& words :
         {std::vector<std::uint32_t>{0, 0, 0, 0}, {4, 0, 4, 0}, {2, 1, 1, 1}, {0xFFFFFFFF, 1, 1, 1}}) {
        EXPECT_EQ(limitsOf({{ratio, words}}).requestFor({500, 50}), (Extent{500, 50}));
    }
}

} // namespace

} // namespace tarvex::contract
