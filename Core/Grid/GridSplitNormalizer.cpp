#include "Core/Grid/GridSplitNormalizer.h"

#include <algorithm>
#include <cmath>

namespace tarvex {

namespace {

// NaN compares false with everything and so passes through; the filter drops it.
double clampToUnit(double value) {
    if (value <= 0) {
        return 0;
    }
    return value > 1 ? 1 : value;
}

} // namespace

std::vector<double> GridSplitNormalizer::normalizeSplits(const std::vector<double>& splits) const {
    std::vector<double> inner;
    inner.reserve(splits.size());
    for (const double split : splits) {
        const double clamped = clampToUnit(split);
        if (epsilon_ < clamped && clamped < 1 - epsilon_) {
            inner.push_back(clamped);
        }
    }
    std::sort(inner.begin(), inner.end());
    return deduplicate(inner);
}

std::vector<double> GridSplitNormalizer::deduplicate(const std::vector<double>& sorted) const {
    std::vector<double> kept;
    kept.reserve(sorted.size());
    for (const double value : sorted) {
        if (kept.empty() || std::abs(kept.back() - value) > epsilon_) {
            kept.push_back(value);
        }
    }
    return kept;
}

} // namespace tarvex
