#include "Platform/Linux/X11/XSizeLimits.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace tarvex {

namespace {

constexpr std::uint32_t hasSmallest = 1U << 4;
constexpr std::uint32_t hasLargest = 1U << 5;
constexpr std::uint32_t hasIncrement = 1U << 6;
constexpr std::uint32_t hasRatio = 1U << 7;

// The words of the property, each with the one for the height behind it.
constexpr std::size_t smallestWord = 5;
constexpr std::size_t largestWord = 7;
constexpr std::size_t incrementWord = 9;
constexpr std::size_t leastWords = 15;

constexpr int widestOfAll = std::numeric_limits<std::int16_t>::max();

} // namespace

XSizeLimits::XSizeLimits(XConnection& connection, xcb_window_t window) {
    width_.largest = height_.largest = widestOfAll;
    const XPropertyWords hints =
        takePropertyWords(connection, requestPropertyWords(connection, window, XCB_ATOM_WM_NORMAL_HINTS));
    if (hints.words.size() < leastWords) {
        return;
    }
    const std::uint32_t given = hints.words.front();
    const auto read = [&](std::uint32_t bit, std::size_t word, int Limits::*limit) {
        constexpr std::uint32_t widest = widestOfAll;
        if ((given & bit) != 0) {
            width_.*limit = static_cast<int>(std::clamp(hints.words[word], 1U, widest));
            height_.*limit = static_cast<int>(std::clamp(hints.words[word + 1], 1U, widest));
        }
    };
    read(hasSmallest, smallestWord, &Limits::smallest);
    read(hasLargest, largestWord, &Limits::largest);
    read(hasIncrement, incrementWord, &Limits::increment);
    hasAspect_ = (given & hasRatio) != 0;
}

bool XSizeLimits::explain(const Limits& limits, int actual, int asked) const {
    // Where they contradict each other, the smallest size wins.
    const int possible = std::max(std::min(asked, limits.largest), limits.smallest);
    return hasAspect_ || (actual <= possible && possible - actual < limits.increment);
}

} // namespace tarvex
