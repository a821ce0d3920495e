#include "Platform/Linux/X11/XSizeLimits.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace tarvex {

namespace {

constexpr std::uint32_t hasSmallestFlag = 1U << 4;
constexpr std::uint32_t hasLargestFlag = 1U << 5;
constexpr std::uint32_t hasIncrementFlag = 1U << 6;
constexpr std::uint32_t hasRatioFlag = 1U << 7;
constexpr std::uint32_t hasBaseFlag = 1U << 8;

// The words of the property, each with the one for the height behind it.
constexpr std::size_t smallestWord = 5;
constexpr std::size_t largestWord = 7;
constexpr std::size_t incrementWord = 9;
constexpr std::size_t leastRatioWord = 11;
constexpr std::size_t greatestRatioWord = 13;
constexpr std::size_t baseWord = 15;
/// Programs of old leave out the base size and the gravity.
constexpr std::size_t leastWords = 15;

constexpr int widestOfAll = std::numeric_limits<std::int16_t>::max();

/// The whole pixels of a length, which a ratio that no binary number expresses may have left short of one.
int wholePixels(double length) {
    constexpr double shortBy = 1e-6;
    return static_cast<int>(std::floor(length + shortBy));
}

} // namespace

XSizeLimits::XSizeLimits() {
    width_.largest = height_.largest = widestOfAll;
}

XSizeLimits::XSizeLimits(const std::vector<std::uint32_t>& hints) : XSizeLimits() {
    if (hints.size() < leastWords) {
        return;
    }
    const std::uint32_t given = hints.front();
    const auto read = [&](bool isGiven, std::size_t word, int Limits::*limit, std::uint32_t least) {
        constexpr std::uint32_t widest = widestOfAll;
        if (isGiven) {
            width_.*limit = static_cast<int>(std::clamp(hints[word], least, widest));
            height_.*limit = static_cast<int>(std::clamp(hints[word + 1], least, widest));
        }
    };
    const bool hasSmallest = (given & hasSmallestFlag) != 0;
    const bool hasBase = (given & hasBaseFlag) != 0 && hints.size() > baseWord + 1;
    // Each of the two stands in for the other where that is missing.
    read(hasSmallest || hasBase, hasSmallest ? smallestWord : baseWord, &Limits::smallest, 1);
    read(hasSmallest || hasBase, hasBase ? baseWord : smallestWord, &Limits::base, 0);
    read((given & hasLargestFlag) != 0, largestWord, &Limits::largest, 1);
    read((given & hasIncrementFlag) != 0, incrementWord, &Limits::increment, 1);
    if ((given & hasRatioFlag) != 0) {
        readRatios(hints, hasBase);
    }
}

void XSizeLimits::readRatios(const std::vector<std::uint32_t>& hints, bool hasBase) {
    const auto ratio = [&](std::size_t word) {
        const auto side = [&](std::size_t index) {
            return static_cast<double>(static_cast<std::int32_t>(hints[index]));
        };
        return side(word) > 0 && side(word + 1) > 0 ? side(word) / side(word + 1) : 0.0;
    };
    const double least = ratio(leastRatioWord);
    const double greatest = ratio(greatestRatioWord);
    if (least > 0 && greatest >= least) {
        leastRatio_ = least;
        greatestRatio_ = greatest;
        // A smallest size does not stand in for the base size here.
        outsideRatio_ = hasBase ? Extent{width_.base, height_.base} : Extent{};
    }
}

bool XSizeLimits::explain(const Extent& actual, const Extent& asked) const {
    return width_.explain(actual.width, asked.width) && height_.explain(actual.height, asked.height);
}

XSizeLimits::Extent XSizeLimits::requestFor(const Extent& extent) const {
    if (leastRatio_ <= 0) {
        return extent;
    }
    Extent result{width_.possible(extent.width), height_.possible(extent.height)};
    const double width = result.width - outsideRatio_.width;
    const double height = result.height - outsideRatio_.height;
    if (width > height * greatestRatio_) {
        result.width = width_.possible(outsideRatio_.width + wholePixels(height * greatestRatio_));
    } else if (width < height * leastRatio_) {
        result.height = height_.possible(outsideRatio_.height + wholePixels(width / leastRatio_));
    }
    return result;
}

int XSizeLimits::Limits::clamped(int asked) const {
    // Where they contradict each other, the smallest size wins.
    return std::max(std::min(asked, largest), smallest);
}

int XSizeLimits::Limits::possible(int asked) const {
    const int size = clamped(asked);
    const int beyondStep = size > base ? (size - base) % increment : 0;
    return std::max(size - beyondStep, smallest);
}

bool XSizeLimits::Limits::explain(int actual, int asked) const {
    const int most = clamped(asked);
    return actual <= most && most - actual < increment;
}

} // namespace tarvex
